#include "app/widgets/BackgroundTask.h"

#include <QMetaObject>
#include <exception>
#include <utility>

namespace tessaly {

void BackgroundTask::start(Work work) {
  thread_ = std::jthread();  // stops and joins
  const std::uint64_t generation = ++current_;
  const Deliver deliver = [this, generation](std::function<void()> result) {
    QMetaObject::invokeMethod(
        &owner_,
        [this, generation, result = std::move(result)] {
          if (generation == current_) result();
        },
        Qt::QueuedConnection);
  };
  thread_ = std::jthread([work = std::move(work), deliver](const std::stop_token& stop) {
    try {
      work(stop, deliver);
    } catch (const std::exception&) {
      // Work tells of its own failures; without the memory for that there is nobody to tell.
    }
  });
}

}  // namespace tessaly
