#include "calibration/TestSensor.h"
#include "calibration/columns/ColumnResidual.h"
#include "calibration/columns/TrailingEvidence.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::trailFrameEvidence;
using CalibrationEngine::TrailSamples;
using CalibrationEngine::trailSeeds;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;

CalibrationCandidate pixel(std::int64_t x, std::int64_t y) {
  CalibrationCandidate candidate;
  candidate.x = x;
  candidate.yStart = y;
  candidate.yEnd = y;
  return candidate;
}

std::vector<TrailSeed> seedsOf(const std::vector<CalibrationCandidate>& pixels, const DNGMetadata& metadata) {
  return trailSeeds(pixels, metadata);
}

TEST(TrailSeeds, AreTheTopmostPixelsOfTheirColumns) {
  const DNGMetadata metadata = linearSensor(300, 400);
  EXPECT_THAT(seedsOf({pixel(100, 200), pixel(50, 60), pixel(100, 30), pixel(100, 31)}, metadata),
              ElementsAre(TrailSeed{50, 60}, TrailSeed{100, 30}));
  EXPECT_THAT(seedsOf({}, metadata), IsEmpty());
}

TEST(TrailSeeds, KeepThirtyTwoColumnsToTheBorderOfTheActiveArea) {
  const DNGMetadata metadata = withBorder(linearSensor(300, 400), 10, 20);
  EXPECT_THAT(seedsOf({pixel(41, 100), pixel(42, 100), pixel(277, 100), pixel(278, 100)}, metadata),
              ElementsAre(TrailSeed{42, 100}, TrailSeed{277, 100}));
}

TEST(TrailSeeds, NeedA129thActiveRowFromTheirOwnOn) {
  const DNGMetadata metadata = withBorder(linearSensor(300, 400), 10, 20);  // rows end before 420
  EXPECT_THAT(seedsOf({pixel(100, 291), pixel(101, 292), pixel(102, 293)}, metadata), ElementsAre(TrailSeed{100, 291}));
}

double value(const TestFrame& frame, const DNGMetadata& metadata, const TrailSeed& seed) {
  return trailFrameEvidence(frame.samples(), "key", std::vector{seed}, metadata, 1).values.at(0);
}

TEST(TrailEvidence, IsTheOffsetBelowTheSeed) {
  for (const DNGMetadata& metadata : {linearSensor(200, 300), mosaicSensor(200, 300)}) {
    TestFrame frame(metadata, 5000);
    frame.addToColumn(100, 50, 12);
    EXPECT_EQ(value(frame, metadata, {100, 50}), 12);
    frame.addToColumn(100, 50, -24);
    EXPECT_EQ(value(frame, metadata, {100, 50}), -12);
  }
}

TEST(TrailEvidence, TakesRawCoordinates) {
  const DNGMetadata metadata = withBorder(mosaicSensor(200, 300), 30, 40);
  TestFrame frame(metadata, 5000);
  frame.addToColumn(100, 50, 12);
  EXPECT_EQ(value(frame, metadata, {130, 90}), 12);
}

// Which rows matter: a sample that is far off there changes the value.
std::vector<std::int64_t> measuredRows(const DNGMetadata& metadata, const TrailSeed& seed) {
  std::vector<std::int64_t> rows;
  for (std::int64_t row = 0; row < metadata.activeHeight; ++row) {
    TestFrame frame(metadata, 5000);
    frame.at(seed.x, row) = 5200;
    if (value(frame, metadata, seed) != 0) rows.push_back(row);
  }
  return rows;
}

TEST(TrailEvidence, MeasuresEverySeventhRowOfAMosaic) {
  const auto rows = measuredRows(mosaicSensor(80, 190), {40, 20});
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(rows.front(), 36);
  EXPECT_EQ(rows[1], 43);
  EXPECT_EQ(rows.back(), 36 + 7 * ((181 - 36) / 7)) << "below 182";
  EXPECT_EQ(rows.size(), 21U);
}

TEST(TrailEvidence, MeasuresEveryEighthRowWithoutAMosaic) {
  const auto rows = measuredRows(linearSensor(80, 190), {40, 20});
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(rows.front(), 36);
  EXPECT_EQ(rows[1], 44);
  EXPECT_EQ(rows.back(), 180);
  EXPECT_EQ(rows.size(), 19U);
}

TEST(TrailEvidence, SubtractsTheMedianOfEightColumnsSixApart) {
  const DNGMetadata metadata = linearSensor(200, 300);
  TestFrame frame(metadata, 5000);
  frame.addToColumn(100, 0, 20);
  for (const std::int64_t offset : {-24, -12, 6})
    frame.addToColumn(100 + offset, 0, 9);
  EXPECT_EQ(value(frame, metadata, {100, 50}), 20) << "three of eight: the median is still 0";
  frame.addToColumn(118, 0, 9);
  EXPECT_EQ(value(frame, metadata, {100, 50}), 20 - 9) << "four of eight: the upper of the middle two";
}

