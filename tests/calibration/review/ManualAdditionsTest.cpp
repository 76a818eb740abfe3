#include "calibration/review/ManualAdditions.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

#include <utility>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using tests::candidate;
using tests::refusal;
using tests::sensor;
using tests::spot;
using Kind = CalibrationCandidate::Kind;

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

}  // namespace
}  // namespace tessaly
