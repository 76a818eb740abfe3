#include "calibration/review/SensorFigures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tessaly {
namespace {

/// A sensor of 3 electrons a u at ISO 100 and 2 electrons of read noise, lit to `level` u.
SettingFigures lightSetting(std::int64_t iso, double level) {
  const double gain = static_cast<double>(iso) / 100 / 3;  // u an electron
  const double readNoise = 2 * gain;
  SettingFigures setting;
  setting.iso = iso;
  setting.frames = 6;
  setting.fNumber = 16;
  setting.level = level;
  setting.photonSlope = gain + readNoise * readNoise / level;
  setting.noise = std::sqrt(setting.photonSlope / level);
  setting.spread = 0.006;
  return setting;
}

SettingFigures darkSetting(std::int64_t iso) {
  SettingFigures setting;
  setting.isDark = true;
  setting.iso = iso;
  setting.frames = 6;
  setting.noise = 2 * static_cast<double>(iso) / 100 / 3;
  return setting;
}

const std::vector<SettingFigures> good{darkSetting(400), darkSetting(1600), lightSetting(100, 8000),
                                       lightSetting(1600, 5000)};

TEST(SensorFigures, FollowFromHowNoiseGrowsWithLight) {
  const SensorFigures figures = sensorFigures(good);
  EXPECT_NEAR(*figures.electronsPerUnit, 3, 1e-3);
  EXPECT_NEAR(*figures.fullRange, 3 * 15871, 20);
  EXPECT_NEAR(*figures.readNoise, 2, 1e-3);
  EXPECT_DOUBLE_EQ(*figures.responseSpread, 0.006);
  EXPECT_DOUBLE_EQ(*figures.lightNoise, good[2].noise);
}

TEST(SensorFigures, SayNothingThatWasNotMeasured) {
  const SensorFigures figures = sensorFigures(std::vector{darkSetting(400)});
  EXPECT_FALSE(figures.electronsPerUnit || figures.fullRange || figures.readNoise || figures.responseSpread);
  SettingFigures clipped = lightSetting(100, 8000);
  clipped.isClipped = true;
  EXPECT_FALSE(sensorFigures(std::vector{clipped}).lightNoise);
  SettingFigures unknown = lightSetting(100, 8000);
  unknown.iso.reset();
  EXPECT_FALSE(sensorFigures(std::vector{unknown}).electronsPerUnit);
  EXPECT_TRUE(sensorFigures(std::vector{unknown}).lightNoise);
}

TEST(SessionLack, IsWhatHelpsMost) {
  EXPECT_EQ(sessionLack(good), SessionLack::nothing);
  EXPECT_EQ(sessionLack({}), SessionLack::unclippedFlats);
  EXPECT_EQ(sessionLack(std::vector{good[2], good[3]}), SessionLack::darkFrames);
  EXPECT_EQ(sessionLack(std::vector{good[0], good[1], good[3]}), SessionLack::lowerISO);
  EXPECT_EQ(sessionLack(std::vector{good[0], good[2]}), SessionLack::moreSettings);
}

TEST(SessionLack, AsksForASmallApertureAndForSixFrames) {
  std::vector<SettingFigures> settings = good;
  settings[1].frames = 5;
  EXPECT_EQ(sessionLack(settings), SessionLack::moreFrames);
  settings[3].fNumber = 5.6;
  EXPECT_EQ(sessionLack(settings), SessionLack::smallerAperture);
  settings[3].fNumber.reset();
  EXPECT_EQ(sessionLack(settings), SessionLack::moreFrames);
}

}  // namespace
}  // namespace tessaly
