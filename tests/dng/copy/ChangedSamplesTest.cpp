#include "dng/copy/ChangedSamples.h"

#include <gmock/gmock.h>

#include <vector>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Columns 10 to 19 of rows 4 to 7.
const Segment segment{0, 10, 4, 10, 4, 4};

std::vector<SampleRun> runsIn(const ChangedSamples& changed, std::int64_t row) {
  std::vector<SampleRun> runs;
  changed.forEachRun(segment, row, [&](const SampleRun& run) { runs.push_back(run); });
  return runs;
}

TEST(ChangedSamples, HoldEverySampleUnlessToldOtherwise) {
  const ChangedSamples changed;
  EXPECT_TRUE(changed.all());
  EXPECT_EQ(changed.nextRow(segment, 5), 5);
  EXPECT_EQ(changed.nextRow(segment, 8), std::nullopt);
  EXPECT_THAT(runsIn(changed, 5), ElementsAre(SampleRun{5, 10, 10}));
}

TEST(ChangedSamples, AreNoneWithoutRuns) {
  const ChangedSamples changed{std::span<const SampleRun>()};
  EXPECT_FALSE(changed.all());
  EXPECT_EQ(changed.nextRow(segment, 4), std::nullopt);
  EXPECT_THAT(runsIn(changed, 5), IsEmpty());
}

TEST(ChangedSamples, AreCutAtTheEdgesOfTheSegment) {
  const std::vector<SampleRun> runs{{5, 0, 12}, {5, 14, 1}, {5, 18, 40}};
  EXPECT_THAT(runsIn(ChangedSamples(runs), 5),
              ElementsAre(SampleRun{5, 10, 2}, SampleRun{5, 14, 1}, SampleRun{5, 18, 2}));
}

TEST(ChangedSamples, LeaveOutRunsThatOnlyTouchTheSegment) {
  const std::vector<SampleRun> runs{{5, 0, 10}, {5, 20, 3}};
  EXPECT_THAT(runsIn(ChangedSamples(runs), 5), IsEmpty());
  EXPECT_EQ(ChangedSamples(runs).nextRow(segment, 4), std::nullopt);
}

TEST(ChangedSamples, FindTheNextRowPastRunsBesideTheSegment) {
  const std::vector<SampleRun> runs{{3, 12, 1}, {4, 30, 1}, {5, 0, 10}, {6, 25, 1}, {7, 19, 1}, {9, 12, 1}};
  EXPECT_EQ(ChangedSamples(runs).nextRow(segment, 4), 7);
  EXPECT_EQ(ChangedSamples(runs).nextRow(segment, 7), 7);
  EXPECT_EQ(ChangedSamples(runs).nextRow(segment, 8), std::nullopt);
}

TEST(ChangedSamples, EndWithTheLastRowOfTheSegment) {
  const std::vector<SampleRun> runs{{8, 12, 1}};
  EXPECT_EQ(ChangedSamples(runs).nextRow(segment, 4), std::nullopt);
}

}  // namespace
}  // namespace tessaly
