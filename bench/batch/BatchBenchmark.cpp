// What a batch adds to and gains over repairing its files one after the other: the speed-up by a second worker and the
// overhead over the sum of the files. In memory (tmpfs), so that no disk is in the way; the shapes are measured in turn
// and compared by their minima, because the machine is never quiet.
#include "batch/BatchProcessor.h"
#include "batch/SourceFiles.h"
#include "dng/DNGReader.h"
#include "repair/RepairCopy.h"
#include "tools/DNGBuilder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace tessaly;
using Path = std::filesystem::path;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;
constexpr int fileCount = 8;
constexpr int rounds = 7;

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

template <typename Work>
double secondsOf(const Photographs& photographs, const Work& work) {
  std::filesystem::remove_all(photographs.output());
  std::filesystem::create_directory(photographs.output());
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double batchSeconds(const Photographs& photographs, std::int64_t workers) {
  return secondsOf(photographs, [&] {
    const BatchSummary summary = BatchProcessor().processFolder(
        photographs.input(), photographs.output(), photographs.profile(), workers, BatchOptions{}, nullptr, nullptr);
    if (summary.succeeded != fileCount) throw std::runtime_error("A file failed");
  });
}

/// The same files one after the other, with the buffers kept, and no batch around them.
double plainSeconds(const Photographs& photographs) {
  return secondsOf(photographs, [&] {
    RepairWorkspace workspace;
    for (const Path& source : sourceFiles(photographs.input()))
      DNGWriter::repairCopy(source, photographs.output() / source.filename(), photographs.profile(), workspace);
  });
}

void repairFolder(benchmark::State& state) {
  const Photographs photographs(static_cast<int>(state.range(0)));
  constexpr double never = std::numeric_limits<double>::infinity();
  double plain = never;
  double one = never;
  double two = never;
  for (auto _ : state) {
    plain = std::min(plain, plainSeconds(photographs));
    one = std::min(one, batchSeconds(photographs, 1));
    two = std::min(two, batchSeconds(photographs, 2));
  }
  state.counters["one_ms_per_file"] = one * 1000 / fileCount;
  state.counters["two_ms_per_file"] = two * 1000 / fileCount;
  state.counters["speedup"] = one / two;
  state.counters["overhead_percent"] = (one / plain - 1) * 100;
  state.counters["samples_per_second"] = static_cast<double>(width * height) * fileCount / two;
}
BENCHMARK(repairFolder)->ArgName("bits")->Arg(16)->Arg(12)->Iterations(rounds)->Unit(benchmark::kMillisecond);

/// What the batch itself costs a file: the repair does nothing.
void listNameAndReport(benchmark::State& state) {
  const Photographs photographs(16);
  for (auto _ : state) {
    BatchProcessor processor(
        [](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) { return DNGWriteResult{}; });
    const BatchSummary summary =
        processor.processFolder(photographs.input(), photographs.output(), photographs.profile(), 2,
                                {ExistingOutputPolicy::skip, false}, nullptr, nullptr);
    benchmark::DoNotOptimize(summary.succeeded);
  }
  state.counters["per_file"] = benchmark::Counter(static_cast<double>(state.iterations()) * fileCount,
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(listNameAndReport)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
