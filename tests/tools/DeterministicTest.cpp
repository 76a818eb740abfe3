#include "tools/Deterministic.h"

#include <gtest/gtest.h>

namespace tessaly::tools {
namespace {

// The numbers of the published generator, seeds 0 and 1.
TEST(Deterministic, ScramblesLikeSplitMix) {
  EXPECT_EQ(scrambled(0), 0xE220A8397B1DCDAFU);
  EXPECT_EQ(scrambled(1), 0x910A2DEC89025CC1U);
}

TEST(Deterministic, BellHasMeanZeroAndDeviationOne) {
  double sum = 0;
  double squares = 0;
  constexpr int count = 100000;
  for (std::uint64_t key = 0; key < count; ++key) {
    const double value = bell(key);
    sum += value;
    squares += value * value;
    ASSERT_LE(std::abs(value), 3.5);
  }
  EXPECT_NEAR(sum / count, 0, 0.01);
  EXPECT_NEAR(squares / count, 1, 0.02);
}

TEST(Deterministic, UniformStaysInItsInterval) {
  double lowest = 1;
  double highest = 0;
  for (std::uint64_t key = 0; key < 10000; ++key) {
    lowest = std::min(lowest, uniform(key));
    highest = std::max(highest, uniform(key));
  }
  EXPECT_GE(lowest, 0);
  EXPECT_LT(lowest, 0.01);
  EXPECT_GT(highest, 0.99);
  EXPECT_LT(highest, 1);
}

TEST(Deterministic, WaveHasPeriodOneOnBothSidesOfZero) {
  EXPECT_EQ(wave(0), 0);
  EXPECT_EQ(wave(0.25), 1);
  EXPECT_EQ(wave(0.75), -1);
  EXPECT_EQ(wave(7.25), 1);
  EXPECT_EQ(wave(-0.25), -1);
}

TEST(Deterministic, SmoothNoiseMeetsItselfAtCellBorders) {
  EXPECT_NEAR(smoothNoise(5, 2.9999999, 1.5), smoothNoise(5, 3, 1.5), 1e-6);
  EXPECT_NEAR(smoothNoise(5, 0.5, 0.9999999), smoothNoise(5, 0.5, 1), 1e-6);
  EXPECT_NE(smoothNoise(5, 0.5, 0.5), smoothNoise(6, 0.5, 0.5));
}

TEST(Deterministic, SequenceReachesBothEndsOfARange) {
  Sequence sequence(1);
  bool low = false;
  bool high = false;
  for (int i = 0; i < 200; ++i) {
    const std::int64_t value = sequence.wholeBetween(-1, 2);
    ASSERT_TRUE(value >= -1 && value <= 2);
    low = low || value == -1;
    high = high || value == 2;
  }
  EXPECT_TRUE(low && high);
}

}  // namespace
}  // namespace tessaly::tools
