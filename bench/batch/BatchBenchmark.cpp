// What a batch adds to and gains over repairing its files one after the other: the speed-up by a second worker and the
// overhead over the sum of the files. In memory (tmpfs), so that no disk is in the way; the shapes are measured in turn
// and compared by their minima, because the machine is never quiet.
#include "batch/BatchProcessor.h"
#include "batch/SourceFiles.h"
#include "dng/DNGReader.h"
#include "repair/RepairCopy.h"
#include "tools/DNGBuilder.h"

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

using namespace tessaly;
using Path = std::filesystem::path;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;
constexpr int fileCount = 8;
constexpr int rounds = 9;
constexpr double never = std::numeric_limits<double>::infinity();

/// A folder of 24-megapixel photographs and a profile with 2000 points and four columns; removed at the end.
class Photographs {
 public:
  explicit Photographs(int bits) : folder_(makeFolder()) {
    std::filesystem::create_directories(input());
    std::mt19937 random(1);
    std::vector<std::uint16_t> samples(static_cast<std::size_t>(width * height));
    for (std::uint16_t& sample : samples)
      sample = static_cast<std::uint16_t>(random() >> (32 - bits));
    const Path first = input() / "P0.dng";
    tools::DNGBuilder().size(width, height).bits(bits).samples(std::move(samples)).write(first);
    for (int number = 1; number < fileCount; ++number)
      std::filesystem::copy_file(first, input() / ("P" + std::to_string(number) + ".dng"));
    profile_ = CameraProfile::empty("Body", DNGReader::readMetadata(first));
    addDefects(random);
  }

  Photographs(const Photographs&) = delete;
  Photographs& operator=(const Photographs&) = delete;

  ~Photographs() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] Path input() const { return folder_ / "input"; }
  [[nodiscard]] Path output() const { return folder_ / "output"; }
  [[nodiscard]] const CameraProfile& profile() const { return profile_; }

 private:
  static Path makeFolder() {
    const Path parent = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
    std::string name = parent / "tessaly-bench-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category());
    return name;
  }

  void addDefects(std::mt19937& random) {
    for (int count = 0; count < 2000; ++count) {
      DefectPixel pixel;
      pixel.x = random() % width;
      pixel.y = random() % height;
      profile_.pixels.push_back(pixel);
    }
    for (std::int64_t column = 1; column <= 4; ++column) {
      DefectLine line;
      line.x = column * width / 5;
      line.yEnd = height - 1;
      profile_.lines.push_back(line);
    }
  }

  Path folder_;
  CameraProfile profile_;
};

/// Time by the clock on the wall, and processor time of all threads, which other programs disturb less.
struct Cost {
  double wall = never;
  double processor = never;
};

Cost least(const Cost& left, const Cost& right) {
  return {std::min(left.wall, right.wall), std::min(left.processor, right.processor)};
}

double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Work>
Cost costOf(const Photographs& photographs, const Work& work) {
  std::filesystem::remove_all(photographs.output());
  std::filesystem::create_directory(photographs.output());
  const Clock::time_point start = Clock::now();
  const double processorStart = processorSeconds();
  work();
  return {std::chrono::duration<double>(Clock::now() - start).count(), processorSeconds() - processorStart};
}

Cost batchCost(const Photographs& photographs, std::int64_t workers) {
  return costOf(photographs, [&] {
    const BatchSummary summary = BatchProcessor().processFolder(
        photographs.input(),
        {.outputFolder = photographs.output(), .profile = photographs.profile(), .workers = workers});
    if (summary.succeeded != fileCount) throw std::runtime_error("A file failed");
  });
}

/// Every second, third … of the files, one after the other, with the buffers kept.
void repairPlainly(const Photographs& photographs, std::size_t first, std::size_t step) {
  const std::vector<Path> sources = sourceFiles(photographs.input());
  RepairWorkspace workspace;
  for (std::size_t index = first; index < sources.size(); index += step) {
    const Path& source = sources[index];
    DNGWriter::repairCopy(source, photographs.output() / source.filename(), photographs.profile(), workspace);
  }
}

/// The same files by so many bare threads with no batch around them: the floor, whatever else the machine does.
Cost plainCost(const Photographs& photographs, std::size_t threadCount) {
  return costOf(photographs, [&] {
    std::vector<std::jthread> threads;
    for (std::size_t first = 0; first < threadCount; ++first)
      threads.emplace_back([&photographs, first, threadCount] { repairPlainly(photographs, first, threadCount); });
  });
}

void repairFolder(benchmark::State& state) {
  const Photographs photographs(static_cast<int>(state.range(0)));
  std::array<Cost, 2> plain;
  std::array<Cost, 2> batch;
  for (auto _ : state) {
    for (const std::size_t extra : {0U, 1U}) {
      plain[extra] = least(plain[extra], plainCost(photographs, extra + 1));
      batch[extra] = least(batch[extra], batchCost(photographs, static_cast<std::int64_t>(extra) + 1));
    }
  }
  state.counters["one_ms_per_file"] = batch[0].wall * 1000 / fileCount;
  state.counters["two_ms_per_file"] = batch[1].wall * 1000 / fileCount;
  state.counters["speedup"] = batch[0].wall / batch[1].wall;
  state.counters["speedup_of_bare_threads"] = plain[0].wall / plain[1].wall;
  state.counters["overhead_percent"] = (batch[0].wall / plain[0].wall - 1) * 100;
  state.counters["overhead_percent_of_processor"] = (batch[0].processor / plain[0].processor - 1) * 100;
  // What two free processors would give: 2, less what the workers cost each other.
  state.counters["speedup_of_processor"] = 2 * batch[0].processor / batch[1].processor;
  state.counters["samples_per_second"] = static_cast<double>(width * height) * fileCount / batch[1].wall;
}
BENCHMARK(repairFolder)->ArgName("bits")->Arg(16)->Arg(12)->Iterations(rounds)->Unit(benchmark::kMillisecond);

/// What the batch itself costs a file: the repair does nothing.
void listNameAndReport(benchmark::State& state) {
  const Photographs photographs(16);
  for (auto _ : state) {
    BatchProcessor processor(
        [](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) { return DNGWriteResult{}; });
    const BatchSummary summary =
        processor.processFolder(photographs.input(), {.outputFolder = photographs.output(),
                                                      .profile = photographs.profile(),
                                                      .workers = 2,
                                                      .options = {ExistingOutputPolicy::skip, false}});
    benchmark::DoNotOptimize(summary.succeeded);
  }
  state.counters["per_file"] = benchmark::Counter(static_cast<double>(state.iterations()) * fileCount,
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(listNameAndReport)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
