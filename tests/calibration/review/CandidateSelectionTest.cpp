#include "calibration/TestSensor.h"
#include "calibration/review/CandidateSelection.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Kind = CalibrationCandidate::Kind;

const double nan = std::numeric_limits<double>::quiet_NaN();

/// An active area of 100 × 80 samples from (10, 20) on.
DNGMetadata sensor() {
  return tests::withBorder(tests::linearSensor(100, 80), 10, 20);
}

CalibrationCandidate candidate(Kind kind, double confidence = 0.5) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = kind;
  result.x = 40;
  result.yStart = 50;
  result.yEnd = 50;
  result.confidence = confidence;
  result.reason = "reason";
  return result;
}

CalibrationCandidate spot(double confidence, std::int64_t radiusX, std::int64_t radiusY) {
  CalibrationCandidate result = candidate(Kind::spot, confidence);
  result.radiusX = radiusX;
  result.radiusY = radiusY;
  return result;
}

CalibrationCandidate line(std::optional<double> sigma, std::optional<double> agreement,
                          std::optional<std::int64_t> groups) {
  CalibrationCandidate result = candidate(Kind::line);
  result.evidenceSigma = sigma;
  result.frameAgreement = agreement;
  result.exposureGroupCount = groups;
  return result;
}

// What a call refuses with.
template <typename Call>
std::string refusal(Call call) {
  try {
    (void)call();
    return "accepted";
  } catch (const InvalidInput& error) {
    return error.what();
  }
}

TEST(PixelConfidence, IsAPercentageFrom50To100) {
  EXPECT_EQ(parseConfidence("95"), 0.95);
  EXPECT_EQ(parseConfidence("98"), defaultPixelConfidence);
  EXPECT_EQ(parseConfidence("50"), 0.5);
  EXPECT_EQ(parseConfidence("100"), 1.0);
  EXPECT_EQ(parseConfidence("99.5"), 0.995);
  for (const char* const text : {"49", "101", "49.999", "100.001", "0", "-95"})
    EXPECT_EQ(parseConfidence(text), std::nullopt) << text;
}

TEST(PixelConfidence, MayHaveWhiteSpaceAndPercentSigns) {
  for (const char* const text : {"95%", " 95 ", "95 %", "\t95\n", "%95", "%%95%%", "9%5",
                                 "\xC2\xA0"
                                 "95\xE2\x80\x89%"})
    EXPECT_EQ(parseConfidence(text), 0.95) << text;
}

TEST(PixelConfidence, IsWrittenAsADecimalNumberWithAPoint) {
  for (const char* const text : {"+95", "95.0", "95.", "9.5e1", "950E-1", "0095"})
    EXPECT_EQ(parseConfidence(text), 0.95) << text;
  for (const char* const text :
       {"abc", "", "%", " ", "95,5", "9 5", "0x5F", "inf", "nan", "+-95", "++95", "95-", "1e400", "９５", "95 98",
        "\xFF"
        "95"})
    EXPECT_EQ(parseConfidence(text), std::nullopt) << text;
}

TEST(PixelConfidence, IsAskedForAgainWhenItIsNone) {
  EXPECT_EQ(requireConfidence("95%"), 0.95);
  for (const char* const text : {"49", "101", "abc"}) {
    EXPECT_EQ(refusal([text] { return requireConfidence(text); }),
              "Enter a pixel-confidence value from 50 to 100, such as 95 or 98.");
  }
}

TEST(WholeNumber, IsAnOptionalSignAndDigits) {
  EXPECT_EQ(parseWholeNumber("0"), 0);
  EXPECT_EQ(parseWholeNumber("+12"), 12);
  EXPECT_EQ(parseWholeNumber("-12"), -12);
  EXPECT_EQ(parseWholeNumber("-0"), 0);
  EXPECT_EQ(parseWholeNumber("007"), 7);
  for (const char* const text : {"", "+", "-", "+-1", "--1", "1.0", "1e3", " 1", "1 ", "1\n", "0x1", "1a", "١"})
    EXPECT_EQ(parseWholeNumber(text), std::nullopt) << text;
}

