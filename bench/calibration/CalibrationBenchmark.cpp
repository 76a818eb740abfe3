// The calibration of thirty frames of 24 megapixels and its parts, on one thread: the point pass against merely adding
// up the same samples, everything else against the point passes.
//
// Goals: point pass of a dark frame at most 2.5 and of a bright one at most 4 times the floor; column evidence of a
// frame at most 1.3 times its point pass; previews and partial columns (200 seeds) together at most half of the point
// passes; the whole analysis at most 2.3 times reading, decoding and point-passing its frames.
#include "calibration/CalibrationAnalysis.h"
#include "calibration/CalibrationEngine.h"
#include "calibration/RawPreview.h"
#include "calibration/columns/ColumnEvidence.h"
#include "calibration/columns/TrailingEvidence.h"
#include "calibration/points/DeviationMap.h"
#include "dng/DNGReader.h"
#include "dng/Floor.h"
#include "tools/DNGBuilder.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace tessaly::bench {
namespace {

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;
constexpr int seedCount = 200;
constexpr int bits = 12;
constexpr std::int64_t black = 256;
constexpr std::int64_t white = 4095;

/// Numbers that look random enough for noise, fast.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed * 2654435761U + 1) {}

  /// From 0 to `limit` − 1.
  std::uint32_t below(std::uint32_t limit) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<std::uint32_t>((std::uint64_t{state_} * limit) >> 32U);
  }

 private:
  std::uint32_t state_;
};

/// 200 hot pixels in as many columns, the same in every frame.
std::vector<TrailSeed> seeds() {
  Noise places(77);
  std::set<std::int64_t> columns;
  while (columns.size() < seedCount)
    columns.insert(40 + places.below(5900));
  std::vector<TrailSeed> result;
  for (const std::int64_t column : columns)
    result.push_back({column, 10 + places.below(3000)});
  return result;
}

std::vector<std::uint16_t> frame(std::uint32_t number, bool isDark) {
  Noise noise(number);
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(width * height));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::size_t signal = isDark ? 0 : 1500 + i % 2 * 400;
    samples[i] = static_cast<std::uint16_t>(signal + black + noise.below(8) + noise.below(isDark ? 2 : 24));
  }
  for (const TrailSeed& seed : seeds())
    samples[static_cast<std::size_t>(seed.y * width + seed.x)] = static_cast<std::uint16_t>(white - noise.below(50));
  return samples;
}

DNGMetadata metadata() {
  DNGMetadata result;
  result.rawWidth = result.activeWidth = width;
  result.rawHeight = result.activeHeight = height;
  result.blackLevel = black;
  result.whiteLevel = white;
  result.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
  return result;
}

/// The floor of a point pass: the same memory, the simplest arithmetic.
class PlainPass {
 public:
  explicit PlainPass(const std::vector<std::uint16_t>& samples)
      : samples_(samples), sums_(samples.size()), counts_(samples.size()) {}

  void operator()() {
    const std::uint16_t* __restrict samples = samples_.data();
    std::int32_t* __restrict sums = sums_.data();
    std::uint8_t* __restrict counts = counts_.data();
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      sums[i] += samples[i];
      counts[i] = static_cast<std::uint8_t>(counts[i] + (samples[i] > 300));
    }
    benchmark::ClobberMemory();
  }

 private:
  const std::vector<std::uint16_t>& samples_;
  std::vector<std::int32_t> sums_;
  std::vector<std::uint8_t> counts_;
};

/// The point pass of one frame, again and again.
class PointPass {
 public:
  PointPass(const std::vector<std::uint16_t>& samples, bool isDark) : samples_(samples), map_(metadata_, 1) {
    map_.reset(isDark);
  }

  void operator()() { map_.add(samples_); }

 private:
  DNGMetadata metadata_ = metadata();
  const std::vector<std::uint16_t>& samples_;
  DeviationMap map_;
};

void pointPass(benchmark::State& state) {
  const bool isDark = state.range(0) != 0;
  const auto samples = frame(1, isDark);
  againstFloor(state, "x_plain_pass", width * height, PlainPass(samples), PointPass(samples, isDark));
}

void columnEvidence(benchmark::State& state) {
  const auto samples = frame(1, false);
  const DNGMetadata sensor = metadata();
  againstFloor(state, "x_bright_point_pass", width * height, PointPass(samples, false),
               [&] { benchmark::DoNotOptimize(CalibrationEngine::columnFrameEvidence(samples, "key", sensor, 1)); });
}

