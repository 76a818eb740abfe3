#include "platform/FileLock.h"

#include "platform/SystemCall.h"

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {

// A lock of an open file description: unlike one of a process it holds between threads too, and lasts until this
// descriptor is closed.
FileLock::FileLock(const std::filesystem::path& path)
    : descriptor_(callSystem([&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666); })) {
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  static_cast<void>(retryWhenInterrupted([&] { return ::fcntl(descriptor_, F_OFD_SETLKW, &whole); }));
}

FileLock::~FileLock() {
  ::close(descriptor_);
}

}  // namespace tessaly
