#include "app/SingleInstance.h"

#include "preferences/UserFolders.h"

#include <errno.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <algorithm>
#include <cstddef>
#include <system_error>

namespace tessaly {
namespace {

constexpr char mark = 1;

/// A name that begins with a zero byte is no file.
struct AbstractAddress {
  sockaddr_un value{};
  socklen_t size = 0;

  explicit AbstractAddress(const std::string& name) {
    value.sun_family = AF_UNIX;
    const std::size_t length = std::min(name.size(), sizeof value.sun_path - 1);
    std::copy_n(name.begin(), length, value.sun_path + 1);
    size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
  }

  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&value); }
};

int makeSocket() {
  return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

// Anybody on this machine can take a name of that space.
bool isOwnUser(int connection) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return ::getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::getuid();
}

// An answer is a byte; a process that ends without one closes the connection.
bool answers(int connection) {
  pollfd waiting{connection, POLLIN, 0};
  const auto limit = std::chrono::milliseconds(SingleInstance::patience).count();
  char byte = 0;
  return ::poll(&waiting, 1, static_cast<int>(limit)) == 1 && ::read(connection, &byte, 1) == 1;
}

bool isAnsweredAt(const AbstractAddress& address) {
  const int connection = makeSocket();
  const bool result =
      ::connect(connection, address.get(), address.size) == 0 && isOwnUser(connection) && answers(connection);
  ::close(connection);
  return result;
}

}  // namespace

// Between the refusal of the name and the question the first may have ended: then the name is free.
SingleInstance::SingleInstance(const std::string& name) : socket_(makeSocket()) {
  const AbstractAddress address(name);
  const auto takesName = [&] { return ::bind(socket_, address.get(), address.size) == 0; };
  bool isFirst = takesName();
  if (!isFirst) {
    isSecond_ = isAnsweredAt(address);
    isFirst = !isSecond_ && takesName();
  }
  if (isFirst) listen();
}

SingleInstance::~SingleInstance() {
  ::close(socket_);
}

void SingleInstance::listen() {
  constexpr int waiting = 16;
  if (::listen(socket_, waiting) != 0) return;
  auto* notifier = new QSocketNotifier(socket_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::answer);
}

void SingleInstance::answer() {
  const int connection = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
  if (connection < 0) return;
  const bool isOwn = isOwnUser(connection);
  if (isOwn) static_cast<void>(::send(connection, &mark, sizeof mark, MSG_NOSIGNAL));
  ::close(connection);
  if (isOwn) emit wanted();
}

std::string SingleInstance::nameHere() {
  std::error_code ignored;  // a folder that cannot be followed has its own name only
  const std::filesystem::path home = applicationSupportFolder();
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(home, ignored);
  QCryptographicHash place(QCryptographicHash::Sha256);
  for (const QByteArray& part :
       {QGuiApplication::platformName().toUtf8(), qgetenv("DISPLAY"), qgetenv("WAYLAND_DISPLAY"),
        QByteArray::fromStdString((canonical.empty() ? home : canonical).native())})
    place.addData(part + '\0');
  return "tessaly-" + std::to_string(::getuid()) + "-" + place.result().toHex().toStdString();
}

}  // namespace tessaly
