#include "app/TerminationNotifier.h"
#include "app/support/AppTest.h"

#include <signal.h>

namespace tessaly::tests {
namespace {

/// What a signal does, as long as this lives.
class Disposition {
 public:
  Disposition(int number, void (*handler)(int)) : number_(number), before_(::signal(number, handler)) {}
  Disposition(const Disposition&) = delete;
  Disposition& operator=(const Disposition&) = delete;
  ~Disposition() { ::signal(number_, before_); }

 private:
  int number_;
  void (*before_)(int);
};

TEST(Termination, IsAskedForOnTheUserInterfaceThread) {
  const Disposition usual(SIGTERM, SIG_DFL);
  int asked = 0;
  const TerminationNotifier termination([&asked](int) { ++asked; });
  for (int time = 1; time <= 3; ++time) {
    ::raise(SIGTERM);
    EXPECT_EQ(asked, time - 1);
    EXPECT_TRUE(waitUntil([&] { return asked == time; }));
  }
}

TEST(Termination, IsAskedForOnceBySignalsThatComeTogether) {
  const Disposition usual(SIGINT, SIG_DFL);
  int asked = 0;
  const TerminationNotifier termination([&asked](int) { ++asked; });
  for (int signal = 0; signal < 100; ++signal)
    ::raise(SIGINT);
  EXPECT_TRUE(waitUntil([&] { return asked > 0; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace tessaly::tests
