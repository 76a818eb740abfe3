// Each rule for an imported profile at its limit, just inside and just outside.
#include "localization/Localization.h"
#include "store/ProfileStore.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>

namespace tessaly {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

CameraProfile plainProfile() {
  CameraProfile profile;
  profile.name = "Body";
  profile.cameraModel = "M";
  profile.rawWidth = 100;
  profile.rawHeight = 80;
  profile.activeX = 4;
  profile.activeY = 2;
  profile.activeWidth = 90;
  profile.activeHeight = 70;
  return profile;
}

/// Whether the plain profile is accepted after `change`.
bool accepts(const std::function<void(CameraProfile&)>& change) {
  CameraProfile profile = plainProfile();
  change(profile);
  try {
    ProfileStore::validateImported(profile);
    return true;
  } catch (const InvalidProfile& error) {
    EXPECT_STREQ(error.what(), "This profile is invalid or uses an unsupported version.");
    EXPECT_FALSE(error.reason().empty());
    return false;
  }
}

class ImportRules : public testing::Test {
 protected:
  void SetUp() override { Localization::setLanguageOverride(AppLanguage::english); }
  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }
};

TEST_F(ImportRules, AcceptVersionsThreeAndFour) {
  for (const auto& [version, expected] :
       {std::pair<std::int64_t, bool>{2, false}, {3, true}, {4, true}, {5, false}, {0, false}, {-4, false}}) {
    EXPECT_EQ(accepts([v = version](CameraProfile& profile) { profile.version = v; }), expected) << version;
  }
}

TEST_F(ImportRules, RequireANameThatIsNotBlank) {
  for (const char* name : {"", " ", "\t\r\n", "\u00a0\u2003\u2028"})
    EXPECT_FALSE(accepts([name](CameraProfile& profile) { profile.name = name; })) << name;
  EXPECT_TRUE(accepts([](CameraProfile& profile) { profile.name = " x "; }));
}

TEST_F(ImportRules, RequireACameraModel) {
  EXPECT_FALSE(accepts([](CameraProfile& profile) { profile.cameraModel = ""; }));
  EXPECT_TRUE(accepts([](CameraProfile& profile) { profile.cameraModel = " "; })) << "it is not trimmed";
}

bool acceptsRawSize(std::int64_t width, std::int64_t height) {
  return accepts([=](CameraProfile& profile) {
    profile.rawWidth = width;
    profile.rawHeight = height;
    profile.activeX = profile.activeY = 0;
    profile.activeWidth = profile.activeHeight = 1;
  });
}

TEST_F(ImportRules, LimitTheRawSize) {
  EXPECT_TRUE(acceptsRawSize(1, 1));
  EXPECT_TRUE(acceptsRawSize(100'000, 2'500));
  EXPECT_TRUE(acceptsRawSize(2'500, 100'000));
  EXPECT_FALSE(acceptsRawSize(100'000, 2'501));
  EXPECT_FALSE(acceptsRawSize(100'001, 1));
  EXPECT_FALSE(acceptsRawSize(1, 100'001));
  EXPECT_FALSE(acceptsRawSize(0, 1));
  EXPECT_FALSE(acceptsRawSize(1, 0));
  EXPECT_FALSE(acceptsRawSize(-1, -1));
  EXPECT_FALSE(acceptsRawSize(most, most));
}

bool acceptsActiveArea(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
  return accepts([=](CameraProfile& profile) {
    profile.activeX = x;
    profile.activeY = y;
    profile.activeWidth = width;
    profile.activeHeight = height;
  });
}

TEST_F(ImportRules, KeepTheActiveAreaInsideTheRawImage) {
  EXPECT_TRUE(acceptsActiveArea(0, 0, 100, 80));
  EXPECT_TRUE(acceptsActiveArea(99, 79, 1, 1));
  EXPECT_FALSE(acceptsActiveArea(0, 0, 101, 80));
  EXPECT_FALSE(acceptsActiveArea(0, 0, 100, 81));
  EXPECT_FALSE(acceptsActiveArea(1, 0, 100, 80));
  EXPECT_FALSE(acceptsActiveArea(0, 1, 100, 80));
  EXPECT_FALSE(acceptsActiveArea(-1, 0, 100, 80));
  EXPECT_FALSE(acceptsActiveArea(0, -1, 100, 80));
  EXPECT_FALSE(acceptsActiveArea(0, 0, 0, 80));
  EXPECT_FALSE(acceptsActiveArea(0, 0, 100, 0));
  EXPECT_FALSE(acceptsActiveArea(most, most, most, most));
  EXPECT_FALSE(acceptsActiveArea(0, 0, least, least));
}

bool acceptsPixel(const DefectPixel& pixel) {
  return accepts([&pixel](CameraProfile& profile) { profile.pixels = {{1, 1, 1.0, ""}, pixel}; });
}

TEST_F(ImportRules, KeepPixelsInsideTheRawImage) {
  EXPECT_TRUE(acceptsPixel({0, 0, 0, ""}));
  EXPECT_TRUE(acceptsPixel({99, 79, -5, ""}));
  EXPECT_FALSE(acceptsPixel({100, 79, 1, ""}));
  EXPECT_FALSE(acceptsPixel({99, 80, 1, ""}));
  EXPECT_FALSE(acceptsPixel({-1, 0, 1, ""}));
  EXPECT_FALSE(acceptsPixel({0, -1, 1, ""}));
  EXPECT_FALSE(acceptsPixel({0, 0, infinite, ""}));
  EXPECT_FALSE(acceptsPixel({0, 0, notANumber, ""}));
}

bool acceptsLine(const DefectLine& line) {
  return accepts([&line](CameraProfile& profile) { profile.lines = {line}; });
}

TEST_F(ImportRules, KeepColumnsInsideTheRawImage) {
  EXPECT_TRUE(acceptsLine({0, 0, 79, 100, 1, ""}));
  EXPECT_TRUE(acceptsLine({99, 79, 79, 1, 1, ""}));
  EXPECT_FALSE(acceptsLine({1, 0, 79, 100, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 0, 79, 101, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 0, 79, 0, 1, ""}));
  EXPECT_FALSE(acceptsLine({-1, 0, 79, 1, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, -1, 79, 1, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 5, 4, 1, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 0, 80, 1, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 0, 79, 1, infinite, ""}));
  EXPECT_FALSE(acceptsLine({most, 0, 79, most, 1, ""}));
  EXPECT_FALSE(acceptsLine({0, 0, 79, least, 1, ""}));
}

bool acceptsSpot(const DefectSpot& spot) {
  return accepts([&spot](CameraProfile& profile) { profile.spots = {{spot}}; });
}

TEST_F(ImportRules, KeepSpotsInsideTheRawImage) {
  EXPECT_TRUE(acceptsSpot({3, 3, 3, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({2, 3, 3, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({3, 2, 3, 3, 1, ""}));
  EXPECT_TRUE(acceptsSpot({96, 76, 3, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({97, 76, 3, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({96, 77, 3, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({50, 40, 0, 3, 1, ""}));
  EXPECT_FALSE(acceptsSpot({50, 40, 3, 0, 1, ""}));
  EXPECT_FALSE(acceptsSpot({50, 40, 3, 3, notANumber, ""}));
  EXPECT_FALSE(acceptsSpot({most, most, most, most, 1, ""}));
  EXPECT_FALSE(acceptsSpot({least, least, least, least, 1, ""}));
}

TEST_F(ImportRules, TakeAbsentSpotsForNone) {
  EXPECT_TRUE(accepts([](CameraProfile& profile) { profile.spots.reset(); }));
}

}  // namespace
}  // namespace tessaly
