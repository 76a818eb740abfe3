// tessaly-random-walk SEED COUNT [tell]: COUNT random steps through the window. Ends with 1 when a file was left or
// changed, and by SIGABRT when the window did not answer; "tell" names each step on standard error before it is taken.
#include "app/walk/RandomWalk.h"
#include "app/widgets/Style.h"

#include <stdlib.h>

#include <QApplication>
#include <charconv>
#include <cstring>
#include <iostream>
#include <optional>

namespace {

std::optional<int> numberIn(const char* text) {
  int number = 0;
  const char* const end = text + std::strlen(text);
  const auto [parsed, error] = std::from_chars(text, end, number);
  return error == std::errc() && parsed == end && number >= 0 ? std::optional(number) : std::nullopt;
}

}  // namespace

int main(int count, char** arguments) {
  const auto seed = count > 2 ? numberIn(arguments[1]) : std::nullopt;
  const auto steps = count > 2 ? numberIn(arguments[2]) : std::nullopt;
  if (!seed || !steps) {
    std::cerr << "tessaly-random-walk SEED COUNT [tell]\n";
    return 2;
  }
  const bool tells = count > 3 && std::strcmp(arguments[3], "tell") == 0;
  if (getenv("QT_QPA_PLATFORM") == nullptr && getenv("DISPLAY") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(count, arguments);
  QApplication::setStyle(new tessaly::Style);
  tessaly::tests::RandomWalk walk(static_cast<unsigned>(*seed), *steps, tells);
  const auto faults = walk.go();
  for (const std::string& fault : faults)
    std::cerr << fault << '\n';
  return faults.empty() ? 0 : 1;
}
