#include "calibration/columns/ColumnDefectDetector.h"

#include "calibration/CalibrationSentences.h"
#include "calibration/columns/OrderStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace tessaly {
namespace ColumnDefectDetector {
namespace {

constexpr std::size_t leastFrames = 6;
constexpr std::int64_t leastWidth = 257;
constexpr std::int64_t testedMargin = 128;
constexpr std::size_t leastGroupFrames = 3;
constexpr double deviationsPerMAD = 1.4826;  // of a normal distribution
constexpr double leastDeviation = 0.001;
constexpr double leastGroupFraction = 0.35;  // of the column's effect, in every exposure group
constexpr double leastGroupEffect = 1.0;

constexpr std::int64_t trendMargin = 32;
constexpr std::int64_t trendReach = 24;
constexpr std::int64_t trendGap = 3;

/// One column that passed all tests.
struct Qualified {
  std::int64_t x = 0;
  double effect = 0;
  double sigma = 0;
  double agreement = 0;
  bool isNegative = false;
};

/// The median and the agreement in sign of one column over all frames.
struct ColumnEffect {
  double effect = 0;
  double agreement = 0;
};

double trend(const std::vector<double>& residuals, std::int64_t column, std::vector<double>& scratch) {
  scratch.clear();
  for (std::int64_t offset = -trendReach; offset <= trendReach; ++offset) {
    if (std::abs(offset) > trendGap) scratch.push_back(residuals[static_cast<std::size_t>(column + offset)]);
  }
  return upperMedian(scratch);
}

class Detector {
 public:
  Detector(std::span<const ColumnFrameEvidence> frames, std::int64_t width, double leastSigma)
      : width_(width), leastSigma_(leastSigma) {
    std::map<std::string, std::vector<std::size_t>> groups;
    for (const ColumnFrameEvidence& frame : frames) {
      groups[frame.exposureKey].push_back(frames_.size());
      frames_.push_back(detrended(frame.residuals));
      frames_.back().resize(static_cast<std::size_t>(width));
    }
    for (auto& [key, group] : groups) {
      if (group.size() >= leastGroupFrames) groups_.push_back(std::move(group));
    }
  }

  std::vector<ColumnDetection> detect() {
    if (groups_.empty()) return {};
    for (std::int64_t column = testedMargin; column < width_ - testedMargin; ++column)
      effects_.push_back(columnEffect(column));
    estimateSpread();
    std::vector<Qualified> qualified;
    for (std::int64_t column = testedMargin; column < width_ - testedMargin; ++column) {
      if (const auto passed = qualify(column)) qualified.push_back(*passed);
    }
    return runs(qualified);
  }

 private:
  [[nodiscard]] double value(std::size_t frame, std::int64_t column) const {
    return frames_[frame][static_cast<std::size_t>(column)];
  }

  ColumnEffect columnEffect(std::int64_t column) {
    scratch_.clear();
    for (std::size_t frame = 0; frame < frames_.size(); ++frame)
      scratch_.push_back(value(frame, column));
    const auto positives = std::count_if(scratch_.begin(), scratch_.end(), [](double value) { return value > 0; });
    const auto count = static_cast<std::ptrdiff_t>(scratch_.size());
    const double agreement = static_cast<double>(std::max(positives, count - positives)) / static_cast<double>(count);
    return {upperMedian(scratch_), agreement};
  }

  void estimateSpread() {
    scratch_.clear();
    for (const ColumnEffect& column : effects_)
      scratch_.push_back(column.effect);
    median_ = upperMedian(scratch_);
    scratch_.clear();
    for (const ColumnEffect& column : effects_)
      scratch_.push_back(std::abs(column.effect - median_));
    deviation_ = std::max(upperMedian(scratch_) * deviationsPerMAD, leastDeviation);
  }

  std::optional<Qualified> qualify(std::int64_t column) {
    const ColumnEffect& measured = effects_[static_cast<std::size_t>(column - testedMargin)];
    const double effect = measured.effect - median_;
    const double sigma = std::abs(effect) / deviation_;
    if (sigma < leastSigma_ || measured.agreement < minimumAgreement) return std::nullopt;
    for (const std::vector<std::size_t>& group : groups_) {
      if (!agrees(group, column, effect)) return std::nullopt;
    }
    return Qualified{column, effect, sigma, measured.agreement, effect < 0};
  }

