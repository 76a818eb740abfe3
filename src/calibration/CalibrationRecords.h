// What calibration finds and reports: candidates, progress, previews and the result.
#pragma once

#include "calibration/CandidateKinds.h"
#include "dng/DNGMetadata.h"
#include "platform/UUID.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// A sensor defect that the photographer is asked to confirm, in raw coordinates.
struct CalibrationCandidate {
  using Kind = CandidateKind;

  UUID id;
  Kind kind = Kind::pixel;
  std::int64_t x = 0;       ///< column; of a line its first one
  std::int64_t yStart = 0;  ///< first row
  std::int64_t yEnd = 0;    ///< last row, inclusive
  std::int64_t width = 1;   ///< number of adjacent columns
  std::int64_t radiusX = 0;
  std::int64_t radiusY = 0;
  double confidence = 0;                           ///< 0 to 0.99; 1 for one that was added by hand
  std::optional<double> evidenceSigma;             ///< strength in robust standard deviations (full columns)
  std::optional<double> frameAgreement;            ///< fraction of frames that agree in sign (lines)
  std::optional<std::int64_t> exposureGroupCount;  ///< independent exposure groups that showed the defect (lines)
  std::string reason;                              ///< English (CandidateReasons); translated where it is shown

  bool operator==(const CalibrationCandidate&) const = default;
};

/// One step of an analysis. `message` is English; `completed` never exceeds `total`.
struct CalibrationProgress {
  std::int64_t completed = 0;
  std::int64_t total = 0;
  std::string message;

  bool operator==(const CalibrationProgress&) const = default;
};

using CalibrationProgressHandler = std::function<void(const CalibrationProgress&)>;

/// An 8-bit grey picture of the active area, row after row; `pixels` is empty where there was nothing to show.
struct RawPreviewImage {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::vector<std::uint8_t> pixels;

  bool operator==(const RawPreviewImage&) const = default;
};

/// What the second opinion found; it proposes and is never included by itself.
struct SecondOpinionFinding {
  enum class Finder { dim, warm, unsteady, column, run, shadow };

  Finder finder = Finder::dim;
  CalibrationCandidate candidate;
  double evidence = 0;  ///< robust standard deviations
  double effect = 0;    ///< u (a raw unit of a 14-bit range), share of the light, or ratio of noise

  bool operator==(const SecondOpinionFinding&) const = default;
};

/// How many photosites depart from their neighbours by at least so much.
struct StrengthCount {
  double strength = 0;
  std::uint64_t photosites = 0;

  bool operator==(const StrengthCount&) const = default;
};

/// What the frames of one setting tell about the sensor. Strengths are in u (a raw unit of a 14-bit range) in the dark
/// and shares of the light in light.
struct SettingFigures {
  bool isDark = false;
  std::optional<std::int64_t> iso;
  std::optional<double> exposureSeconds;
  std::optional<double> fNumber;  ///< of bright frames, where they tell it
  std::int64_t frames = 0;
  bool isClipped = false;  ///< everywhere: what follows says nothing
  double level = 0;        ///< of the light above black, in u: the median over colours and places
  double noise = 0;        ///< of a sample, from frame to frame
  double photonSlope = 0;  ///< noise² / level, both in u: u an electron, but for the read noise
  double spread = 0;       ///< by which photosites differ, noise apart
  std::vector<StrengthCount> departing;

  bool operator==(const SettingFigures&) const = default;
};

struct SecondOpinion {
  std::vector<SecondOpinionFinding> findings;  ///< lines, spots, pixels; within a kind the strongest evidence first
  /// Of each documented candidate, in their order, whether a finding confirms it; nothing where no group could tell.
  std::vector<std::optional<bool>> confirmed;
  std::vector<SettingFigures> settings;  ///< dark ones first
};

struct CalibrationResult {
  DNGMetadata metadata;  ///< of the first file after sorting
  std::int64_t brightFrameCount = 0;
  std::int64_t darkFrameCount = 0;
  std::int64_t lineEvidenceFrameCount = 0;
  std::int64_t lineExposureGroupCount = 0;
  std::vector<CalibrationCandidate> candidates;  ///< lines, spots, pixels; within a kind the most confident first
  RawPreviewImage preview;
  std::optional<SecondOpinion> secondOpinion;  ///< where it was asked for
};

}  // namespace tessaly
