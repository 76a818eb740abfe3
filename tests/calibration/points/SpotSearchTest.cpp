#include "calibration/TestSensor.h"
#include "calibration/points/DeviationMap.h"
#include "calibration/points/PointDetector.h"
#include "calibration/points/SpotSearch.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;
using Kind = CalibrationCandidate::Kind;
using Places = std::vector<std::pair<std::int64_t, std::int64_t>>;

constexpr std::uint16_t flatLevel = 10000;
constexpr std::uint16_t shadow = 8000;  // -200 thousandths

// Three frames that are darker at these places.
DeviationMap mapOf(const DNGMetadata& metadata, const Places& places, bool isDark = false,
                   std::uint16_t level = shadow) {
  TestFrame frame(metadata, flatLevel);
  for (const auto& [x, y] : places)
    frame.at(x, y) = level;
  DeviationMap map(metadata, 1);
  map.reset(isDark);
  for (int count = 0; count < 3; ++count)
    map.add(frame.samples());
  return map;
}

std::vector<PointFinding> spots(const DNGMetadata& metadata, const Places& places, std::uint16_t level = shadow) {
  DeviationMap map = mapOf(metadata, places, false, level);
  return findSpots(map).best();
}

// Places two samples apart: without a mosaic they are one cluster, and none is a neighbour that the median looks at.
Places grid(std::int64_t x, std::int64_t y, std::int64_t columns, std::int64_t rows) {
  Places places;
  for (std::int64_t row = 0; row < rows; ++row) {
    for (std::int64_t column = 0; column < columns; ++column)
      places.emplace_back(x + 2 * column, y + 2 * row);
  }
  return places;
}

TEST(SpotSearch, NeedsAtLeastFourMembers) {
  const DNGMetadata metadata = linearSensor(80, 70);
  EXPECT_EQ(spots(metadata, {{20, 20}, {22, 20}, {24, 20}}).size(), 0U);
  EXPECT_EQ(spots(metadata, {{20, 20}, {22, 20}, {24, 20}, {26, 20}}).size(), 1U);
}

TEST(SpotSearch, TakesAtMostSixHundredMembers) {
  const DNGMetadata metadata = mosaicSensor(80, 70);
  // Two rows in four, joined by single columns at their left and right ends in turn: every sample has at least two
  // bright neighbours at distance 2, so that all of them deviate.
  const auto block = [](std::int64_t members) {
    Places places;
    for (std::int64_t y = 0; y < 40; ++y) {
      const std::int64_t joint = y / 4 % 2 == 0 ? 0 : 39;
      for (std::int64_t x = 0; x < 40; ++x) {
        const bool isMember = y % 4 < 2 || x == joint;
        if (isMember && static_cast<std::int64_t>(places.size()) < members) places.emplace_back(x + 10, y + 10);
      }
    }
    return places;
  };
  DeviationMap map = mapOf(metadata, block(600));
  std::int64_t anomalies = 0;
  for (std::int64_t index = 0; index < 80 * 70; ++index)
    anomalies += map.mean(index) <= -110 ? 1 : 0;
  ASSERT_EQ(anomalies, 600);
  EXPECT_EQ(spots(metadata, block(600)).size(), 1U);
  EXPECT_EQ(spots(metadata, block(601)).size(), 0U);
}

TEST(SpotSearch, TakesAtMostFortySamplesAcross) {
  const DNGMetadata metadata = linearSensor(80, 80);
  Places wide = grid(10, 10, 20, 1);
  wide.emplace_back(49, 11);
  EXPECT_EQ(spots(metadata, wide).size(), 1U) << "40 wide";
  wide.emplace_back(50, 10);
  EXPECT_EQ(spots(metadata, wide).size(), 0U) << "41 wide";
  Places high = grid(10, 10, 1, 20);
  high.emplace_back(11, 49);
  EXPECT_EQ(spots(metadata, high).size(), 1U) << "40 high";
  high.emplace_back(10, 50);
  EXPECT_EQ(spots(metadata, high).size(), 0U) << "41 high";
}

TEST(SpotSearch, ConnectsSamplesTwoApartWithoutAMosaic) {
  const DNGMetadata metadata = linearSensor(60, 60);
  EXPECT_EQ(spots(metadata, {{20, 20}, {22, 22}, {24, 20}, {26, 22}}).size(), 1U);
  EXPECT_EQ(spots(metadata, {{20, 20}, {22, 22}, {25, 22}, {27, 20}}).size(), 0U) << "two pairs, three apart";
}

TEST(SpotSearch, ConnectsAdjacentSamplesOnlyOnAMosaic) {
  const DNGMetadata metadata = mosaicSensor(60, 60);
  EXPECT_EQ(spots(metadata, {{20, 20}, {21, 20}, {20, 21}, {21, 21}}).size(), 1U);
  EXPECT_EQ(spots(metadata, {{20, 20}, {21, 21}, {22, 22}, {23, 23}}).size(), 1U) << "corners touch";
  EXPECT_EQ(spots(metadata, {{20, 20}, {21, 20}, {23, 20}, {24, 20}}).size(), 0U);
}

