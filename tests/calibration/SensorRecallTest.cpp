// Whether calibration finds what is wrong with simulated sensors: every planted defect, and nothing else.

#include "calibration/CalibrationEngine.h"
#include "support/TemporaryFolder.h"
#include "tools/DefectPlanting.h"
#include "tools/SampleCamera.h"
#include "tools/SensorSimulator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Kind = CalibrationCandidate::Kind;

/// How many of one kind of defect were planted, found, and found without being there.
struct Score {
  int planted = 0;
  int found = 0;
  int false_ = 0;
};

std::ostream& operator<<(std::ostream& stream, const Score& score) {
  return stream << score.found << " of " << score.planted << " found, " << score.false_ << " false";
}

struct Scores {
  Score pixels;
  Score columns;
  Score partialColumns;
  Score spots;
};

/// A sensor as small as the usual defects allow.
tools::SensorDescription sensor(std::uint64_t seed, const std::string& cfa) {
  tools::SensorDescription description;
  description.seed = seed;
  description.cfa = cfa;
  description.width = 900;
  description.height = 420;
  description.activeWidth = 820;
  description.activeHeight = 380;
  return description;
}

std::vector<CalibrationCandidate> candidatesOf(const tools::SensorSimulator& camera) {
  const tests::TemporaryFolder folder;
  std::vector<std::filesystem::path> urls;
  for (const tools::PlannedFrame& frame : tools::calibrationFrames(camera.description())) {
    urls.push_back(folder / (frame.name + ".dng"));
    camera.file(frame.exposure, camera.render(frame.scene, frame.exposure, frame.number, tools::Condition::damaged))
        .write(urls.back());
  }
  return CalibrationEngine::analyze(urls, nullptr).candidates;
}

// Each rule says whether a candidate is a planted defect.
bool matches(const CalibrationCandidate& candidate, const tools::PlantedPixel& pixel) {
  return candidate.kind == Kind::pixel && candidate.x == pixel.x && candidate.yStart == pixel.y;
}

bool matches(const CalibrationCandidate& candidate, const tools::PlantedLine& line) {
  return candidate.kind == Kind::line && candidate.x == line.x && candidate.width == line.width &&
         candidate.yStart == line.yStart && candidate.yEnd == line.yEnd;
}

bool matches(const CalibrationCandidate& candidate, const tools::PlantedSpot& spot) {
  return candidate.kind == Kind::spot && std::abs(candidate.x - spot.x) <= 2 &&
         std::abs(candidate.yStart - spot.y) <= 2 && candidate.radiusX >= spot.radiusX - 2 &&
         candidate.radiusY >= spot.radiusY - 2;
}

template <typename Defect>
int foundOf(const std::vector<CalibrationCandidate>& candidates, const std::vector<Defect>& planted) {
  return static_cast<int>(std::ranges::count_if(planted, [&](const Defect& defect) {
    return std::ranges::any_of(candidates, [&](const auto& candidate) { return matches(candidate, defect); });
  }));
}

template <typename Defect>
bool isAnyOf(const CalibrationCandidate& candidate, const std::vector<Defect>& planted) {
  return std::ranges::any_of(planted, [&](const Defect& defect) { return matches(candidate, defect); });
}

template <typename Defect>
Score scoreOf(const std::vector<CalibrationCandidate>& candidates, const std::vector<Defect>& planted) {
  return {static_cast<int>(planted.size()), foundOf(candidates, planted), 0};
}

// A pixel is false when its sample was not planted at all: single samples of a shadow or at the end of a column are
// abnormal too, and it is no mistake to report one.
bool isPlantedSample(const CalibrationCandidate& pixel, const tools::SensorSimulator& camera) {
  const std::vector<std::int64_t> samples = camera.plantedSamples();
  return std::ranges::binary_search(samples, pixel.yStart * camera.description().width + pixel.x);
}

Scores scores(const std::vector<CalibrationCandidate>& candidates, const tools::PlantedDefects& planted,
              const tools::SensorSimulator& camera) {
  std::vector<tools::PlantedLine> full = planted.lines;
  std::vector<tools::PlantedLine> partial = planted.lines;
  const auto isFull = [&camera](const auto& line) { return line.yStart == camera.description().activeY; };
  std::erase_if(full, [&](const auto& line) { return !isFull(line); });
  std::erase_if(partial, isFull);
  Scores result{scoreOf(candidates, planted.pixels), scoreOf(candidates, full), scoreOf(candidates, partial),
                scoreOf(candidates, planted.spots)};
  for (const CalibrationCandidate& candidate : candidates) {
    const bool isTrail = candidate.kind == Kind::line && !candidate.evidenceSigma;
    if (candidate.kind == Kind::pixel) result.pixels.false_ += !isPlantedSample(candidate, camera);
    if (candidate.kind == Kind::spot) result.spots.false_ += !isAnyOf(candidate, planted.spots);
    if (isTrail) result.partialColumns.false_ += !isAnyOf(candidate, partial);
    if (candidate.kind == Kind::line && !isTrail) result.columns.false_ += !isAnyOf(candidate, full);
  }
  return result;
}

struct Body {
  std::uint64_t seed = 0;
  std::string cfa;
};

std::ostream& operator<<(std::ostream& stream, const Body& body) {
  return stream << (body.cfa.empty() ? "linear" : body.cfa) << body.seed;
}

// Without a mosaic a sample is compared with the ones next to it, which a soft shadow darkens nearly as much: only
// small deep shadows stand out.
tools::PlantedDefects defectsOf(const tools::SensorDescription& description) {
  tools::PlantedDefects planted = tools::plantDefects(description, {});
  if (!description.cfa.empty()) return planted;
  for (tools::PlantedSpot& spot : planted.spots)
    spot = {spot.x, spot.y, 4, 4, 0.95};
  return planted;
}

class SensorRecall : public testing::TestWithParam<Body> {};

TEST_P(SensorRecall, FindsEveryPlantedDefectAndHardlyAnythingElse) {
  const tools::SensorDescription description = sensor(GetParam().seed, GetParam().cfa);
  const tools::PlantedDefects planted = defectsOf(description);
  const tools::SensorSimulator camera(description, planted);
  const Scores found = scores(candidatesOf(camera), planted, camera);
  for (const Score& score : {found.pixels, found.columns, found.partialColumns, found.spots})
    EXPECT_EQ(score.found, score.planted);
  EXPECT_EQ(found.pixels.false_, 0);
  EXPECT_EQ(found.columns.false_, 0);
  EXPECT_EQ(found.spots.false_, 0);
  EXPECT_LE(found.partialColumns.false_, 2) << "on so few rows noise passes for a trail below one pixel in fifty";
  if (HasFailure()) {
    ADD_FAILURE() << "pixels: " << found.pixels << "; columns: " << found.columns
                  << "; partial columns: " << found.partialColumns << "; spots: " << found.spots;
  }
}

INSTANTIATE_TEST_SUITE_P(Bodies, SensorRecall,
                         testing::Values(Body{1, "RGGB"}, Body{2, "BGGR"}, Body{3, "GRBG"}, Body{4, "GBRG"},
                                         Body{5, "RGGB"}, Body{6, "BGGR"}, Body{7, ""}, Body{8, ""}, Body{9, ""},
                                         Body{10, ""}),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace tessaly
