// Unpacking and packing 24 million samples in memory, row by row as a photograph is stored. Goals: 16-bit little-endian
// 1.5 × memcpy of the plane, packed depths 4 ×, any byte and fill order within twice that.
#include "dng/Floor.h"
#include "dng/samples/SamplePacker.h"
#include "dng/samples/SampleUnpacker.h"

#include <benchmark/benchmark.h>

#include <random>

namespace tessaly::bench {
namespace {

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;

SampleFormat formatOf(const benchmark::State& state) {
  return {static_cast<int>(state.range(0)), state.range(1) == 0, state.range(2) == 2};
}

/// The stored rows of an image, and its plane.
struct Image {
  explicit Image(const SampleFormat& sampleFormat)
      : format(sampleFormat),
        rowBytes(static_cast<std::size_t>(format.byteCount(width))),
        bytes(rowBytes * height),
        plane(static_cast<std::size_t>(width * height)) {
    std::mt19937_64 random(1);
    for (std::byte& byte : bytes)
      byte = static_cast<std::byte>(random());
    unpack();
  }

  void unpack() {
    for (std::size_t row = 0; row < height; ++row) {
      unpackSamples(format, std::span(bytes).subspan(row * rowBytes, rowBytes),
                    std::span(plane).subspan(row * width, width));
    }
  }

  void pack() {
    for (std::size_t row = 0; row < height; ++row) {
      packSamples(format, std::span(plane).subspan(row * width, width),
                  std::span(bytes).subspan(row * rowBytes, rowBytes));
    }
  }

  SampleFormat format;
  std::size_t rowBytes;
  std::vector<std::byte> bytes;
  std::vector<std::uint16_t> plane;
};

void unpack(benchmark::State& state) {
  Image image(formatOf(state));
  againstFloor(state, "x_memcpy", width * height, PlaneCopy(image.plane.size()), [&] { image.unpack(); });
}

void pack(benchmark::State& state) {
  Image image(formatOf(state));
  againstFloor(state, "x_memcpy", width * height, PlaneCopy(image.plane.size()), [&] { image.pack(); });
}

void everyFormat(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"bits", "bigEndian", "fillOrder"})->ArgsProduct({{8, 10, 12, 14}, {0}, {1, 2}});
  benchmark->ArgsProduct({{16}, {0, 1}, {1, 2}})->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(unpack)->Apply(everyFormat);
BENCHMARK(pack)->Apply(everyFormat);

}  // namespace
}  // namespace tessaly::bench

BENCHMARK_MAIN();
