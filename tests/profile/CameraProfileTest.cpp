#include "dng/DNGError.h"
#include "profile/CameraProfile.h"
#include "profile/ProfileSamples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace tessaly {
namespace {

using tests::sampleMetadata;
using tests::sampleProfile;

constexpr const char* activeAreaDiffers = "Sensor ActiveArea differs or is missing";
constexpr const char* serialDiffers = "Camera serial differs or is missing";
constexpr const char* layoutDiffers = "CFA layout differs";
constexpr const char* sizesDiffer = "Sensor dimensions or active area differ";

/// "" when the profile fits.
std::string mismatch(const CameraProfile& profile, const DNGMetadata& metadata = sampleMetadata()) {
  try {
    profile.validate(metadata);
    return "";
  } catch (const DNGError& error) {
    EXPECT_EQ(error.kind(), DNGError::Case::profileMismatch);
    return error.message();
  }
}

CameraProfile version(std::int64_t number) {
  CameraProfile profile = sampleProfile();
  profile.version = number;
  return profile;
}

std::string mismatchOfPixel(std::int64_t x, std::int64_t y) {
  CameraProfile profile = sampleProfile();
  profile.pixels = {{x, y, 1.0, ""}};
  return mismatch(profile);
}

std::string mismatchOfLine(std::int64_t x, std::int64_t yStart, std::int64_t yEnd, std::int64_t width) {
  CameraProfile profile = sampleProfile();
  profile.lines = {{x, yStart, yEnd, width, 1.0, ""}};
  return mismatch(profile);
}

std::string mismatchOfSpot(std::int64_t x, std::int64_t y, std::int64_t radiusX, std::int64_t radiusY) {
  CameraProfile profile = sampleProfile();
  profile.spots = {{{x, y, radiusX, radiusY, 1.0, ""}}};
  return mismatch(profile);
}

std::string outside(std::int64_t x, std::int64_t y) {
  return "Defective-pixel coordinates are out of bounds: (" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

std::string outside(std::int64_t x) {
  return "Defective-column range is out of bounds: x=" + std::to_string(x);
}

std::string spotOutside(std::int64_t x, std::int64_t y) {
  return "Fixed-spot range is out of bounds: (" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

TEST(CameraProfile, StartsEmptyWithTheIdentityOfTheSensor) {
  const Timestamp before = currentTimestamp();
  const CameraProfile profile = CameraProfile::empty("Body", sampleMetadata());
  EXPECT_EQ(profile.version, 4);
  EXPECT_EQ(profile.name, "Body");
  EXPECT_EQ(profile.sensorActiveArea, (RawRectangle{6, 4, 90, 70}));
  EXPECT_EQ(profile.cameraSerial, "SN-1");
  EXPECT_EQ(profile.cfaLayout, (CFALayout{2, 2, {0, 1, 1, 2}}));
  EXPECT_EQ(profile.cameraModel, "Body One");
  EXPECT_EQ(profile.rawWidth, 100);
  EXPECT_EQ(profile.rawHeight, 80);
  EXPECT_EQ(profile.activeX, 6);
  EXPECT_EQ(profile.activeY, 4);
  EXPECT_EQ(profile.activeWidth, 90);
  EXPECT_EQ(profile.activeHeight, 70);
  EXPECT_TRUE(profile.pixels.empty());
  EXPECT_TRUE(profile.lines.empty());
  ASSERT_TRUE(profile.spots.has_value());
  EXPECT_TRUE(profile.spots->empty());
  EXPECT_GE(profile.createdAt, before);
  EXPECT_LE(profile.createdAt, currentTimestamp());
  EXPECT_EQ(mismatch(profile), "");
}

TEST(CameraProfile, GetsANewIdentifierEveryTime) {
  EXPECT_NE(CameraProfile::empty("A", sampleMetadata()).id, CameraProfile::empty("A", sampleMetadata()).id);
}

TEST(CameraProfile, TakesTheActiveAreaFromTheSourceEncodingOnly) {
  DNGMetadata metadata = sampleMetadata();
  metadata.sourceEncoding->activeArea = {1, 2, 3, 4};
  EXPECT_EQ(CameraProfile::empty("A", metadata).sensorActiveArea, (RawRectangle{1, 2, 3, 4}));
  metadata.sourceEncoding.reset();
  EXPECT_EQ(CameraProfile::empty("A", metadata).sensorActiveArea, std::nullopt);
}

TEST(CameraProfile, HasTheDocumentedDefaults) {
  EXPECT_EQ(CameraProfile::currentVersion, 4);
  EXPECT_EQ(DefectPixel().confidence, 1.0);
  EXPECT_EQ(DefectLine().reason, "Manually confirmed");
  EXPECT_LE(currentTimestamp() - CameraProfile().createdAt, std::chrono::seconds(1));
}

TEST(CameraProfile, FitsTheSensorItWasMadeFor) {
  EXPECT_EQ(mismatch(sampleProfile()), "");
}

TEST(CameraProfile, BindsTheActiveAreaFromVersionFourOn) {
  CameraProfile profile = sampleProfile();
  profile.sensorActiveArea->height = 69;
  EXPECT_EQ(mismatch(profile), activeAreaDiffers);
  profile.sensorActiveArea.reset();
  EXPECT_EQ(mismatch(profile), activeAreaDiffers);
  profile.version = 5;
  EXPECT_EQ(mismatch(profile), activeAreaDiffers);
  profile.version = 3;
  EXPECT_EQ(mismatch(profile), "");
}

TEST(CameraProfile, ComparesAllFourFieldsOfTheActiveArea) {
  for (std::int64_t RawRectangle::*field :
       {&RawRectangle::x, &RawRectangle::y, &RawRectangle::width, &RawRectangle::height}) {
    CameraProfile profile = sampleProfile();
    (*profile.sensorActiveArea).*field += 1;
    EXPECT_EQ(mismatch(profile), activeAreaDiffers);
  }
}

TEST(CameraProfile, WithoutAnActiveAreaFitsOnlyFilesWithoutSourceEncoding) {
  DNGMetadata bare = sampleMetadata();
  bare.sourceEncoding.reset();
  EXPECT_EQ(mismatch(sampleProfile(), bare), activeAreaDiffers);
  CameraProfile profile = sampleProfile();
  profile.sensorActiveArea.reset();
  EXPECT_EQ(mismatch(profile, bare), "");
  EXPECT_EQ(mismatch(profile, sampleMetadata()), activeAreaDiffers);
}

TEST(CameraProfile, BindsTheSerialStrictlyFromVersionFourOn) {
  DNGMetadata file = sampleMetadata();
  for (const std::int64_t number : {4, 5}) {
    CameraProfile profile = version(number);
    profile.cameraSerial = "sn-1";
    EXPECT_EQ(mismatch(profile), serialDiffers);
    profile.cameraSerial.reset();
    EXPECT_EQ(mismatch(profile), serialDiffers);
    file.cameraSerial.reset();
    EXPECT_EQ(mismatch(profile, file), "");
    profile.cameraSerial = "SN-1";
    EXPECT_EQ(mismatch(profile, file), serialDiffers);
  }
}

TEST(CameraProfile, TellsAnEmptySerialFromAnAbsentOne) {
  DNGMetadata file = sampleMetadata();
  file.cameraSerial.reset();
  CameraProfile profile = sampleProfile();
  profile.cameraSerial = "";
  EXPECT_EQ(mismatch(profile, file), serialDiffers);
}

TEST(CameraProfile, ComparesTheSerialLenientlyInVersionThree) {
  CameraProfile profile = version(3);
  DNGMetadata file = sampleMetadata();
  file.cameraSerial.reset();
  EXPECT_EQ(mismatch(profile, file), "");
  profile.cameraSerial.reset();
  EXPECT_EQ(mismatch(profile), "");
  EXPECT_EQ(mismatch(profile, file), "");
  profile.cameraSerial = "SN-2";
  EXPECT_EQ(mismatch(profile), "Camera serial differs");
}

TEST(CameraProfile, BindsTheMosaicFromVersionFourOn) {
  DNGMetadata linear = sampleMetadata();
  linear.cfaLayout.reset();
  CameraProfile profile = sampleProfile();
  EXPECT_EQ(mismatch(profile, linear), layoutDiffers);
  profile.cfaLayout->pattern = {1, 0, 2, 1};
  EXPECT_EQ(mismatch(profile), layoutDiffers);
  profile.cfaLayout = CFALayout{4, 2, {0, 1, 1, 2}};
  EXPECT_EQ(mismatch(profile), layoutDiffers);
  profile.cfaLayout = CFALayout{2, 4, {0, 1, 1, 2}};
  EXPECT_EQ(mismatch(profile), layoutDiffers);
  profile.cfaLayout.reset();
  EXPECT_EQ(mismatch(profile), layoutDiffers);
  EXPECT_EQ(mismatch(profile, linear), "");
  profile.version = 3;
  EXPECT_EQ(mismatch(profile), "");
}

TEST(CameraProfile, OfVersionTwoOrOlderIsMatchedOnModelAndSizesAlone) {
  for (const std::int64_t number : {std::int64_t{2}, std::int64_t{1}, std::int64_t{0}, std::int64_t{-7},
                                    std::numeric_limits<std::int64_t>::min()}) {
    CameraProfile profile = version(number);
    profile.cameraSerial = "another";
    profile.sensorActiveArea.reset();
    profile.cfaLayout.reset();
    EXPECT_EQ(mismatch(profile), "");
    profile.cameraModel = "Body Two";
    EXPECT_NE(mismatch(profile), "");
  }
}

TEST(CameraProfile, OfTheLargestVersionIsBoundLikeVersionFour) {
  CameraProfile profile = version(most);
  EXPECT_EQ(mismatch(profile), "");
  profile.cfaLayout.reset();
  EXPECT_EQ(mismatch(profile), layoutDiffers);
}

TEST(CameraProfile, NamesBothModels) {
  CameraProfile profile = sampleProfile();
  profile.cameraModel = "body one";
  EXPECT_EQ(mismatch(profile), "Profile camera: body one; file camera: Body One");
}

TEST(CameraProfile, ComparesAllSixSizes) {
  for (std::int64_t CameraProfile::*field :
       {&CameraProfile::rawWidth, &CameraProfile::rawHeight, &CameraProfile::activeX, &CameraProfile::activeY,
        &CameraProfile::activeWidth, &CameraProfile::activeHeight}) {
    CameraProfile profile = sampleProfile();
    profile.*field += 1;
    EXPECT_EQ(mismatch(profile), sizesDiffer);
  }
}

TEST(CameraProfile, HoldsPixelsOfEveryCornerAndNoneOutside) {
  for (const std::int64_t x : {0, 99}) {
    for (const std::int64_t y : {0, 79})
      EXPECT_EQ(mismatchOfPixel(x, y), "");
  }
  for (const std::int64_t x : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{100}, most}) {
    EXPECT_EQ(mismatchOfPixel(x, 0), outside(x, 0));
  }
  for (const std::int64_t y : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{80}, most}) {
    EXPECT_EQ(mismatchOfPixel(0, y), outside(0, y));
  }
}

TEST(CameraProfile, HoldsALineUpToTheLastColumn) {
  EXPECT_EQ(mismatchOfLine(99, 0, 79, 1), "");
  EXPECT_EQ(mismatchOfLine(90, 0, 79, 10), "");
  EXPECT_EQ(mismatchOfLine(0, 0, 79, 100), "");
  EXPECT_EQ(mismatchOfLine(90, 0, 79, 11), outside(90));
  EXPECT_EQ(mismatchOfLine(0, 0, 79, 101), outside(0));
  EXPECT_EQ(mismatchOfLine(100, 0, 79, 1), outside(100));
  EXPECT_EQ(mismatchOfLine(-1, 0, 79, 1), outside(-1));
}

TEST(CameraProfile, HoldsALineOfAtLeastOneColumnAndRow) {
  EXPECT_EQ(mismatchOfLine(5, 7, 7, 1), "");
  EXPECT_EQ(mismatchOfLine(5, 7, 6, 1), outside(5));
  EXPECT_EQ(mismatchOfLine(5, 7, 7, 0), outside(5));
  EXPECT_EQ(mismatchOfLine(5, 7, 7, -1), outside(5));
}

TEST(CameraProfile, HoldsALineUpToTheLastRow) {
  EXPECT_EQ(mismatchOfLine(5, 0, 79, 1), "");
  EXPECT_EQ(mismatchOfLine(5, 0, 80, 1), outside(5));
  EXPECT_EQ(mismatchOfLine(5, -1, 79, 1), outside(5));
  EXPECT_EQ(mismatchOfLine(5, std::numeric_limits<std::int64_t>::min(), most, 1), outside(5));
}

TEST(CameraProfile, RefusesALineWhoseEndOverflows) {
  EXPECT_EQ(mismatchOfLine(1, 0, 79, most), outside(1));
  EXPECT_EQ(mismatchOfLine(most, 0, 79, most), outside(most));
  EXPECT_EQ(mismatchOfLine(most, 0, 79, 1), outside(most));
  EXPECT_EQ(mismatchOfLine(std::numeric_limits<std::int64_t>::min(), 0, 79, std::numeric_limits<std::int64_t>::min()),
            outside(std::numeric_limits<std::int64_t>::min()));
}

TEST(CameraProfile, HoldsASpotThatTouchesTheBorders) {
  EXPECT_EQ(mismatchOfSpot(96, 40, 3, 1), "");
  EXPECT_EQ(mismatchOfSpot(97, 40, 3, 1), spotOutside(97, 40));
  EXPECT_EQ(mismatchOfSpot(3, 40, 3, 1), "");
  EXPECT_EQ(mismatchOfSpot(2, 40, 3, 1), spotOutside(2, 40));
  EXPECT_EQ(mismatchOfSpot(50, 77, 1, 2), "");
  EXPECT_EQ(mismatchOfSpot(50, 78, 1, 2), spotOutside(50, 78));
  EXPECT_EQ(mismatchOfSpot(50, 2, 1, 2), "");
  EXPECT_EQ(mismatchOfSpot(50, 1, 1, 2), spotOutside(50, 1));
}

TEST(CameraProfile, RefusesASpotWithoutARadius) {
  EXPECT_EQ(mismatchOfSpot(50, 40, 1, 1), "");
  EXPECT_EQ(mismatchOfSpot(50, 40, 0, 1), spotOutside(50, 40));
  EXPECT_EQ(mismatchOfSpot(50, 40, 1, 0), spotOutside(50, 40));
  EXPECT_EQ(mismatchOfSpot(50, 40, -1, 1), spotOutside(50, 40));
  EXPECT_EQ(mismatchOfSpot(50, 40, 1, std::numeric_limits<std::int64_t>::min()), spotOutside(50, 40));
}

TEST(CameraProfile, RefusesASpotWhoseExtentOverflows) {
  EXPECT_EQ(mismatchOfSpot(50, 40, most, 1), spotOutside(50, 40));
  EXPECT_EQ(mismatchOfSpot(most, 40, 1, 1), spotOutside(most, 40));
  EXPECT_EQ(mismatchOfSpot(std::numeric_limits<std::int64_t>::min(), 40, 1, 1),
            spotOutside(std::numeric_limits<std::int64_t>::min(), 40));
  EXPECT_EQ(mismatchOfSpot(50, most, 1, most), spotOutside(50, most));
  EXPECT_EQ(mismatchOfSpot(50, std::numeric_limits<std::int64_t>::min(), 1, most),
            spotOutside(50, std::numeric_limits<std::int64_t>::min()));
}

TEST(CameraProfile, TakesAbsentSpotsAsNone) {
  CameraProfile profile = sampleProfile();
  profile.spots.reset();
  EXPECT_EQ(mismatch(profile), "");
}

TEST(CameraProfile, ReportsTheFirstOfManyReasons) {
  CameraProfile profile = sampleProfile();
  profile.spots = {{{1, 1, 5, 5, 1, ""}, {2, 2, 5, 5, 1, ""}}};
  EXPECT_EQ(mismatch(profile), spotOutside(1, 1));
  profile.lines = {{5, 0, 79, 1, 1, ""}, {101, 0, 1, 1, 1, ""}, {102, 0, 1, 1, 1, ""}};
  EXPECT_EQ(mismatch(profile), outside(101));
  profile.pixels = {{0, 0, 1, ""}, {-1, 3, 1, ""}, {-2, 3, 1, ""}};
  EXPECT_EQ(mismatch(profile), outside(-1, 3));
  profile.activeY = 5;
  EXPECT_EQ(mismatch(profile), sizesDiffer);
  profile.cameraModel = "X";
  EXPECT_EQ(mismatch(profile), "Profile camera: X; file camera: Body One");
  profile.cfaLayout.reset();
  EXPECT_EQ(mismatch(profile), layoutDiffers);
  profile.cameraSerial.reset();
  EXPECT_EQ(mismatch(profile), serialDiffers);
  profile.sensorActiveArea.reset();
  EXPECT_EQ(mismatch(profile), activeAreaDiffers);
}

TEST(CameraProfile, IsEqualOnlyWhenEveryFieldIs) {
  const CameraProfile profile = sampleProfile();
  CameraProfile other = profile;
  EXPECT_EQ(other, profile);
  other.spots->front().confidence = 0.25;
  EXPECT_NE(other, profile);
  other = profile;
  other.createdAt += std::chrono::seconds(1);
  EXPECT_NE(other, profile);
  other = profile;
  other.spots.reset();
  EXPECT_NE(other, profile);
}

}  // namespace
}  // namespace tessaly
