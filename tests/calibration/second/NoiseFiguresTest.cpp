// The figures of the frames, of random numbers and of simulated bodies whose truth is known.
#include "calibration/CalibrationEngine.h"
#include "calibration/review/SensorFigures.h"
#include "calibration/second/NoiseFigures.h"
#include "support/TemporaryFolder.h"
#include "tools/BodySession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaly::second {
namespace {

double middleOf(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

TEST(NoiseFigures, TellTheVarianceFromTheMedianOfVariances) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal(0, 3);
  for (const std::size_t frames : {3U, 4U, 6U}) {
    std::vector<double> variances(20000);
    for (double& variance : variances) {
      double sum = 0;
      double squares = 0;
      for (std::size_t i = 0; i < frames; ++i) {
        const double value = normal(random);
        sum += value;
        squares += value * value;
      }
      const auto count = static_cast<double>(frames);
      variance = (squares - sum * sum / count) / (count - 1);
    }
    EXPECT_NEAR(varianceOfMedian(middleOf(variances), frames), 9, 0.5) << frames;
  }
}

TEST(NoiseFigures, TakeTheNoiseOfTheFramesOffWhatIsFixed) {
  const double departure = std::sqrt(1.1682 * (4 + 0.2147 * 9));
  EXPECT_NEAR(fixedVariance(departure, 9, 6), 4, 1e-9);
  EXPECT_EQ(fixedVariance(0.1, 9, 6), 0);
}

TEST(NoiseFigures, CountHowManyDepartByHowMuch) {
  Histogram departures;
  for (const int value : {0, 1, -1, 2, -3, 16, -17})
    departures.add(static_cast<std::int16_t>(value));
  const std::vector<StrengthCount> counts = strengthCounts(departures, 16);
  ASSERT_EQ(counts.size(), 9U) << "up to 16";
  EXPECT_EQ(counts[0], (StrengthCount{1.0 / 16, 6}));
  EXPECT_EQ(counts[2].photosites, 4U) << "2 and more";
  EXPECT_EQ(counts[8].photosites, 2U);
}

TEST(NoiseFigures, MeasureABodyAsItIs) {
  tools::BodyDescription description;
  description.activeWidth = 520;
  description.activeHeight = 400;
  const tools::SensorBody body(description, {});
  const tests::TemporaryFolder folder;
  const auto files = writeSession(body, tools::sessionSeries(tools::SessionKind::usual), folder.path());
  const CalibrationResult result = CalibrationEngine::analyze(files, nullptr, CalibrationEngine::Opinions::both);
  const std::vector<SettingFigures>& settings = result.secondOpinion->settings;
  ASSERT_EQ(settings.size(), 5U);
  EXPECT_TRUE(settings[0].isDark && settings[1].isDark);
  EXPECT_EQ(settings[2].fNumber, 16);
  const SensorFigures figures = sensorFigures(settings);
  EXPECT_NEAR(*figures.electronsPerUnit, description.fullWell / 15871, 0.1);
  EXPECT_NEAR(*figures.readNoise, description.readNoise, 0.5) << "the photosites' own noises are larger than the least";
  EXPECT_NEAR(*figures.responseSpread, description.responseSpread, 0.0006);
  EXPECT_EQ(sessionLack(settings), SessionLack::nothing);
}

}  // namespace
}  // namespace tessaly::second
