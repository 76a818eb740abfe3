// Reading files of 24 megapixels in memory (tmpfs, no disk in the way) into a plane that is kept, against merely
// reading their bytes a megabyte at a time; and reading their metadata alone.
#include "dng/DNGReader.h"
#include "dng/Floor.h"
#include "platform/InputFile.h"
#include "tools/DNGBuilder.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace tessaly::bench {
namespace {

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;

/// A photograph in memory, removed at the end.
class Photograph {
 public:
  explicit Photograph(tools::DNGBuilder builder, int bits)
      : path_("/dev/shm/tessaly-benchmark-" + std::to_string(::getpid()) + ".dng") {
    std::mt19937 random(1);
    std::vector<std::uint16_t> codes(static_cast<std::size_t>(width * height));
    for (std::uint16_t& code : codes)
      code = static_cast<std::uint16_t>(random() >> (32 - bits));
    builder.size(width, height).bits(bits).samples(std::move(codes)).inSubIFD().exif(100, {{1, 50}}).write(path_);
  }

  Photograph(const Photograph&) = delete;
  Photograph& operator=(const Photograph&) = delete;

  ~Photograph() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// The floor: the bytes of a file, read and thrown away.
class PlainReading {
 public:
  explicit PlainReading(const std::filesystem::path& path) : file_(path), slice_(std::size_t{1} << 20U) {}

  void operator()() {
    for (std::int64_t offset = 0; offset < file_.size(); offset += static_cast<std::int64_t>(slice_.size())) {
      benchmark::DoNotOptimize(file_.readAt(offset, slice_));
    }
  }

 private:
  InputFile file_;
  std::vector<std::byte> slice_;
};

void readPhotograph(benchmark::State& state, const Photograph& photograph) {
  const DNGMetadata metadata = DNGReader::readMetadata(photograph.path());
  RawSamples samples;
  DNGReader::readRaw(photograph.path(), metadata, samples);
  againstFloor(state, "x_reading", width * height, PlainReading(photograph.path()),
               [&] { DNGReader::readRaw(photograph.path(), metadata, samples); });
}

void readRawStrip(benchmark::State& state) {
  tools::DNGBuilder builder;
  if (state.range(1) != 0) builder.bigEndian();
  readPhotograph(state,
                 Photograph(builder.fillOrder(static_cast<int>(state.range(2))), static_cast<int>(state.range(0))));
}

void readRawTiles(benchmark::State& state) {
  readPhotograph(state, Photograph(tools::DNGBuilder().tiles(256, 256), static_cast<int>(state.range(0))));
}

/// Bytes that this process has asked the system for so far.
double bytesRead() {
  std::ifstream statistics("/proc/self/io");
  std::string name;
  double count = 0;
  statistics >> name >> count;  // rchar:
  return count;
}

void readMetadata(benchmark::State& state) {
  const Photograph photograph(tools::DNGBuilder(), 16);
  const double before = bytesRead();
  for (auto _ : state)
    benchmark::DoNotOptimize(DNGReader::readMetadata(photograph.path()));
  state.counters["bytes_read"] = (bytesRead() - before) / static_cast<double>(state.iterations());
}

BENCHMARK(readRawStrip)
    ->ArgNames({"bits", "bigEndian", "fillOrder"})
    ->ArgsProduct({{10, 12, 14}, {0}, {1, 2}})
    ->ArgsProduct({{16}, {0, 1}, {1, 2}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readRawTiles)->ArgName("bits")->Arg(12)->Arg(16)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readMetadata)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessaly::bench

BENCHMARK_MAIN();
