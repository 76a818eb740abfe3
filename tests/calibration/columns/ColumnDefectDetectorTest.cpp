#include "calibration/TestSensor.h"
#include "calibration/columns/ColumnDefectDetector.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using ColumnDefectDetector::detect;
using ColumnDefectDetector::detrended;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

/// Frames with some noise; the same for equal widths and counts.
class Frames {
 public:
  explicit Frames(std::int64_t width = 400) : width_(width) {}

  Frames& group(const std::string& key, int count) {
    for (int frame = 0; frame < count; ++frame) {
      ColumnFrameEvidence evidence{key, {}};
      for (std::int64_t column = 0; column < width_; ++column)
        evidence.residuals.push_back(static_cast<double>(random_() % 1000) / 10000 - 0.05);
      frames_.push_back(std::move(evidence));
    }
    return *this;
  }

  /// Sets a column in all frames.
  Frames& column(std::size_t x, double residual) {
    for (std::size_t frame = 0; frame < frames_.size(); ++frame)
      set(frame, x, residual);
    return *this;
  }

  Frames& set(std::size_t frame, std::size_t x, double residual) {
    frames_[frame].residuals[x] = residual;
    return *this;
  }

  [[nodiscard]] std::vector<ColumnDetection> detections() const { return detect(frames_, width_); }
  [[nodiscard]] const std::vector<ColumnFrameEvidence>& all() const { return frames_; }

 private:
  std::int64_t width_;
  std::mt19937 random_{2};
  std::vector<ColumnFrameEvidence> frames_;
};

TEST(ColumnDefectDetector, FindsAColumnThatIsOffsetInAllFrames) {
  const auto found = Frames().group("a", 3).group("b", 3).column(200, -5).detections();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].x, 200);
  EXPECT_EQ(found[0].width, 1);
  EXPECT_NEAR(found[0].effect, -5, 0.1);
  EXPECT_GT(found[0].sigma, 100);
  EXPECT_EQ(found[0].agreement, 1);
  EXPECT_EQ(found[0].exposureGroupCount, 2);
}

TEST(ColumnDefectDetector, FindsNothingInFiveFrames) {
  EXPECT_THAT(Frames().group("a", 5).column(200, 5).detections(), SizeIs(0));
  EXPECT_THAT(Frames().group("a", 6).column(200, 5).detections(), SizeIs(1));
}

TEST(ColumnDefectDetector, NeedsAnActiveWidthOf257) {
  EXPECT_THAT(Frames(256).group("a", 6).column(128, 5).detections(), SizeIs(0));
  EXPECT_THAT(Frames(257).group("a", 6).column(128, 5).detections(), SizeIs(0)) << "the only tested column";
  EXPECT_THAT(Frames(259).group("a", 6).column(129, 5).detections(), SizeIs(1)) << "the middle one of three";
}

TEST(ColumnDefectDetector, TestsNoColumnWithin128OfEitherBorder) {
  for (const std::size_t column : {0U, 60U, 127U, 272U, 339U, 399U})
    EXPECT_THAT(Frames().group("a", 6).column(column, 5).detections(), SizeIs(0)) << "column " << column;
  for (const std::size_t column : {128U, 271U})
    EXPECT_THAT(Frames().group("a", 6).column(column, 5).detections(), SizeIs(1)) << "column " << column;
}

TEST(ColumnDefectDetector, NeedsNineFramesInTenToAgree) {
  Frames frames;
  frames.group("a", 20).column(200, 5).set(0, 200, -5).set(1, 200, -5);
  ASSERT_THAT(frames.detections(), SizeIs(1));
  EXPECT_EQ(frames.detections()[0].agreement, 0.9);
  EXPECT_THAT(frames.set(2, 200, -5).detections(), SizeIs(0));
}

