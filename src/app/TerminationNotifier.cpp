#include "app/TerminationNotifier.h"

#include <QSocketNotifier>
#include <utility>

namespace tessaly {

TerminationNotifier::TerminationNotifier(std::function<void(int)> requested) : requested_(std::move(requested)) {
  auto* notifier = new QSocketNotifier(signals_.descriptor(), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, &TerminationNotifier::received);
}

void TerminationNotifier::received() {
  if (const int signal = signals_.take()) requested_(signal);
}

}  // namespace tessaly
