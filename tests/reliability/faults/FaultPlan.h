// What the fault injector is told, and what it tells: a record in a file that both the runner and the program under
// test map into memory, so that it survives whatever becomes of the program.
#pragma once

#include <atomic>
#include <cstdint>

namespace tessaly::faults {

/// The environment variable that names the file.
inline constexpr const char* planVariable = "TESSALY_FAULT_PLAN";

enum class Kind : std::int32_t {
  none,            ///< only count
  error,           ///< the call does nothing and fails
  shortCount,      ///< a call that reads, writes or copies does half of what it is asked for
  kill,            ///< SIGKILL before the call
  noMemory,        ///< an allocation fails
  noMemoryAnyMore  ///< it and all that follow fail
};

struct FaultPlan {
  Kind kind;
  std::int32_t error;  ///< of Kind::error: the number in errno
  std::int64_t at;     ///< which call or allocation, 1 for the first after the start of main

  std::atomic<std::int64_t> calls;        ///< counted over all threads
  std::atomic<std::int64_t> allocations;  ///< counted over all threads
  std::atomic<std::int32_t> hits;         ///< how often something was done to the program
  char call[32];                          ///< the call that was hit first
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free, "shared between processes");

}  // namespace tessaly::faults