TEST(ColumnDefectDetector, RejectsAColumnOfOppositeSignInOneGroup) {
  Frames frames;
  frames.group("a", 57).group("b", 3).column(200, 5);
  EXPECT_THAT(frames.detections(), SizeIs(1));
  frames.set(57, 200, -5).set(58, 200, -5).set(59, 200, -5);
  EXPECT_THAT(frames.detections(), SizeIs(0)) << "95 % of the frames agree, one group does not";
}

TEST(ColumnDefectDetector, IgnoresGroupsOfTwoFrames) {
  Frames frames;
  frames.group("a", 18).group("b", 2).column(200, 5).set(18, 200, -5).set(19, 200, -5);
  ASSERT_THAT(frames.detections(), SizeIs(1));
  EXPECT_EQ(frames.detections()[0].exposureGroupCount, 1);
}

TEST(ColumnDefectDetector, NeedsAGroupThatCounts) {
  EXPECT_THAT(Frames().group("a", 2).group("b", 2).group("c", 2).column(200, 5).detections(), SizeIs(0));
}

TEST(ColumnDefectDetector, NeedsAThirdOfTheEffectInEveryGroup) {
  const auto found = [](double second) {
    Frames frames;
    frames.group("a", 7).group("b", 3).column(200, 20);
    for (std::size_t frame = 7; frame < 10; ++frame)
      frames.set(frame, 200, second);
    return frames.detections().size();
  };
  EXPECT_EQ(found(7.3), 1U);
  EXPECT_EQ(found(6.7), 0U) << "0.35 of 20 is 7";
}

TEST(ColumnDefectDetector, NeedsAnOffsetOfOneInEveryGroup) {
  EXPECT_THAT(Frames().group("a", 6).column(200, 1.2).detections(), SizeIs(1));
  EXPECT_THAT(Frames().group("a", 6).column(200, 0.8).detections(), SizeIs(0));
}

TEST(ColumnDefectDetector, JoinsAdjacentColumnsOfOneSign) {
  const auto found = Frames().group("a", 6).column(200, 5).column(201, 9).column(202, 7).set(0, 202, -7).detections();
  ASSERT_THAT(found, SizeIs(1)) << "five sixths of the frames agree on column 202: fewer than nine tenths";
  EXPECT_EQ(found[0].x, 200);
  EXPECT_EQ(found[0].width, 2);
  EXPECT_NEAR(found[0].effect, 9, 0.1) << "the strongest column";
  EXPECT_EQ(found[0].agreement, 1);
}

TEST(ColumnDefectDetector, GivesARunTheSmallestAgreementOfItsColumns) {
  const auto found = Frames().group("a", 10).column(200, 9).column(201, 5).set(0, 201, -5).detections();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].width, 2);
  EXPECT_EQ(found[0].agreement, 0.9);
}

TEST(ColumnDefectDetector, SeparatesAdjacentColumnsOfOppositeSign) {
  const auto found = Frames().group("a", 6).column(200, 5).column(201, -9).detections();
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].x, 201) << "the stronger first";
  EXPECT_EQ(found[0].width, 1);
  EXPECT_EQ(found[1].x, 200);
  EXPECT_EQ(found[1].width, 1);
}

TEST(ColumnDefectDetector, SortsEquallyStrongDetectionsByColumn) {
  std::vector<ColumnFrameEvidence> frames(6, {"a", std::vector<double>(400)});
  for (ColumnFrameEvidence& frame : frames) {
    for (const std::size_t column : {260U, 140U, 200U})
      frame.residuals[column] = 5;
  }
  const auto found = detect(frames, 400);
  ASSERT_THAT(found, SizeIs(3));
  EXPECT_EQ(found[0].x, 140);
  EXPECT_EQ(found[1].x, 200);
  EXPECT_EQ(found[2].x, 260);
  EXPECT_DOUBLE_EQ(found[0].sigma, 5 / 0.001) << "no spread at all counts as a thousandth";
}

TEST(ColumnDefectDetector, ComparesWithTheSpreadOfAllColumns) {
  Frames frames;
  frames.group("a", 6).column(200, 5);
  const double sigma = frames.detections()[0].sigma;
  EXPECT_THAT(detect(frames.all(), 400, sigma), SizeIs(1));
  EXPECT_THAT(detect(frames.all(), 400, std::nextafter(sigma, 1e9)), SizeIs(0));
}

