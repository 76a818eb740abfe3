#include "app/SingleInstance.h"
#include "app/support/AppTest.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <future>
#include <memory>

namespace tessaly::tests {
namespace {

std::string freshName() {
  return "tessaly-test-" + UUID::random().text();
}

/// What another process would be told, while this one goes on.
bool startedAgain(const std::string& name) {
  auto second = std::async(std::launch::async, [&] { return SingleInstance(name).isSecond(); });
  EXPECT_TRUE(waitUntil([&] { return second.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
  return second.get();
}

TEST(Instance, IsTheFirstOfItsName) {
  const std::string name = freshName();
  const SingleInstance first(name);
  EXPECT_FALSE(first.isSecond());
  const SingleInstance other(freshName());
  EXPECT_FALSE(other.isSecond());
}

TEST(Instance, IsAskedToComeForwardByEveryLaterStart) {
  const std::string name = freshName();
  const SingleInstance first(name);
  int asked = 0;
  QObject::connect(&first, &SingleInstance::wanted, [&] { ++asked; });
  EXPECT_TRUE(startedAgain(name));
  EXPECT_TRUE(startedAgain(name));
  EXPECT_TRUE(waitUntil([&] { return asked == 2; }));
}

TEST(Instance, LeavesItsNameToTheNext) {
  const std::string name = freshName();
  std::make_unique<SingleInstance>(name).reset();
  const SingleInstance next(name);
  EXPECT_FALSE(next.isSecond());
}

TEST(Instance, GoesItsOwnWayWhenTheFirstEndsWithoutAnAnswer) {
  const std::string name = freshName();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path + 1, name.size());
  const int silent = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  ASSERT_EQ(::bind(silent, reinterpret_cast<const sockaddr*>(&address), size), 0);
  ASSERT_EQ(::listen(silent, 1), 0);
  auto second = std::async(std::launch::async, [&] { return SingleInstance(name).isSecond(); });
  ::close(::accept(silent, nullptr, nullptr));
  EXPECT_FALSE(second.get());
  ::close(silent);
}

TEST(Instance, HasItsNameFromDisplayAndFolder) {
  const std::string here = SingleInstance::nameHere();
  EXPECT_EQ(SingleInstance::nameHere(), here);
  const QByteArray display = qgetenv("DISPLAY");
  qputenv("DISPLAY", ":77");
  EXPECT_NE(SingleInstance::nameHere(), here);
  display.isNull() ? qunsetenv("DISPLAY") : qputenv("DISPLAY", display);
  const QByteArray home = qgetenv("TESSALY_HOME");
  qputenv("TESSALY_HOME", home + "/other");
  EXPECT_NE(SingleInstance::nameHere(), here);
  qputenv("TESSALY_HOME", home + "/../" + home.mid(home.lastIndexOf('/') + 1));
  EXPECT_EQ(SingleInstance::nameHere(), here);
  qputenv("TESSALY_HOME", home);
}

}  // namespace
}  // namespace tessaly::tests
