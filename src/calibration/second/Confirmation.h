// Findings as records of their own, and which documented candidates they confirm.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "calibration/second/PointFinders.h"
#include "calibration/second/ShadowFinder.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tessaly::second {

/// Everything that was found and voted for, in active coordinates.
struct Found {
  PointPlaces dim;
  PointPlaces warm;
  PointPlaces unsteady;
  std::vector<FoundColumn> darkLines;    ///< means in unitQuanta
  std::vector<FoundColumn> brightLines;  ///< means in lightQuanta
  std::vector<Shadow> shadows;
};

/// Whether any group that is not clipped there could tell, by active coordinates; spots are seen in light alone.
using Decides = std::function<bool(CalibrationCandidate::Kind kind, std::int64_t x, std::int64_t y)>;

/// The records in raw coordinates: lines, spots, pixels; within a kind the strongest evidence first. A pixel on a found
/// line is left out, a dim one inside a shadow too; what dark and bright frames both show is told once.
[[nodiscard]] std::vector<SecondOpinionFinding> findings(const Found& found, const DNGMetadata& metadata);

/// Whether a finding tells the same defect as a documented candidate. A line: one in its columns that shares more than
/// 70 % of the longer one's rows; a pixel: the same photosite; a spot: a shadow whose centre lies inside.
[[nodiscard]] bool isSameDefect(const CalibrationCandidate& documented, const CalibrationCandidate& found);

/// For each documented candidate, whether what was found confirms it (isSameDefect; of photosites also those that are
/// left out of the records); nothing where no group could tell.
[[nodiscard]] std::vector<std::optional<bool>> confirmations(std::span<const CalibrationCandidate> documented,
                                                             const Found& found,
                                                             std::span<const SecondOpinionFinding> findings,
                                                             const DNGMetadata& metadata, const Decides& decides);

}  // namespace tessaly::second
