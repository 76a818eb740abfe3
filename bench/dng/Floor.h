// Work is measured against a floor in the same run, in turn, and the ratio of their minima is reported, so that a
// number means the same on any machine.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <limits>
#include <vector>

namespace tessaly::bench {

/// Processor time of this thread, the kernel's part included: other programs on the machine do not count.
[[nodiscard]] inline double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Action>
[[nodiscard]] double secondsOf(Action&& action) {
  const double start = processorSeconds();
  action();
  return processorSeconds() - start;
}

/// Runs `floor` and `work` in turn and reports the work's time. Counters: the ratio of the two minima under `name`, and
/// millions of samples a second at best.
template <typename Floor, typename Work>
void againstFloor(benchmark::State& state, const char* name, std::int64_t samples, Floor&& floor, Work&& work) {
  double bestFloor = std::numeric_limits<double>::max();
  double bestWork = std::numeric_limits<double>::max();
  for (auto _ : state) {
    bestFloor = std::min(bestFloor, secondsOf(floor));
    const double seconds = secondsOf(work);
    bestWork = std::min(bestWork, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters[name] = bestWork / bestFloor;
  state.counters["MS_per_s"] = static_cast<double>(samples) / bestWork / 1e6;
}

/// The floor of work in memory: copying a plane of that many samples between pages that are in use already.
class PlaneCopy {
 public:
  explicit PlaneCopy(std::size_t samples) : from_(samples, 1), to_(samples, 2) {}

  void operator()() {
    std::memcpy(to_.data(), from_.data(), from_.size() * sizeof(std::uint16_t));
    benchmark::DoNotOptimize(to_.data());
    benchmark::ClobberMemory();
  }

 private:
  std::vector<std::uint16_t> from_;
  std::vector<std::uint16_t> to_;
};

}  // namespace tessaly::bench
