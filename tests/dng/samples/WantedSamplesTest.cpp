#include "dng/DNGReader.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace tessaly {
namespace {

/// Random runs of every row of an image.
class RandomRuns {
 public:
  RandomRuns(std::int64_t width, std::int64_t height) : rows_(static_cast<std::size_t>(height)) {
    std::mt19937 random(4);
    for (std::int64_t row = 0; row < height; ++row) {
      for (std::int64_t column = 0; column < width;) {
        const std::int64_t first = column + static_cast<std::int64_t>(random() % 20);
        const std::int64_t end = std::min(first + 1 + static_cast<std::int64_t>(random() % 30), width);
        if (first < end) rows_[static_cast<std::size_t>(row)].push_back({row, first, end - first});
        column = end + 1;
      }
    }
  }

  [[nodiscard]] WantedSamples wanted() const {
    return [this](std::int64_t row) { return std::span(rows_[static_cast<std::size_t>(row)]); };
  }

  [[nodiscard]] std::vector<SampleRun> all() const {
    std::vector<SampleRun> runs;
    for (const auto& row : rows_)
      runs.insert(runs.end(), row.begin(), row.end());
    return runs;
  }

 private:
  std::vector<std::vector<SampleRun>> rows_;
};

tools::DNGBuilder image(int bits) {
  std::mt19937 random(static_cast<unsigned>(bits));
  std::vector<std::uint16_t> samples;
  for (int i = 0; i < 101 * 33; ++i)
    samples.push_back(static_cast<std::uint16_t>(random() % (1U << bits)));
  return tools::DNGBuilder().size(101, 33).bits(bits).samples(std::move(samples));
}

void expectWantedSamplesOf(tools::DNGBuilder builder, const std::string& name) {
  SCOPED_TRACE(name);
  const tests::TemporaryFolder folder;
  builder.write(folder / "image.dng");
  const DNGMetadata metadata = DNGReader::readMetadata(folder / "image.dng");
  const RawSamples full = DNGReader::readRaw(folder / "image.dng", metadata);
  const RandomRuns runs(101, 33);
  RawSamples part;
  DNGReader::readRaw(folder / "image.dng", metadata, runs.wanted(), part);
  ASSERT_EQ(part.size(), full.size());
  for (const SampleRun& run : runs.all()) {
    const auto first = static_cast<std::ptrdiff_t>(run.row * 101 + run.column);
    EXPECT_TRUE(std::equal(full.begin() + first, full.begin() + first + run.count, part.begin() + first))
        << "row " << run.row << ", column " << run.column;
  }
}

TEST(WantedSamples, AreThoseOfAFullReading) {
  for (const int bits : {8, 10, 12, 14, 16}) {
    for (const int order : {1, 2}) {
      const std::string name = std::to_string(bits) + " bits, fill order " + std::to_string(order);
      expectWantedSamplesOf(image(bits).fillOrder(order), name);
      expectWantedSamplesOf(image(bits).fillOrder(order).strips(5).bigEndian(), name + ", big-endian strips");
      expectWantedSamplesOf(image(bits).fillOrder(order).tiles(48, 16), name + ", tiles");
    }
  }
}

TEST(WantedSamples, GoThroughTheLinearizationTable) {
  std::vector<std::uint16_t> table;
  for (int code = 0; code < 1024; ++code)
    table.push_back(static_cast<std::uint16_t>(code * 37 % 4096));
  expectWantedSamplesOf(image(10).linearization(table).tiles(48, 16), "10 bits, table");
  auto codes = image(10);
  expectWantedSamplesOf(codes.bits(16).linearization(table), "16 bits, table");
}

TEST(WantedSamples, MayBeNone) {
  const tests::TemporaryFolder folder;
  image(12).write(folder / "image.dng");
  RawSamples samples;
  DNGReader::readRaw(
      folder / "image.dng", DNGReader::readMetadata(folder / "image.dng"),
      [](std::int64_t) { return std::span<const SampleRun>(); }, samples);
  EXPECT_EQ(samples.size(), 101U * 33U);
}

}  // namespace
}  // namespace tessaly
