// The second opinion over real files of simulated bodies: its goals by kind, and that it changes nothing else.
#include "calibration/CalibrationAnalysis.h"
#include "support/TemporaryFolder.h"
#include "tools/SecondOpinionScore.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessaly {
namespace {

using CalibrationEngine::Opinions;

tools::SecondOpinionTrial trial(std::uint64_t seed, const std::string& cfa) {
  tools::SecondOpinionTrial trial;
  trial.description.seed = seed;
  trial.description.cfa = cfa;
  trial.description.activeWidth = 620;
  trial.description.activeHeight = 540;
  return trial;
}

void expectPrecision(const tools::SecondOpinionScore& score) {
  for (const auto& [finder, precision] : score.precision)
    EXPECT_TRUE(precision.wrong <= 1 || precision.share() >= 0.95) << finder;
}

class SecondOpinionOn : public testing::TestWithParam<std::string> {};

TEST_P(SecondOpinionOn, ABodyFindsWhatTheGoalsDemand) {
  const tools::SecondOpinionScore score = scoreOf(trial(17, GetParam()));
  expectPrecision(score);
  EXPECT_GE(score.recallOf("dust,     0.01"), 0.8);
  EXPECT_GE(score.recallOf("dust,     0.1"), 0.95);
  EXPECT_GE(score.recallOf("speck"), 0.8);
  EXPECT_GE(score.recallOf("partial"), 0.8);
  EXPECT_GE(score.recallOf("telegraph e,       50"), 0.85);
  if (HasFailure()) ADD_FAILURE() << table(score);
}

TEST_P(SecondOpinionOn, AHealthyBodyFindsNextToNothing) {
  tools::SecondOpinionTrial healthy = trial(18, GetParam());
  healthy.isHealthy = true;
  const tools::SecondOpinionScore score = scoreOf(healthy);
  EXPECT_LE(score.falseFindings(), 5) << table(score);
}

INSTANTIATE_TEST_SUITE_P(Mosaics, SecondOpinionOn, testing::Values("RGGB", ""));

/// The files of a small body.
struct SmallSession {
  tests::TemporaryFolder folder;
  std::vector<std::filesystem::path> files;

  SmallSession() {
    tools::BodyDescription sensor;
    sensor.activeWidth = 300;
    sensor.activeHeight = 190;
    const tools::SensorBody body(
        sensor, tools::plantBodyDefects(sensor.activeWidth, sensor.activeHeight,
                                        tools::BodyDefectCounts::of(sensor.activeWidth, sensor.activeHeight), 3));
    files = writeSession(body, tools::sessionSeries(tools::SessionKind::usual), folder.path());
  }
};

// Identifiers are fresh each time.
std::vector<CalibrationCandidate> withoutIds(std::vector<CalibrationCandidate> candidates) {
  for (CalibrationCandidate& candidate : candidates)
    candidate.id = {};
  return candidates;
}

std::vector<SecondOpinionFinding> withoutIds(std::vector<SecondOpinionFinding> findings) {
  for (SecondOpinionFinding& finding : findings)
    finding.candidate.id = {};
  return findings;
}

TEST(SecondOpinion, ChangesNothingThatIsDocumented) {
  const SmallSession session;
  const CalibrationResult alone = CalibrationEngine::analyze(session.files, nullptr);
  const CalibrationResult both = CalibrationEngine::analyze(session.files, nullptr, Opinions::both);
  EXPECT_FALSE(alone.secondOpinion.has_value());
  ASSERT_TRUE(both.secondOpinion.has_value());
  EXPECT_EQ(withoutIds(alone.candidates), withoutIds(both.candidates));
  EXPECT_EQ(alone.preview, both.preview);
  EXPECT_EQ(both.secondOpinion->confirmed.size(), both.candidates.size());
  EXPECT_FALSE(both.secondOpinion->findings.empty());
}

TEST(SecondOpinion, IsTheSameForAnyNumberOfThreads) {
  const SmallSession session;
  const CalibrationResult one = CalibrationEngine::analyzeOnThreads(session.files, nullptr, 1, Opinions::both);
  const CalibrationResult three = CalibrationEngine::analyzeOnThreads(session.files, nullptr, 3, Opinions::both);
  EXPECT_EQ(withoutIds(one.secondOpinion->findings), withoutIds(three.secondOpinion->findings));
  EXPECT_EQ(one.secondOpinion->confirmed, three.secondOpinion->confirmed);
}

TEST(SecondOpinion, CanBeStoppedAtEachOfItsSteps) {
  const SmallSession session;
  int closely = 0;
  std::int64_t total = 0;
  const auto handler = [&](const CalibrationProgress& progress) {
    EXPECT_LE(progress.completed, progress.total);
    total = progress.total;
    if (progress.message.starts_with("Looking closely at ") && ++closely == 40) throw std::runtime_error("stop");
  };
  EXPECT_THROW(static_cast<void>(CalibrationEngine::analyze(session.files, handler, Opinions::both)),
               std::runtime_error);
  EXPECT_EQ(total, 90);
}

}  // namespace
}  // namespace tessaly
