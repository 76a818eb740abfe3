#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "tools/SampleCamera.h"

#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <sstream>

namespace tessaly::tools {
namespace {

/// The file of a small camera, as exiftool reads it.
class SampleCamera : public testing::Test {
 protected:
  void SetUp() override {
    if (!tests::isInstalled("exiftool")) GTEST_SKIP() << "exiftool is not installed";
  }

  void write(const std::string& cfa) {
    sensor_.width = 32;
    sensor_.height = 16;
    sensor_.activeX = 0;
    sensor_.activeY = 0;
    sensor_.activeWidth = 32;
    sensor_.activeHeight = 16;
    sensor_.cfa = cfa;
    const PlannedFrame frame{"wall", flatField(32, 16, 0.5), {}, 1};
    frameFile(SensorSimulator(sensor_, {}), frame, Condition::damaged).write(path());
  }

  [[nodiscard]] std::vector<double> numbers(const std::string& tag) const {
    std::istringstream text(tests::outputOf("exiftool -n -s3 -IFD0:" + tag + " " + tests::quoted(path())));
    return {std::istream_iterator<double>(text), {}};
  }

  [[nodiscard]] const SensorDescription& sensor() const { return sensor_; }

 private:
  [[nodiscard]] std::filesystem::path path() const { return folder_ / "wall.dng"; }

  tests::TemporaryFolder folder_;
  SensorDescription sensor_;
};

TEST_F(SampleCamera, SaysWhatWhiteGivesThroughItsFilters) {
  write("RGGB");
  EXPECT_EQ(numbers("AsShotNeutral"), (std::vector<double>{0.60, 1.00, 0.75}));
}

TEST_F(SampleCamera, HasAColourMatrixThatTurnsDaylightIntoItsWhite) {
  write("GRBG");
  constexpr std::array<double, 3> daylight{0.95047, 1.0, 1.08883};
  EXPECT_EQ(numbers("CalibrationIlluminant1"), std::vector<double>{21});
  const std::vector<double> matrix = numbers("ColorMatrix1");
  ASSERT_EQ(matrix.size(), 9U);
  for (std::size_t row = 0; row < 3; ++row) {
    const double level =
        matrix[3 * row] * daylight[0] + matrix[3 * row + 1] * daylight[1] + matrix[3 * row + 2] * daylight[2];
    EXPECT_NEAR(level, sensor().sensitivity.at(row), 0.001);
    EXPECT_GT(matrix[3 * row + row], 0.5) << "each filter sees its own colour most";
  }
}

TEST_F(SampleCamera, HasNoColoursWithoutAMosaic) {
  write("");
  EXPECT_EQ(numbers("ImageWidth"), std::vector<double>{32});
  EXPECT_TRUE(numbers("AsShotNeutral").empty());
  EXPECT_TRUE(numbers("ColorMatrix1").empty());
}

}  // namespace
}  // namespace tessaly::tools
