// How many files to repair at once: limited by memory first, then by processors.
#include "preferences/AppPreferences.h"

#include <unistd.h>

#include <algorithm>
#include <thread>

namespace tessaly {
namespace {

constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;

/// The kernel reports less than is installed, because firmware and the kernel itself keep some: round up.
std::uint64_t installedMemory() {
  const auto pages = static_cast<std::uint64_t>(std::max(sysconf(_SC_PHYS_PAGES), 0L));
  const auto pageBytes = static_cast<std::uint64_t>(std::max(sysconf(_SC_PAGESIZE), 0L));
  return (pages * pageBytes + gibibyte - 1) / gibibyte * gibibyte;
}

}  // namespace

std::int64_t AppPreferences::automaticWorkers(std::uint64_t memory, std::int64_t processors) {
  const std::int64_t cap = memory < 8 * gibibyte ? 1 : memory < 16 * gibibyte ? 2 : 4;
  return std::max<std::int64_t>(std::min(cap, processors), 1);
}

std::int64_t AppPreferences::automaticWorkers() {
  return automaticWorkers(installedMemory(), static_cast<std::int64_t>(std::thread::hardware_concurrency()));
}

}  // namespace tessaly
