#include "calibration/review/ManualAdditions.h"
#include "calibration/review/ProfileBuilding.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

#include <vector>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using testing::ElementsAre;
using tests::candidate;
using tests::refusal;
using tests::sensor;
using tests::spot;
using Kind = CalibrationCandidate::Kind;

// A profile of all the candidates.
CameraProfile profileOf(const std::vector<CalibrationCandidate>& candidates) {
  const DNGMetadata metadata = sensor();
  std::set<UUID> accepted;
  for (const CalibrationCandidate& each : candidates)
    accepted.insert(each.id);
  return makeProfile(&metadata, "body", candidates, accepted);
}

TEST(ProfileOfCandidates, HoldsEachKindInTheOrderOfTheCandidates) {
  CalibrationCandidate column = candidate(Kind::line, 0.7);
  column.yEnd = 60;
  column.width = 3;
  CalibrationCandidate second = candidate(Kind::pixel, 0.9);
  second.x = 41;
  second.reason = "second";
  const CameraProfile profile = profileOf({second, column, spot(0.8, 6, 9), candidate(Kind::pixel, 0.6)});
  EXPECT_THAT(profile.pixels, ElementsAre(DefectPixel{41, 50, 0.9, "second"}, DefectPixel{40, 50, 0.6, "reason"}));
  EXPECT_THAT(profile.lines, ElementsAre(DefectLine{40, 50, 60, 3, 0.7, "reason"}));
  EXPECT_THAT(profile.spots.value(), ElementsAre(DefectSpot{40, 50, 6, 9, 0.8, "reason"}));
  EXPECT_EQ(profile.cameraModel, sensor().model);
  EXPECT_EQ(profile.version, 4);
  EXPECT_EQ(profile.activeX, 10);
}

TEST(ProfileOfCandidates, HoldsTheIncludedOnesOnly) {
  const DNGMetadata metadata = sensor();
  const std::vector candidates{candidate(Kind::pixel), candidate(Kind::pixel), candidate(Kind::line)};
  const CameraProfile profile = makeProfile(&metadata, " body\n", candidates, {candidates[1].id});
  EXPECT_EQ(profile.name, "body");
  EXPECT_EQ(profile.pixels.size(), 1U);
  EXPECT_TRUE(profile.lines.empty());
  EXPECT_TRUE(profile.spots.value().empty()) << "present and empty";
}

TEST(ProfileOfCandidates, NeedsAResultThenANameThenACandidate) {
  const DNGMetadata metadata = sensor();
  const std::vector candidates{candidate(Kind::pixel)};
  const std::set<UUID> all{candidates[0].id};
  EXPECT_EQ(refusal([&] { return makeProfile(nullptr, "", candidates, {}); }), "Run defect detection first.");
  EXPECT_EQ(refusal([&] { return makeProfile(&metadata, " \n\t", candidates, {}); }), "Enter a camera profile name.");
  const char* const message = "Include at least one confirmed defective pixel, column, or fixed spot.";
  EXPECT_EQ(refusal([&] { return makeProfile(&metadata, "body", candidates, {}); }), message);
  EXPECT_EQ(refusal([&] { return makeProfile(&metadata, "body", candidates, {UUID::random()}); }), message);
  EXPECT_EQ(refusal([&] { return makeProfile(&metadata, "body", {}, all); }), message);
  EXPECT_EQ(refusal([&] { return makeProfile(&metadata, "body", candidates, all); }), "accepted");
}

// The plane is 115 × 103 samples.
TEST(ProfileOfCandidates, CutsSpotsToThePlane) {
  const auto saved = [](std::int64_t x, std::int64_t y, std::int64_t radiusX, std::int64_t radiusY) {
    CalibrationCandidate detected = spot(0.9, radiusX, radiusY);
    detected.x = x;
    detected.yStart = y;
    const CameraProfile profile = profileOf({detected});
    profile.validate(sensor());
    const DefectSpot& defect = profile.spots.value().at(0);
    return std::vector{defect.x, defect.y, defect.radiusX, defect.radiusY};
  };
  EXPECT_THAT(saved(50, 50, 50, 50), ElementsAre(50, 50, 50, 50));
  EXPECT_THAT(saved(50, 50, 51, 60), ElementsAre(50, 50, 50, 50));
  EXPECT_THAT(saved(110, 100, 9, 9), ElementsAre(110, 100, 4, 2));
  EXPECT_THAT(saved(0, 0, 9, 9), ElementsAre(1, 1, 1, 1));
  EXPECT_THAT(saved(114, 102, 9, 9), ElementsAre(113, 101, 1, 1));
  EXPECT_THAT(saved(1, 50, 9, 9), ElementsAre(1, 50, 1, 9));
}

TEST(ProfileOfCandidates, FitsTheSensorItWasMadeOn) {
  const DNGMetadata metadata = sensor();
  const std::vector candidates{manualPixel(&metadata, "99", "79"), manualColumn(&metadata, "0"),
                               manualSpot(&metadata, "50", "40", "30")};
  EXPECT_NO_THROW(profileOf(candidates).validate(metadata));
}

}  // namespace
}  // namespace tessaly