  bool agrees(const std::vector<std::size_t>& group, std::int64_t column, double effect) {
    scratch_.clear();
    for (const std::size_t frame : group)
      scratch_.push_back(value(frame, column));
    const double median = upperMedian(scratch_);
    const double least = std::max(leastGroupFraction * std::abs(effect), leastGroupEffect);
    return (median < 0) == (effect < 0) && std::abs(median) >= least;
  }

  [[nodiscard]] std::vector<ColumnDetection> runs(const std::vector<Qualified>& qualified) const {
    std::vector<ColumnDetection> detections;
    for (std::size_t index = 0; index < qualified.size(); ++index) {
      const Qualified& column = qualified[index];
      const bool continues =
          index > 0 && column.x == qualified[index - 1].x + 1 && column.isNegative == qualified[index - 1].isNegative;
      if (!continues) detections.push_back({column.x, 0, 0, 0, 1, static_cast<std::int64_t>(groups_.size())});
      extend(detections.back(), column);
    }
    std::stable_sort(
        detections.begin(), detections.end(),
        [](const ColumnDetection& left, const ColumnDetection& right) { return left.sigma > right.sigma; });
    return detections;
  }

  static void extend(ColumnDetection& run, const Qualified& column) {
    ++run.width;
    run.agreement = std::min(run.agreement, column.agreement);
    if (column.sigma <= run.sigma) return;
    run.effect = column.effect;
    run.sigma = column.sigma;
  }

  std::int64_t width_;
  double leastSigma_;
  std::vector<std::vector<double>> frames_;       // detrended
  std::vector<std::vector<std::size_t>> groups_;  // indices of the frames of each group that counts
  std::vector<ColumnEffect> effects_;             // of the tested columns
  double median_ = 0;
  double deviation_ = 1;
  std::vector<double> scratch_;
};

}  // namespace

std::vector<double> detrended(const std::vector<double>& residuals) {
  std::vector<double> result(residuals.size());
  if (residuals.size() <= 2 * trendMargin) return result;
  const auto end = static_cast<std::int64_t>(residuals.size()) - trendMargin;
  std::vector<double> scratch;
  for (std::int64_t column = trendMargin; column < end; ++column) {
    const auto index = static_cast<std::size_t>(column);
    result[index] = residuals[index] - trend(residuals, column, scratch);
  }
  return result;
}

std::vector<ColumnDetection> detect(std::span<const ColumnFrameEvidence> frames, std::int64_t activeWidth,
                                    double leastSigma) {
  if (frames.size() < leastFrames || activeWidth < leastWidth) return {};
  return Detector(frames, activeWidth, leastSigma).detect();
}

}  // namespace ColumnDefectDetector

namespace CalibrationEngine {

CalibrationCandidate lineCandidate(const ColumnDetection& detection, const DNGMetadata& metadata) {
  CalibrationCandidate line;
  line.id = UUID::random();
  line.kind = CalibrationCandidate::Kind::line;
  line.x = metadata.activeX + detection.x;
  line.yStart = metadata.activeY;
  line.yEnd = metadata.activeY + metadata.activeHeight - 1;
  line.width = detection.width;
  line.confidence = std::min(detection.sigma / 20 + 0.5, 0.99);
  line.evidenceSigma = detection.sigma;
  line.frameAgreement = detection.agreement;
  line.exposureGroupCount = detection.exposureGroupCount;
  line.reason = CandidateReasons::fixedColumn(detection.sigma, detection.agreement, detection.exposureGroupCount);
  return line;
}

std::vector<CalibrationCandidate> detectColumns(std::span<const ColumnFrameEvidence> frames,
                                                const DNGMetadata& metadata) {
  std::vector<CalibrationCandidate> lines;
  for (const ColumnDetection& detection : ColumnDefectDetector::detect(frames, metadata.activeWidth))
    lines.push_back(lineCandidate(detection, metadata));
  return lines;
}

}  // namespace CalibrationEngine
}  // namespace tessaly