void preview(benchmark::State& state) {
  const auto samples = frame(1, false);
  const DNGMetadata sensor = metadata();
  againstFloor(state, "x_bright_point_pass", width * height, PointPass(samples, false),
               [&] { benchmark::DoNotOptimize(CalibrationEngine::makePreview(samples, sensor, 1500)); });
}

void inspection(benchmark::State& state) {
  const auto samples = frame(1, false);
  const DNGMetadata sensor = metadata();
  againstFloor(state, "x_bright_point_pass", width * height, PointPass(samples, false),
               [&] { benchmark::DoNotOptimize(CalibrationEngine::inspectionPreview(samples, sensor)); });
}

void trailingEvidence(benchmark::State& state) {
  const auto samples = frame(1, false);
  const DNGMetadata sensor = metadata();
  const auto places = seeds();
  againstFloor(state, "x_bright_point_pass", width * height, PointPass(samples, false), [&] {
    benchmark::DoNotOptimize(CalibrationEngine::trailFrameEvidence(samples, "key", places, sensor, 1));
  });
}

/// Twenty bright and ten dark frames of two exposures each, in memory (tmpfs); removed at the end.
class Frames {
 public:
  Frames() : folder_("/dev/shm/tessaly-calibration-" + std::to_string(::getpid())) {
    std::filesystem::create_directory(folder_);
    for (std::uint32_t number = 0; number < 30; ++number) {
      const bool isDark = number >= 20;
      urls_.push_back(folder_ / (std::to_string(number) + ".dng"));
      tools::DNGBuilder()
          .size(width, height)
          .bits(bits)
          .black(black)
          .white(white)
          .exif(100, {{1, exposure(number)}})
          .samples(frame(number, isDark))
          .write(urls_.back());
    }
  }

  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;

  ~Frames() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] const std::vector<std::filesystem::path>& urls() const { return urls_; }
  [[nodiscard]] static bool isDark(std::size_t number) { return number >= 20; }

 private:
  // Four settings: numbers 0 to 9, 10 to 19, 20 to 24 and 25 to 29.
  static std::int64_t exposure(std::uint32_t number) {
    if (number < 20) return number < 10 ? 125 : 60;
    return number < 25 ? 4 : 1;
  }

  std::filesystem::path folder_;
  std::vector<std::filesystem::path> urls_;
};

// Only the point passes of all frames.
void passPoints(const Frames& frames, RawSamples& samples) {
  const DNGMetadata sensor = DNGReader::readMetadata(frames.urls().front());
  DeviationMap map(sensor, 1);
  for (std::size_t number = 0; number < frames.urls().size(); ++number) {
    DNGReader::readRaw(frames.urls()[number], sensor, samples);
    if (number % 10 == 0) map.reset(Frames::isDark(number));
    map.add(samples);
  }
}

void wholeAnalysis(benchmark::State& state) {
  const Frames frames;
  RawSamples samples;
  againstFloor(
      state, "x_reading_and_points", 30 * width * height, [&] { passPoints(frames, samples); },
      [&] { benchmark::DoNotOptimize(CalibrationEngine::analyzeOnThreads(frames.urls(), nullptr, 1)); });
}

// Reading and measuring partial columns of all frames, and both previews, against the point passes alone.
void trailsAndPreviews(benchmark::State& state) {
  const Frames frames;
  const auto places = seeds();
  const DNGMetadata sensor = DNGReader::readMetadata(frames.urls().front());
  const auto bright = frame(1, false);
  const auto dark = frame(21, true);
  PointPass brightPass(bright, false);
  PointPass darkPass(dark, true);
  RawSamples samples;
  againstFloor(
      state, "x_point_passes", 30 * width * height,
      [&] {
        for (std::size_t number = 0; number < 30; ++number)
          Frames::isDark(number) ? darkPass() : brightPass();
      },
      [&] {
        CalibrationEngine::TrailSamples trail(places, sensor);
        for (const std::filesystem::path& url : frames.urls()) {
          DNGReader::readRaw(
              url, sensor, [&](std::int64_t row) { return trail.ofRow(row); }, samples);
          benchmark::DoNotOptimize(CalibrationEngine::trailFrameEvidence(samples, "key", places, sensor, 1));
        }
        benchmark::DoNotOptimize(CalibrationEngine::makePreview(samples, sensor, 1500));
        benchmark::DoNotOptimize(CalibrationEngine::inspectionPreview(samples, sensor));
      });
}

BENCHMARK(pointPass)->ArgName("dark")->Arg(1)->Arg(0)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(columnEvidence)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(preview)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inspection)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(trailingEvidence)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(trailsAndPreviews)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(wholeAnalysis)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessaly::bench

BENCHMARK_MAIN();
