#include "platform/WriterLock.h"

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {
namespace {

// Far behind the end of every file: where locks are mandatory (SMB) nobody may read the bytes that are locked, not even
// who reads a copy back.
constexpr off_t lockedByte = off_t{1} << 62;

int lock(int descriptor, short type) {
  struct flock request {};
  request.l_type = type;
  request.l_whence = SEEK_SET;
  request.l_start = lockedByte;
  request.l_len = 1;
  return ::fcntl(descriptor, F_OFD_SETLK, &request);
}

}  // namespace

int lockAsWriter(int descriptor) {
  return lock(descriptor, F_WRLCK);
}

bool hasNoWriter(int descriptor) {
  return lock(descriptor, F_RDLCK) == 0;
}

}  // namespace tessaly