TEST(WholeNumber, Fits64Bits) {
  EXPECT_EQ(parseWholeNumber("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseWholeNumber("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(parseWholeNumber("9223372036854775808"), std::nullopt);
  EXPECT_EQ(parseWholeNumber("-9223372036854775809"), std::nullopt);
}

TEST(Preselection, TakesPixelsFromTheThresholdOn) {
  EXPECT_TRUE(isPreselected(candidate(Kind::pixel, 0.98), 0.98));
  EXPECT_FALSE(isPreselected(candidate(Kind::pixel, 0.979), 0.98));
  EXPECT_TRUE(isPreselected(candidate(Kind::pixel, 0.7), 0.6));
  EXPECT_FALSE(isPreselected(candidate(Kind::pixel, nan), 0.5));
}

TEST(Preselection, TakesStrongSpotsLargerThanFive) {
  EXPECT_TRUE(isPreselected(spot(0.98, 6, 6), 0.5));
  EXPECT_FALSE(isPreselected(spot(0.97, 6, 6), 0.5)) << "whatever the pixel threshold";
  EXPECT_FALSE(isPreselected(spot(0.98, 5, 6), 0.5));
  EXPECT_FALSE(isPreselected(spot(0.98, 6, 5), 0.5));
  EXPECT_FALSE(isPreselected(spot(nan, 6, 6), 0.5));
}

TEST(Preselection, TakesStrongColumns) {
  EXPECT_TRUE(isPreselected(line(5.0, 0.95, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(4.99, 0.95, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.949, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.95, 1), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, std::nullopt, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.95, std::nullopt), 0.98));
  EXPECT_FALSE(isPreselected(line(nan, 0.95, 5), 0.98)) << "not a number is not a missing one";
  EXPECT_FALSE(isPreselected(line(9.0, nan, 5), 0.98));
}

TEST(Preselection, TakesPartialColumnsOfThreeGroups) {
  EXPECT_TRUE(isPreselected(line(std::nullopt, 0.9, 3), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, 0.899, 3), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, 0.9, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, std::nullopt, std::nullopt), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, nan, 3), 0.98));
}

TEST(Preselection, GivesTheIdsOfAllThatStartIncluded) {
  const std::vector candidates{candidate(Kind::pixel, 0.99), candidate(Kind::pixel, 0.9), line(5.0, 1.0, 2)};
  EXPECT_THAT(preselected(candidates, 0.98), UnorderedElementsAre(candidates[0].id, candidates[2].id));
}

TEST(MatchingPixels, ReplaceThePixelsAndLeaveTheRest) {
  const std::vector candidates{candidate(Kind::pixel, 0.96), candidate(Kind::pixel, 0.94), candidate(Kind::pixel, 0.95),
                               candidate(Kind::line),        candidate(Kind::line),        spot(0.99, 9, 9)};
  const std::set<UUID> accepted{candidates[1].id, candidates[3].id};
  EXPECT_THAT(withMatchingPixels(candidates, accepted, 0.95),
              UnorderedElementsAre(candidates[0].id, candidates[2].id, candidates[3].id));
}

TEST(ManualPixel, IsInRawCoordinatesWithFullConfidence) {
  const DNGMetadata metadata = sensor();
  const CalibrationCandidate pixel = manualPixel(&metadata, "30", "+5");
  CalibrationCandidate expected;
  expected.id = pixel.id;
  expected.kind = Kind::pixel;
  expected.x = 40;
  expected.yStart = 25;
  expected.yEnd = 25;
  expected.confidence = 1.0;
  expected.reason = "Manually added by user";
  EXPECT_EQ(pixel, expected);
  EXPECT_NE(pixel.id, UUID{});
}

TEST(ManualPixel, LiesInTheActiveArea) {
  const DNGMetadata metadata = sensor();
  const auto answer = [&](const char* x, const char* y) {
    return refusal([&] { return manualPixel(&metadata, x, y); });
  };
  EXPECT_EQ(answer("99", "79"), "accepted");
  EXPECT_EQ(answer("0", "0"), "accepted");
  for (const auto& [x, y] : {std::pair{"100", "79"}, std::pair{"99", "80"}, std::pair{"-1", "5"}, std::pair{"5", "-1"},
                             std::pair{"", "5"}, std::pair{"5", ""}, std::pair{"5", "x"}, std::pair{"5 ", "5"}}) {
    EXPECT_EQ(answer(x, y), "Enter valid active-area X and Y coordinates.") << x << ", " << y;
  }
}