TEST(SpotSearch, GivesTheTruncatedCentreAndTheRadii) {
  const DNGMetadata metadata = linearSensor(60, 60);
  const auto found = spots(metadata, grid(20, 30, 6, 2));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].kind, Kind::spot);
  EXPECT_EQ(found[0].x, 25);
  EXPECT_EQ(found[0].y, 31);
  EXPECT_EQ(found[0].radiusX, (10 + 6) / 2);
  EXPECT_EQ(found[0].radiusY, 4);
  const auto odd = spots(metadata, {{20, 20}, {22, 20}, {24, 20}, {25, 21}});
  ASSERT_EQ(odd.size(), 1U);
  EXPECT_EQ(odd[0].x, 22) << "91 / 4";
  EXPECT_EQ(odd[0].y, 20) << "81 / 4";
  EXPECT_EQ(odd[0].radiusX, 5) << "(5 + 6) / 2";
}

TEST(SpotSearch, WeighsTheCentreByTheDepthOfTheShadow) {
  const DNGMetadata metadata = linearSensor(60, 60);
  TestFrame frame(metadata, flatLevel);
  for (std::int64_t x = 20; x <= 26; x += 2)
    frame.at(x, 30) = 8500;  // -150
  frame.at(28, 30) = 1000;   // -900
  DeviationMap map(metadata, 1);
  map.reset(false);
  map.add(frame.samples());
  const auto found = findSpots(map).best();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].x, 26) << "(150 × 92 + 900 × 28) / 1500 = 26";
}

TEST(SpotSearch, JudgesByAgreementAndDepth) {
  const DNGMetadata metadata = linearSensor(60, 60);
  const auto deep = spots(metadata, grid(20, 30, 4, 1), 1000);
  ASSERT_EQ(deep.size(), 1U);
  EXPECT_EQ(deep[0].confidence, 0.95);
  const auto faint = spots(metadata, grid(20, 30, 4, 1), 8900);  // exactly the noise scale
  ASSERT_EQ(faint.size(), 1U);
  EXPECT_DOUBLE_EQ(faint[0].confidence, 0.55 + 110 / 550.0 * 0.4);
  EXPECT_EQ(spots(metadata, grid(20, 30, 4, 1), 8901).size(), 0U);
}

TEST(SpotSearch, LooksAtDarkenedSamplesOnly) {
  const DNGMetadata metadata = linearSensor(60, 60);
  EXPECT_EQ(spots(metadata, grid(20, 30, 4, 1), 14000).size(), 0U);
}

TEST(SpotSearch, FindsSpotsAtTheVeryBorderOfWhatIsMeasured) {
  const DNGMetadata metadata = withBorder(linearSensor(61, 61), 3, 3);
  EXPECT_EQ(spots(metadata, {{2, 2}, {4, 2}, {2, 4}, {4, 4}}).size(), 1U);
  EXPECT_EQ(spots(metadata, {{58, 58}, {56, 58}, {58, 56}, {56, 56}}).size(), 1U);
  EXPECT_EQ(spots(metadata, {{58, 20}, {56, 20}, {2, 22}, {2, 24}}).size(), 0U) << "rows do not continue each other";
}

TEST(SpotSearch, ListsClustersByTheirFirstMember) {
  const DNGMetadata metadata = linearSensor(80, 60);
  Places places = grid(40, 10, 2, 3);
  const Places second = grid(10, 11, 2, 3);
  places.insert(places.end(), second.begin(), second.end());
  const auto found = spots(metadata, places);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].x, 41);
  EXPECT_EQ(found[1].x, 11);
}

TEST(SpotSearch, RunsInBrightGroupsOnly) {
  const DNGMetadata metadata = linearSensor(60, 60);
  DeviationMap brightMap = mapOf(metadata, grid(20, 30, 4, 2));
  DeviationMap darkMap = mapOf(metadata, grid(20, 30, 4, 2), true);
  const auto isSpot = testing::Contains(testing::Field(&CalibrationCandidate::kind, Kind::spot));
  EXPECT_THAT(CalibrationEngine::detectPointGroup(brightMap), isSpot);
  EXPECT_THAT(CalibrationEngine::detectPointGroup(darkMap), testing::Not(isSpot));
}

TEST(SpotSearch, ReportsASpotInRawCoordinatesBeforeEquallyConfidentPixels) {
  const DNGMetadata metadata = withBorder(linearSensor(60, 60), 7, 9);
  DeviationMap map = mapOf(metadata, grid(20, 30, 4, 2));
  const auto found = CalibrationEngine::detectPointGroup(map);
  const auto spot =
      std::find_if(found.begin(), found.end(), [](const auto& candidate) { return candidate.kind == Kind::spot; });
  ASSERT_NE(spot, found.end());
  CalibrationCandidate expected;
  expected.id = spot->id;
  expected.kind = Kind::spot;
  expected.x = 23 + 7;
  expected.yStart = 31 + 9;
  expected.yEnd = 31 + 9;
  expected.radiusX = 6;
  expected.radiusY = 4;
  expected.confidence = 0.55 + 200 / 550.0 * 0.4;
  expected.reason = "Compact fixed shadow repeated in bright-field frames";
  EXPECT_EQ(*spot, expected);
}

TEST(SpotSearch, SurvivesAShadowOverTheWholeSensor) {
  const DNGMetadata metadata = linearSensor(401, 401);
  EXPECT_EQ(spots(metadata, grid(2, 2, 198, 198)).size(), 0U);
}

}  // namespace
}  // namespace tessaly
