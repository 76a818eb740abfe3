#include "calibration/second/RandomPlanes.h"
#include "calibration/second/ReferenceSecondOpinion.h"
#include "calibration/second/RobustSpread.h"

#include <gtest/gtest.h>

namespace tessaly::second {
namespace {

TEST(RobustSpread, AgreesWithSortingToHalfAStep) {
  const Plane plane = tests::randomPlane({80, 40, 1}, 5, 300);
  Histogram histogram;
  histogram.add(plane);
  const auto [median, sigma] = tests::plainSpread({plane.begin(), plane.end()});
  EXPECT_NEAR(histogram.spread().median, median, 0.6);
  EXPECT_NEAR(histogram.spread().sigma, sigma, 1.5);
}

TEST(RobustSpread, IsFinerThanOneStep) {
  Histogram histogram;
  for (int i = 0; i < 100; ++i)
    histogram.add(static_cast<std::int16_t>(i < 75 ? 4 : 5));
  EXPECT_NEAR(histogram.spread().median, 3.5 + 50.0 / 75, 1e-6);
}

TEST(RobustSpread, JoinsBandsInAnyOrder) {
  const Plane plane = tests::randomPlane({64, 30, 1}, 9, 1000);
  Histogram whole;
  whole.add(plane);
  Histogram upper;
  Histogram lower;
  upper.add(std::span(plane).first(700));
  lower.add(std::span(plane).subspan(700));
  lower.join(upper);
  EXPECT_EQ(lower.count(), plane.size());
  EXPECT_EQ(lower.spread().sigma, whole.spread().sigma);
}

TEST(RobustSpread, OfNothingIsNothing) {
  EXPECT_EQ(Histogram().spread().sigma, 0);
  EXPECT_EQ(spreadOf({}).sigma, 0);
}

TEST(RobustSpread, OfAFewNumbersIsThePlainOne) {
  const Spread spread = spreadOf({1, 2, 4, 8});
  EXPECT_DOUBLE_EQ(spread.median, 3);
  EXPECT_DOUBLE_EQ(spread.sigma, 1.5 * 1.4826);
}

}  // namespace
}  // namespace tessaly::second