TEST(ManualColumn, SpansTheActiveHeight) {
  const DNGMetadata metadata = sensor();
  const CalibrationCandidate column = manualColumn(&metadata, "99");
  CalibrationCandidate expected;
  expected.id = column.id;
  expected.kind = Kind::line;
  expected.x = 109;
  expected.yStart = 20;
  expected.yEnd = 99;
  expected.confidence = 1.0;
  expected.reason = "Manually added by user";
  EXPECT_EQ(column, expected);
  for (const char* const x : {"100", "-1", "", "abc"}) {
    EXPECT_EQ(refusal([&] { return manualColumn(&metadata, x); }), "Enter a valid active-area X coordinate.") << x;
  }
}

TEST(ManualSpot, HasOneRadius) {
  const DNGMetadata metadata = sensor();
  const CalibrationCandidate added = manualSpot(&metadata, "30", "40", "7");
  CalibrationCandidate expected;
  expected.id = added.id;
  expected.kind = Kind::spot;
  expected.x = 40;
  expected.yStart = 60;
  expected.yEnd = 60;
  expected.radiusX = 7;
  expected.radiusY = 7;
  expected.confidence = 1.0;
  expected.reason = "User-confirmed fixed sensor spot";
  EXPECT_EQ(added, expected);
}

TEST(ManualSpot, LiesWhollyInTheActiveArea) {
  const DNGMetadata metadata = tests::withBorder(tests::linearSensor(200, 150), 10, 20);
  const auto answer = [&](const char* x, const char* y, const char* radius) {
    return refusal([&] { return manualSpot(&metadata, x, y, radius); });
  };
  const char* const message = "Enter valid active-area X and Y coordinates and a radius from 2 to 64.";
  EXPECT_EQ(answer("64", "64", "64"), "accepted");
  EXPECT_EQ(answer("63", "64", "64"), message);
  EXPECT_EQ(answer("64", "63", "64"), message);
  EXPECT_EQ(answer("135", "85", "64"), "accepted");
  EXPECT_EQ(answer("136", "85", "64"), message);
  EXPECT_EQ(answer("135", "86", "64"), message);
  EXPECT_EQ(answer("100", "75", "65"), message);
  EXPECT_EQ(answer("100", "75", "2"), "accepted");
  EXPECT_EQ(answer("100", "75", "1"), message);
  EXPECT_EQ(answer("100", "75", ""), message);
  EXPECT_EQ(answer("100", "75", "-2"), message);
  EXPECT_EQ(answer("x", "75", "2"), message);
  EXPECT_EQ(answer("9223372036854775807", "75", "2"), message);
}

TEST(ManualAdditions, NeedAResultFirst) {
  const char* const message = "Run defect detection first.";
  EXPECT_EQ(refusal([] { return manualPixel(nullptr, "x", "y"); }), message);
  EXPECT_EQ(refusal([] { return manualColumn(nullptr, "x"); }), message);
  EXPECT_EQ(refusal([] { return manualSpot(nullptr, "x", "y", "r"); }), message);
}

TEST(ClickedMarker, FillsTheFieldsInActiveCoordinates) {
  const DNGMetadata metadata = sensor();
  EXPECT_EQ(fieldsFromCandidate(candidate(Kind::pixel), metadata), (ManualFields{30, 30, std::nullopt}));
  EXPECT_EQ(fieldsFromCandidate(candidate(Kind::line), metadata), (ManualFields{30, std::nullopt, std::nullopt}));
  EXPECT_EQ(fieldsFromCandidate(spot(0.9, 7, 7), metadata), (ManualFields{30, 30, 7}));
  EXPECT_EQ(fieldsFromCandidate(spot(0.9, 5, 9), metadata), (ManualFields{30, 30, 9})) << "covers the whole spot";
}

TEST(PartialColumn, StartsBelowTheFirstActiveRow) {
  const DNGMetadata metadata = sensor();
  CalibrationCandidate column = candidate(Kind::line);
  EXPECT_TRUE(isPartialColumn(column, metadata));
  column.yStart = 21;
  EXPECT_TRUE(isPartialColumn(column, metadata));
  column.yStart = 20;
  EXPECT_FALSE(isPartialColumn(column, metadata));
  EXPECT_FALSE(isPartialColumn(candidate(Kind::pixel), metadata));
}

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