TEST(ColumnDetrending, SubtractsTheMedianOfTheSurroundings) {
  std::vector<double> residuals;
  for (int column = 0; column < 100; ++column)
    residuals.push_back(column);
  const auto result = detrended(residuals);
  // 42 values, 21 on either side; the upper median is the nearest one to the right, four columns on.
  EXPECT_EQ(result[50], 50 - 54);
  EXPECT_EQ(result[32], 32 - 36);
  EXPECT_EQ(result[67], 67 - 71);
  EXPECT_EQ(result[31], 0);
  EXPECT_EQ(result[68], 0);
}

TEST(ColumnDetrending, LeavesOutThreeColumnsOnEitherSide) {
  std::vector<double> residuals(200);
  for (std::size_t column = 97; column <= 103; ++column)
    residuals[column] = 8;
  EXPECT_EQ(detrended(residuals)[100], 8);
}

TEST(ColumnDetrending, NeedsMoreThan64Residuals) {
  EXPECT_THAT(detrended(std::vector<double>(64, 5)), Each(0));
  std::vector<double> residuals(65);
  residuals[32] = 3;
  EXPECT_EQ(detrended(residuals)[32], 3);
  EXPECT_THAT(detrended({}), SizeIs(0));
}

TEST(ColumnCandidates, SpanTheActiveHeightInRawCoordinates) {
  DNGMetadata metadata = tests::withBorder(tests::linearSensor(400, 90), 64, 32);
  const auto frames = Frames().group("a", 3).group("b", 3).column(200, -5).column(201, -5);
  const auto lines = CalibrationEngine::detectColumns(frames.all(), metadata);
  ASSERT_THAT(lines, SizeIs(1));
  const auto detection = frames.detections()[0];
  CalibrationCandidate expected;
  expected.id = lines[0].id;
  expected.kind = CalibrationCandidate::Kind::line;
  expected.x = 264;
  expected.yStart = 32;
  expected.yEnd = 121;
  expected.width = 2;
  expected.confidence = 0.99;
  expected.evidenceSigma = detection.sigma;
  expected.frameAgreement = 1.0;
  expected.exposureGroupCount = 2;
  expected.reason = lines[0].reason;
  EXPECT_EQ(lines[0], expected);
  EXPECT_THAT(lines[0].reason,
              testing::MatchesRegex("Fixed column anomaly [0-9]+\\.[0-9]σ; same sign in 100% of frames; "
                                    "repeated across 2 exposure groups"));
}

TEST(ColumnCandidates, WriteTheirReasonWithRoundedNumbers) {
  const ColumnDetection detection{10, 1, 3, 6.3, 0.97, 3};
  const auto line = CalibrationEngine::lineCandidate(detection, tests::linearSensor(400, 90));
  EXPECT_EQ(line.reason, "Fixed column anomaly 6.3σ; same sign in 97% of frames; repeated across 3 exposure groups");
  EXPECT_EQ(line.confidence, 6.3 / 20 + 0.5);
  const auto reason = [](double sigma, double agreement) {
    return CalibrationEngine::lineCandidate({10, 1, 3, sigma, agreement, 12}, tests::linearSensor(400, 90)).reason;
  };
  EXPECT_EQ(reason(5000, 1),
            "Fixed column anomaly 5000.0σ; same sign in 100% of frames; repeated across 12 exposure groups");
  EXPECT_EQ(reason(4.25, 0.925),
            "Fixed column anomaly 4.2σ; same sign in 92% of frames; repeated across 12 exposure groups")
      << "exact halves go to the even digit";
  EXPECT_EQ(reason(4.35, 0.935),
            "Fixed column anomaly 4.3σ; same sign in 94% of frames; repeated across 12 exposure groups")
      << "4.35 is a little less in binary";
}

}  // namespace
}  // namespace tessaly