TEST(TrailEvidence, IsZeroWithoutRowsToMeasure) {
  const DNGMetadata metadata = linearSensor(200, 100);
  TestFrame frame(metadata, 5000);
  frame.addToColumn(100, 0, 20);
  EXPECT_EQ(value(frame, metadata, {100, 76}), 0) << "row 92 is the first of the last eight";
  EXPECT_EQ(value(frame, metadata, {100, 75}), 20);
}

/// A frame of noise, and a few dozen seeds on it.
struct NoisyFrame {
  DNGMetadata metadata;
  TestFrame frame;
  std::vector<TrailSeed> seeds;

  explicit NoisyFrame(const DNGMetadata& sensor) : metadata(sensor), frame(sensor, 5000) {
    std::mt19937 random(9);
    for (std::int64_t y = 0; y < metadata.activeHeight; ++y) {
      for (std::int64_t x = 0; x < metadata.activeWidth; ++x)
        frame.at(x, y) = static_cast<std::uint16_t>(4800 + random() % 400);
    }
    std::set<TrailSeed> all;
    for (int count = 0; count < 40; ++count)
      all.insert({metadata.activeX + 32 + static_cast<std::int64_t>(random() % 336),
                  metadata.activeY + static_cast<std::int64_t>(random() % 100)});
    seeds.assign(all.begin(), all.end());
  }

  [[nodiscard]] std::vector<double> values(int threads) const {
    return trailFrameEvidence(frame.samples(), "key", seeds, metadata, threads).values;
  }
};

TEST(TrailEvidence, EqualsThePlainFormulaOnAnyNumberOfThreads) {
  for (const DNGMetadata& metadata :
       {withBorder(mosaicSensor(400, 260), 3, 4), withBorder(linearSensor(400, 260), 3, 4)}) {
    const NoisyFrame noisy(metadata);
    std::vector<double> expected;
    for (const TrailSeed& seed : noisy.seeds) {
      std::vector<double> means;
      for (const std::int64_t offset : {0, -24, -18, -12, -6, 6, 12, 18, 24}) {
        double sum = 0;
        int count = 0;
        for (std::int64_t row = seed.y + 16; row < metadata.activeY + 260 - 8; row += metadata.cfaLayout ? 7 : 8) {
          const std::int64_t index = row * metadata.rawWidth + seed.x + offset;
          sum += CalibrationEngine::normalizedColumnResidual(noisy.frame.samples(), index, metadata);
          ++count;
        }
        means.push_back(sum / count);
      }
      std::vector<double> neighbours(means.begin() + 1, means.end());
      std::sort(neighbours.begin(), neighbours.end());
      expected.push_back(means[0] - neighbours[4]);
    }
    for (const int threads : {1, 2, 5, 100})
      EXPECT_EQ(noisy.values(threads), expected) << threads << " threads";
  }
}

TEST(TrailSamples, AreAllThatTheMeasurementLooksAt) {
  for (const DNGMetadata& metadata :
       {withBorder(mosaicSensor(400, 260), 3, 4), withBorder(linearSensor(400, 260), 3, 4)}) {
    const NoisyFrame noisy(metadata);
    const RawSamples& full = noisy.frame.samples();
    RawSamples part(full.size(), 0xBAD);
    TrailSamples wanted(noisy.seeds, metadata);
    std::size_t copied = 0;
    for (std::int64_t row = 0; row < metadata.rawHeight; ++row) {
      for (const SampleRun& run : wanted.ofRow(row)) {
        const auto first = static_cast<std::ptrdiff_t>(row * metadata.rawWidth + run.column);
        std::copy_n(full.begin() + first, run.count, part.begin() + first);
        copied += static_cast<std::size_t>(run.count);
      }
    }
    EXPECT_EQ(trailFrameEvidence(part, "key", noisy.seeds, metadata, 1).values, noisy.values(1));
    EXPECT_LT(copied, full.size() * 3 / 4) << "and not all of the frame";
  }
}

TEST(TrailSamples, JoinRunsThatTouch) {
  const DNGMetadata metadata = mosaicSensor(400, 300);
  const std::vector<TrailSeed> seeds{{100, 50}, {161, 50}, {250, 50}, {330, 51}};
  TrailSamples samples(seeds, metadata);
  EXPECT_THAT(samples.ofRow(66), ElementsAre(SampleRun{66, 70, 122}, SampleRun{66, 220, 61}));
  EXPECT_THAT(samples.ofRow(67), ElementsAre(SampleRun{67, 300, 61}));
  EXPECT_THAT(samples.ofRow(65), IsEmpty());
  EXPECT_THAT(samples.ofRow(59), IsEmpty()) << "a step above the first row";
}

TEST(TrailSamples, EndBeforeTheLastEightRows) {
  const DNGMetadata metadata = mosaicSensor(400, 300);
  const std::vector<TrailSeed> seeds{{100, 24}};
  TrailSamples samples(seeds, metadata);
  EXPECT_THAT(samples.ofRow(285), ElementsAre(SampleRun{285, 70, 61}));
  EXPECT_THAT(samples.ofRow(292), IsEmpty());
}

}  // namespace
}  // namespace tessaly
