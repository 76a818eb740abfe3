#include "calibration/second/Neighbourhood.h"
#include "calibration/second/RandomPlanes.h"
#include "calibration/second/ReferenceSecondOpinion.h"
#include "calibration/second/RowKernels.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaly::second {
namespace {

class ReducedFrames : public testing::TestWithParam<int> {};

TEST_P(ReducedFrames, AreThoseOfPlainArithmetic) {
  const PlaneShape shape(601, 1, 1);
  std::vector<Plane> frames;
  for (int i = 0; i < GetParam(); ++i)
    frames.push_back(tests::randomPlane(shape, static_cast<std::uint64_t>(70 + i), 400));
  const std::vector<Plane> originals = frames;
  std::vector<std::int16_t*> rows;
  for (Plane& frame : frames)
    rows.push_back(frame.data());
  reduceFrames(rows, shape.width);
  for (std::size_t x = 0; x < shape.count(); ++x) {
    std::vector<int> values;
    for (const Plane& original : originals)
      values.push_back(original[x]);
    const tests::PlainReduction plain = tests::plainReduction(values);
    ASSERT_EQ(frames[0][x], plain.median);
    ASSERT_NEAR(frames[1][x], std::cbrt(plain.variance) * rootQuanta, 1);
    ASSERT_NEAR(frames[2][x], std::cbrt(plain.trimmedVariance) * rootQuanta, 6);
  }
}

INSTANTIATE_TEST_SUITE_P(RowKernels, ReducedFrames, testing::Values(3, 4, 5, 6));

TEST(RowKernels, MeasureDeparturesAsThePlainRule) {
  for (const std::int64_t step : {1, 2}) {
    const PlaneShape shape(67, 21, step);
    const Plane plane = tests::randomPlane(shape, 3, 900);
    MirroredRows rows(plane, shape);
    std::vector<std::int16_t> row(static_cast<std::size_t>(shape.width));
    for (std::int64_t y = 0; y < shape.height; ++y) {
      rows.departures(y, row.data());
      for (std::int64_t x = 0; x < shape.width; ++x) {
        ASSERT_EQ(row[static_cast<std::size_t>(x)], tests::plainDeparture(plane, shape, x, y)) << x << ", " << y;
        ASSERT_EQ(departureAt(plane, shape, x, y), tests::plainDeparture(plane, shape, x, y)) << x << ", " << y;
      }
      rows.lineResiduals(y, row.data());
      for (std::int64_t x = 0; x < shape.width; ++x)
        ASSERT_EQ(row[static_cast<std::size_t>(x)], tests::plainLineResidual(plane, shape, x, y)) << x << ", " << y;
    }
  }
}

TEST(RowKernels, NormalizeLightAndDarkness) {
  const std::vector<std::uint16_t> raw{612, 512, 712, 65535};
  const std::vector<float> model{100, 100, 100, 100};
  std::vector<std::int16_t> row(4);
  normalizeLight(raw.data(), model.data(), 512, 4, row.data());
  EXPECT_EQ(row, (std::vector<std::int16_t>{0, -16000, 16000, 16000}));
  const std::vector<float> dark{610.5, 513, 712, 500};
  normalizeDarkness(raw.data(), dark.data(), 16, 4, row.data());
  EXPECT_EQ(row, (std::vector<std::int16_t>{24, -16, 0, 16000}));
}

TEST(RowKernels, TakeTheWorstGroupOutOfTheSum) {
  const std::vector<std::int16_t> variance{2048 + 500, 2048};
  const std::vector<std::int16_t> trimmed{2048, 2048};
  std::vector<std::int16_t> sums{10, 10};
  std::vector<std::int16_t> worst{-32000, 70};
  const ScoreScale scale{2048, scoreQuanta / 250.0F};
  addUnsteady({variance.data(), trimmed.data(), sums.data(), worst.data()}, scale, scale, 2);
  EXPECT_EQ(sums, (std::vector<std::int16_t>{10 + 2 * scoreQuanta, 10}));
  EXPECT_EQ(worst, (std::vector<std::int16_t>{2 * scoreQuanta, 70}));
}

TEST(RowKernels, GiveRatiosOfRootsAndOneWhereNothingIsKnown) {
  std::vector<std::int16_t> roots{300, 32767, 5};
  const std::vector<float> model{150, 1, 0};
  rootRatios(roots.data(), model.data(), 3);
  EXPECT_EQ(roots, (std::vector<std::int16_t>{2 * ratioQuanta, 32767, ratioQuanta}));
}

}  // namespace
}  // namespace tessaly::second
