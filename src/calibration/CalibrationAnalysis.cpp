#include "calibration/CalibrationAnalysis.h"

#include "calibration/CalibrationIntake.h"
#include "calibration/CalibrationSentences.h"
#include "calibration/CandidateMerging.h"
#include "calibration/RawPreview.h"
#include "calibration/columns/ColumnDefectDetector.h"
#include "calibration/columns/ColumnEvidence.h"
#include "calibration/columns/TrailingColumnDetector.h"
#include "calibration/columns/TrailingEvidence.h"
#include "calibration/points/DeviationMap.h"
#include "calibration/points/PointDetector.h"
#include "calibration/points/SpotMerging.h"
#include "calibration/second/SecondOpinion.h"
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

using Candidates = std::vector<CalibrationCandidate>;

constexpr std::size_t leastFiles = 3;
constexpr std::int64_t leastBrightFrames = 3;
constexpr std::int64_t previewColumns = 1500;

void append(Candidates& all, Candidates more) {
  std::move(more.begin(), more.end(), std::back_inserter(all));
}

/// One analysis, step by step. A frame is read once to tell bright from dark (the first one of a group, which also
/// gives the preview), once to measure points and columns, and once for partial columns; every time into the same
/// buffer. What the readers throw already bears the name of the file; what the caller's callback throws passes through.
class Analysis {
 public:
  Analysis(std::span<const std::filesystem::path> urls, const CalibrationProgressHandler& progress, int threads,
           Opinions opinions)
      : progress_(progress), threads_(threads), opinions_(opinions), total_(static_cast<std::int64_t>(urls.size())) {
    intake_ = readIntake(urls, [this](const std::filesystem::path& url) { report(ProgressMessages::reading, url); });
  }

  CalibrationResult run() {
    classifyGroups();
    if (opinions_ == Opinions::both) total_ += second::frameReadings(intake_.groups);
    if (result_.brightFrameCount < leastBrightFrames)
      throw DNGError::invalid("Not enough bright-field frames were detected");
    measureGroups();
    append(result_.candidates, detectColumns(columnEvidence_, intake_.reference));
    findTrails();
    append(result_.candidates, mergeSpotCandidates(spots_));
    append(result_.candidates, std::move(pixels_));
    orderCandidates(result_.candidates);
    countColumnEvidence();
    if (opinions_ == Opinions::both) takeSecondOpinion();
    result_.metadata = std::move(intake_.reference);
    return std::move(result_);
  }

 private:
  void report(std::string (*message)(std::string_view), const std::filesystem::path& url) const {
    if (progress_) progress_({completed_, total_, message(displayName(url))});
  }

  void classifyGroups() {
    for (CalibrationGroup& group : intake_.groups) {
      DNGReader::readRaw(group.urls.front(), group.metadata, samples_);
      group.isDark = isDarkFrame(samples_, group.metadata);
      const bool isFirstBright = !group.isDark && result_.brightFrameCount == 0;
      if (isFirstBright) result_.preview = makePreview(samples_, group.metadata, previewColumns);
      std::int64_t& count = group.isDark ? result_.darkFrameCount : result_.brightFrameCount;
      count += static_cast<std::int64_t>(group.urls.size());
    }
  }

  void measureGroups() {
    DeviationMap map(intake_.reference, threads_);
    for (const CalibrationGroup& group : intake_.groups) {
      if (!group.isMeasured()) continue;
      measureGroup(group, map);
      for (CalibrationCandidate& point : detectPointGroup(map))
        keep(std::move(point));
    }
    pixels_ = mergePixels(pixels_);
  }

  // Points are never lines.
  void keep(CalibrationCandidate point) {
    switch (point.kind) {
      case CandidateKind::pixel:
        return pixels_.push_back(std::move(point));
      case CandidateKind::spot:
        return spots_.push_back(std::move(point));
      case CandidateKind::line:
        assert(false);
    }
  }

  void measureGroup(const CalibrationGroup& group, DeviationMap& map) {
    map.reset(group.isDark);
    for (const std::filesystem::path& url : group.urls) {
      DNGReader::readRaw(url, intake_.reference, samples_);
      map.add(samples_);
      if (!group.isDark)
        columnEvidence_.push_back(columnFrameEvidence(samples_, group.key, intake_.reference, threads_));
      ++completed_;
      report(ProgressMessages::analyzing, url);
    }
  }

  void findTrails() {
    const std::vector<TrailSeed> seeds = trailSeeds(pixels_, intake_.reference);
    TrailSamples samples(seeds, intake_.reference);
    const WantedSamples wanted = [&samples](std::int64_t row) { return samples.ofRow(row); };
    std::vector<TrailFrameEvidence> evidence;
    for (const CalibrationGroup& group : intake_.groups) {
      if (!group.isMeasured()) continue;
      for (const std::filesystem::path& url : group.urls) {
        report(ProgressMessages::checkingPartialColumn, url);
        if (seeds.empty()) continue;
        DNGReader::readRaw(url, intake_.reference, wanted, samples_);
        evidence.push_back(trailFrameEvidence(samples_, group.key, seeds, intake_.reference, threads_));
      }
    }
    append(result_.candidates, trailCandidates(TrailingColumnDetector::detect(seeds, evidence), intake_.reference));
  }

  void takeSecondOpinion() {
    const second::Step step = [this](const std::filesystem::path& url) {
      if (!url.empty()) ++completed_;
      report(ProgressMessages::lookingClosely, url.empty() ? closelyRead_ : url);
      if (!url.empty()) closelyRead_ = url;
    };
    result_.secondOpinion =
        second::secondOpinion(intake_.groups, intake_.reference, result_.candidates, samples_, threads_, step);
  }

  void countColumnEvidence() {
    std::set<std::string> keys;
    for (const ColumnFrameEvidence& frame : columnEvidence_)
      keys.insert(frame.exposureKey);
    result_.lineEvidenceFrameCount = static_cast<std::int64_t>(columnEvidence_.size());
    result_.lineExposureGroupCount = static_cast<std::int64_t>(keys.size());
  }

  const CalibrationProgressHandler& progress_;
  int threads_;
  Opinions opinions_;
  std::filesystem::path closelyRead_;  // by the second opinion, last
  std::int64_t completed_ = 0;
  std::int64_t total_;
  CalibrationIntake intake_;
  RawSamples samples_;
  std::vector<ColumnFrameEvidence> columnEvidence_;
  Candidates spots_;   // of all groups
  Candidates pixels_;  // of all groups, then merged
  CalibrationResult result_;
};

}  // namespace

CalibrationResult analyzeOnThreads(std::vector<std::filesystem::path> urls, const CalibrationProgressHandler& progress,
                                   int threads, Opinions opinions) {
  if (urls.size() < leastFiles) throw DNGError::invalid("At least three calibration DNG files are required");
  sortByFileName(urls);
  return Analysis(urls, progress, threads, opinions).run();
}

}  // namespace tessaly::CalibrationEngine
