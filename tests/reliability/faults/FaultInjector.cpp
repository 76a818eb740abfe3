// Loaded into a program before its libraries: counts what it asks of the system and of the heap, over all threads, from
// the start of its main on, and disturbs it at the place that the plan names (see FaultPlan.h).
//
// It stands at the level of the C library, so that everything is covered, whichever library asks: reading, listing,
// folders, threads. It uses nothing that allocates.
#include "reliability/faults/FaultPlan.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>

namespace {

using tessaly::faults::FaultPlan;
using tessaly::faults::Kind;

FaultPlan* plan = nullptr;
std::atomic<bool> isRunning = false;

__attribute__((constructor)) void openPlan() {
  const char* const name = getenv(tessaly::faults::planVariable);
  if (name == nullptr) return;
  const auto descriptor = static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, O_RDWR | O_CLOEXEC));
  void* const memory = mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  syscall(SYS_close, descriptor);
  if (memory != MAP_FAILED) plan = static_cast<FaultPlan*>(memory);
}

void noteHit(const char* call) {
  if (plan->hits++ == 0) strncpy(plan->call, call, sizeof plan->call - 1);
}

/// Whether this call is the one; errno is set then.
bool isHit(const char* call, bool hasCount = false) {
  if (plan == nullptr || !isRunning) return false;
  if (++plan->calls != plan->at) return false;
  if (plan->kind == Kind::kill) {
    noteHit(call);
    syscall(SYS_kill, getpid(), SIGKILL);
  }
  const bool isShort = plan->kind == Kind::shortCount && hasCount;
  if (plan->kind != Kind::error && !isShort) return false;
  noteHit(call);
  errno = plan->error;
  return true;
}

bool refusesMemory() {
  if (plan == nullptr || !isRunning) return false;
  const std::int64_t number = ++plan->allocations;
  const bool isOne = plan->kind == Kind::noMemory && number == plan->at;
  const bool isOneOfAll = plan->kind == Kind::noMemoryAnyMore && number >= plan->at;
  if (!isOne && !isOneOfAll) return false;
  noteHit("allocation");
  errno = ENOMEM;
  return true;
}

/// What a call with a count does with `size` where it is hit: an error, or half.
bool isRefused(const char* call, std::size_t& size) {
  if (!isHit(call, true)) return false;
  if (plan->kind == Kind::error) return true;
  size = size > 1 ? size / 2 : size;
  return false;
}

int (*mainOfProgram)(int, char**, char**) = nullptr;

int countedMain(int count, char** arguments, char** environment) {
  isRunning = true;
  const int status = mainOfProgram(count, arguments, environment);
  isRunning = false;
  return status;
}

}  // namespace

// NOLINTBEGIN: one line a function of the C library, whose names and parameters are not ours.
#define REAL(name) static const auto real = reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name))

