#include "calibration/points/DeviationRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace tessaly {
namespace {

/// Three rows of one frame around the row that is measured, and what was collected for it.
struct Rows {
  static constexpr std::int64_t count = 301;  // no multiple of any vector length
  static constexpr std::int64_t distance = 2;

  std::vector<std::uint16_t> above;
  std::vector<std::uint16_t> row;
  std::vector<std::uint16_t> below;
  std::vector<std::int32_t> sums = std::vector<std::int32_t>(count);
  std::vector<std::uint8_t> positives = std::vector<std::uint8_t>(count);

  template <typename Level>
  explicit Rows(Level level) {
    for (std::int64_t i = 0; i < count + 2 * distance; ++i) {
      above.push_back(level());
      row.push_back(level());
      below.push_back(level());
    }
  }

  [[nodiscard]] NeighbourRows neighbours() const {
    return {above.data() + distance, row.data() + distance, below.data() + distance, distance, count};
  }

  [[nodiscard]] DeviationRow target() { return {sums.data(), positives.data()}; }

  [[nodiscard]] std::int64_t sample(std::int64_t x) const { return row[static_cast<std::size_t>(x + distance)]; }

  /// By sorting, as plainly as possible.
  [[nodiscard]] std::int64_t median(std::int64_t x) const {
    const auto at = static_cast<std::size_t>(x + distance);
    std::array<std::int64_t, 4> four{row[at - 2], row[at + 2], above[at], below[at]};
    std::sort(four.begin(), four.end());
    return (four[1] + four[2] + 1) / 2;
  }
};

/// Levels of every size, many of them at the ends of the range.
class AnyLevel {
 public:
  std::uint16_t operator()() {
    const auto bits = static_cast<std::uint16_t>(random_());
    switch (random_() % 6) {
      case 0:
        return 0;
      case 1:
        return 65535;
      case 2:
        return static_cast<std::uint16_t>(bits % 8);
      default:
        return bits;
    }
  }

 private:
  std::mt19937 random_{7};
};

TEST(DeviationRows, AddsTheClampedDifferenceFromTheMedianInDarkFrames) {
  AnyLevel level;
  for (int repetition = 0; repetition < 50; ++repetition) {
    Rows rows{level};
    addDarkRow(rows.neighbours(), rows.target());
    for (std::int64_t x = 0; x < Rows::count; ++x) {
      const std::int64_t expected = std::clamp<std::int64_t>(rows.sample(x) - rows.median(x), -32767, 32767);
      ASSERT_EQ(rows.sums[static_cast<std::size_t>(x)], expected) << "column " << x;
      ASSERT_EQ(rows.positives[static_cast<std::size_t>(x)], expected > 0 ? 1 : 0) << "column " << x;
    }
  }
}

TEST(DeviationRows, AddsThousandthsOfTheLocalSignalInBrightFrames) {
  AnyLevel level;
  for (const LocalSignal signal :
       {LocalSignal{0, 1}, LocalSignal{512, 64}, LocalSignal{65534, 1}, LocalSignal{7, 259}}) {
    Rows rows{level};
    addBrightRow(rows.neighbours(), signal, rows.target());
    for (std::int64_t x = 0; x < Rows::count; ++x) {
      const std::int64_t divisor = std::max<std::int64_t>(signal.minimum, rows.median(x) - signal.black);
      const std::int64_t relative = (rows.sample(x) - rows.median(x)) * 1000 / divisor;
      const std::int64_t expected = std::clamp<std::int64_t>(relative, -32767, 32767);
      ASSERT_EQ(rows.sums[static_cast<std::size_t>(x)], expected) << "column " << x;
      ASSERT_EQ(rows.positives[static_cast<std::size_t>(x)], expected > 0 ? 1 : 0) << "column " << x;
    }
  }
}

TEST(DeviationRows, AddToWhatEarlierFramesLeft) {
  Rows rows{[] { return std::uint16_t{100}; }};
  rows.row[10 + Rows::distance] = 140;
  addDarkRow(rows.neighbours(), rows.target());
  addDarkRow(rows.neighbours(), rows.target());
  EXPECT_EQ(rows.sums[10], 80);
  EXPECT_EQ(rows.positives[10], 2);
  EXPECT_EQ(rows.sums[11], 0);
}

TEST(DeviationRows, StopCountingAt255) {
  Rows rows{[] { return std::uint16_t{100}; }};
  rows.row[10 + Rows::distance] = 101;
  for (int frame = 0; frame < 300; ++frame)
    addDarkRow(rows.neighbours(), rows.target());
  EXPECT_EQ(rows.sums[10], 300);
  EXPECT_EQ(rows.positives[10], 255);
}

TEST(DeviationRows, DoNotCountADeviationThatIsLessThanAThousandth) {
  Rows rows{[] { return std::uint16_t{30000}; }};
  rows.row[10 + Rows::distance] = 30029;  // 0.97 thousandths
  rows.row[20 + Rows::distance] = 30030;
  addBrightRow(rows.neighbours(), {0, 1}, rows.target());
  EXPECT_EQ(rows.positives[10], 0);
  EXPECT_EQ(rows.positives[20], 1);
}

// The proof beside relativeDeviation, tried where it is tightest: for every divisor the largest deviations and those
// whose quotient is just below, at and just above a whole number.
TEST(DeviationRows, DivideInDoubleAsWholeNumbersDo) {
  for (std::int32_t divisor = 1; divisor <= 65535; ++divisor) {
    std::vector<std::int32_t> deviations{0, 1, 65534, 65535};
    for (std::int32_t i = 1; i <= 40; ++i) {
      const std::int64_t nearWhole = std::int64_t{divisor} * i * i * 37 / 1000;
      for (const std::int64_t deviation : {nearWhole - 1, nearWhole, nearWhole + 1})
        deviations.push_back(static_cast<std::int32_t>(std::clamp<std::int64_t>(deviation, 0, 65535)));
    }
    for (const std::int32_t deviation : deviations) {
      ASSERT_EQ(relativeDeviation(deviation, divisor), deviation * 1000 / divisor) << deviation << " / " << divisor;
      ASSERT_EQ(relativeDeviation(-deviation, divisor), -deviation * 1000 / divisor) << -deviation << " / " << divisor;
    }
  }
}

TEST(DeviationRows, DivideEveryDeviationByTheMostAwkwardDivisorsAsWholeNumbersDo) {
  for (const std::int32_t divisor : {1, 2, 3, 7, 999, 1000, 1001, 32767, 32768, 65521, 65534, 65535}) {
    for (std::int32_t deviation = -65535; deviation <= 65535; ++deviation)
      ASSERT_EQ(relativeDeviation(deviation, divisor), deviation * 1000 / divisor) << deviation << " / " << divisor;
  }
}

}  // namespace
}  // namespace tessaly
