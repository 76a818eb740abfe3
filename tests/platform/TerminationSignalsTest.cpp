#include "platform/TerminationSignals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

namespace tessaly::tests {
namespace {

void (*handlerOf(int number))(int) {
  struct sigaction action {};
  ::sigaction(number, nullptr, &action);
  return action.sa_handler;
}

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

TEST(TerminationSignals, AreTakenOneAfterTheOther) {
  for (const int number : TerminationSignals::numbers) {
    const Disposition usual(number, SIG_DFL);
    TerminationSignals signals;
    EXPECT_EQ(signals.take(), 0);
    ::raise(number);
    EXPECT_EQ(signals.take(), number);
    EXPECT_EQ(signals.take(), 0);
  }
}

TEST(TerminationSignals, AreOneRequestWhenTheyComeTogether) {
  const Disposition usual(SIGTERM, SIG_DFL);
  TerminationSignals signals;
  for (int time = 0; time < 100; ++time)
    ::raise(SIGTERM);
  EXPECT_EQ(signals.take(), SIGTERM);
  EXPECT_EQ(signals.take(), 0);
}

TEST(TerminationSignals, CanBeWaitedFor) {
  const Disposition usual(SIGHUP, SIG_DFL);
  TerminationSignals signals;
  std::thread sender([] { ::kill(::getpid(), SIGHUP); });
  EXPECT_EQ(signals.wait(), SIGHUP);
  sender.join();
  signals.wake();
  EXPECT_EQ(signals.wait(), 0);
}

TEST(TerminationSignals, AreTheSystemsAgainAfterwards) {
  const Disposition usual(SIGTERM, SIG_DFL);
  {
    const TerminationSignals signals;
    EXPECT_NE(handlerOf(SIGTERM), SIG_DFL);
  }
  EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
}

TEST(TerminationSignals, StayIgnoredWhereTheyWere) {
  for (const int number : TerminationSignals::numbers) {
    const Disposition ignored(number, SIG_IGN);
    const TerminationSignals signals;
    EXPECT_EQ(handlerOf(number), SIG_IGN);
  }
}

}  // namespace
}  // namespace tessaly::tests