#define CALL(result, failure, name, parameters, arguments) \
  extern "C" result name parameters {                      \
    REAL(name);                                            \
    if (isHit(#name)) return failure;                      \
    return real arguments;                                 \
  }

#define COUNTED(name, parameters, size, arguments) \
  extern "C" ssize_t name parameters {             \
    REAL(name);                                    \
    if (isRefused(#name, size)) return -1;         \
    return real arguments;                         \
  }

#define OPEN(name)                                      \
  extern "C" int name(const char* path, int how, ...) { \
    REAL(name);                                         \
    va_list rest;                                       \
    va_start(rest, how);                                \
    const auto mode = va_arg(rest, mode_t);             \
    va_end(rest);                                       \
    if (isHit(#name)) return -1;                        \
    return real(path, how, mode);                       \
  }

#define OPENAT(name)                                            \
  extern "C" int name(int at, const char* path, int how, ...) { \
    REAL(name);                                                 \
    va_list rest;                                               \
    va_start(rest, how);                                        \
    const auto mode = va_arg(rest, mode_t);                     \
    va_end(rest);                                               \
    if (isHit(#name)) return -1;                                \
    return real(at, path, how, mode);                           \
  }

extern "C" int __libc_start_main(int (*program)(int, char**, char**), int count, char** arguments, void (*start)(),
                                 void (*end)(), void (*endOfLoader)(), void* stack) {
  using Start = int (*)(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(), void*);
  const auto real = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
  mainOfProgram = program;
  return real(countedMain, count, arguments, start, end, endOfLoader, stack);
}

OPEN(open)
OPEN(open64)
OPENAT(openat)
OPENAT(openat64)
CALL(FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode))
CALL(FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode))

COUNTED(read, (int file, void* into, size_t size), size, (file, into, size))
COUNTED(pread, (int file, void* into, size_t size, off_t at), size, (file, into, size, at))
COUNTED(pread64, (int file, void* into, size_t size, off64_t at), size, (file, into, size, at))
COUNTED(write, (int file, const void* from, size_t size), size, (file, from, size))
COUNTED(pwrite, (int file, const void* from, size_t size, off_t at), size, (file, from, size, at))
COUNTED(pwrite64, (int file, const void* from, size_t size, off64_t at), size, (file, from, size, at))
COUNTED(copy_file_range, (int in, off64_t* from, int out, off64_t* to, size_t size, unsigned flags), size,
        (in, from, out, to, size, flags))
CALL(ssize_t, -1, readv, (int file, const struct iovec* parts, int count), (file, parts, count))
CALL(ssize_t, -1, writev, (int file, const struct iovec* parts, int count), (file, parts, count))

CALL(int, -1, stat, (const char* path, struct stat* status), (path, status))
CALL(int, -1, lstat, (const char* path, struct stat* status), (path, status))
CALL(int, -1, fstat, (int file, struct stat* status), (file, status))
CALL(int, -1, fstatat, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags))
CALL(int, -1, stat64, (const char* path, struct stat64* status), (path, status))
CALL(int, -1, lstat64, (const char* path, struct stat64* status), (path, status))
CALL(int, -1, fstat64, (int file, struct stat64* status), (file, status))
CALL(int, -1, fstatat64, (int at, const char* path, struct stat64* status, int flags), (at, path, status, flags))
CALL(int, -1, statx, (int at, const char* path, int flags, unsigned mask, struct statx* status),
     (at, path, flags, mask, status))
CALL(int, -1, statfs, (const char* path, struct statfs* status), (path, status))
CALL(int, -1, fstatfs, (int file, struct statfs* status), (file, status))
CALL(int, -1, access, (const char* path, int how), (path, how))
CALL(int, -1, faccessat, (int at, const char* path, int how, int flags), (at, path, how, flags))
CALL(ssize_t, -1, readlink, (const char* path, char* into, size_t size), (path, into, size))
CALL(char*, nullptr, realpath, (const char* path, char* into), (path, into))
CALL(char*, nullptr, getcwd, (char* into, size_t size), (into, size))

CALL(DIR*, nullptr, opendir, (const char* path), (path))
CALL(DIR*, nullptr, fdopendir, (int file), (file))
CALL(struct dirent*, nullptr, readdir, (DIR * folder), (folder))
CALL(struct dirent64*, nullptr, readdir64, (DIR * folder), (folder))

CALL(int, -1, mkdir, (const char* path, mode_t mode), (path, mode))
CALL(int, -1, rmdir, (const char* path), (path))
CALL(int, -1, unlink, (const char* path), (path))
CALL(int, -1, unlinkat, (int at, const char* path, int flags), (at, path, flags))
CALL(int, -1, remove, (const char* path), (path))
CALL(int, -1, rename, (const char* from, const char* to), (from, to))
CALL(int, -1, renameat2, (int at, const char* from, int there, const char* to, unsigned flags),
     (at, from, there, to, flags))
CALL(int, -1, link, (const char* from, const char* to), (from, to))
CALL(int, -1, fsync, (int file), (file))
CALL(int, -1, fdatasync, (int file), (file))
CALL(int, -1, sync_file_range, (int file, off64_t from, off64_t length, unsigned flags), (file, from, length, flags))
CALL(int, errno, posix_fadvise, (int file, off_t from, off_t length, int advice), (file, from, length, advice))
CALL(int, -1, fallocate, (int file, int mode, off_t from, off_t length), (file, mode, from, length))
CALL(int, -1, ftruncate, (int file, off_t length), (file, length))
CALL(int, -1, fchmod, (int file, mode_t mode), (file, mode))
CALL(int, -1, chmod, (const char* path, mode_t mode), (path, mode))
CALL(int, -1, fsetxattr, (int file, const char* name, const void* value, size_t size, int flags),
     (file, name, value, size, flags))
CALL(ssize_t, -1, fgetxattr, (int file, const char* name, void* value, size_t size), (file, name, value, size))
CALL(ssize_t, -1, flistxattr, (int file, char* list, size_t size), (file, list, size))
CALL(int, -1, poll, (struct pollfd * files, nfds_t count, int timeout), (files, count, timeout))
CALL(int, -1, pipe2, (int* ends, int flags), (ends, flags))
CALL(int, errno, pthread_create,
     (pthread_t * thread, const pthread_attr_t* attributes, void* (*work)(void*), void* argument),
     (thread, attributes, work, argument))

// A descriptor is closed whatever close answers.
extern "C" int close(int file) {
  REAL(close);
  const bool isToldAsFailure = isHit("close");
  const int told = errno;
  const int result = real(file);
  if (!isToldAsFailure) return result;
  errno = told;
  return -1;
}

extern "C" int ioctl(int file, unsigned long request, ...) {
  REAL(ioctl);
  va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  if (isHit("ioctl")) return -1;
  return real(file, request, argument);
}

extern "C" int fcntl(int file, int command, ...) {
  REAL(fcntl);
  va_list rest;
  va_start(rest, command);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  if (isHit("fcntl")) return -1;
  return real(file, command, argument);
}

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

void* malloc(size_t size) {
  return refusesMemory() ? nullptr : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  return refusesMemory() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, size_t size) {
  return refusesMemory() ? nullptr : __libc_realloc(memory, size);
}
void* memalign(size_t alignment, size_t size) {
  return refusesMemory() ? nullptr : __libc_memalign(alignment, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  return refusesMemory() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, size_t alignment, size_t size) {
  if (refusesMemory()) return ENOMEM;
  *memory = __libc_memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}
}
// NOLINTEND
