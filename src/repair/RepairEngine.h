// Rebuilds the samples that a camera profile marks as defective from nearby clean samples of the same colour.
//
// Stateless: a pure function of its inputs apart from the samples it edits in place.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/PlaneView.h"
#include "profile/CameraProfile.h"

#include <cstdint>
#include <span>

namespace tessaly {

struct DefectMap;

/// How many samples were rebuilt. A sample that several defects cover counts once, for the first of: line, spot, point.
struct RepairReport {
  std::int64_t changedSamples = 0;  ///< all positions that any defect covers, whether or not the value changed
  std::int64_t pointSamples = 0;
  std::int64_t lineSamples = 0;
  std::int64_t spotSamples = 0;

  bool operator==(const RepairReport&) const = default;
};

namespace RepairEngine {

/// Repairs `raw`, the full raw plane, in place. Throws DNGError::profileMismatch when the profile does not fit the
/// metadata and DNGError::invalid when the number of samples is not rawWidth × rawHeight; then nothing was changed.
RepairReport repair(std::span<std::uint16_t> raw, const DNGMetadata& metadata, const CameraProfile& profile);

/// The same with the map of a profile that was validated for this image.
RepairReport repair(PlaneView raw, const DNGMetadata& metadata, const DefectMap& defects);

}  // namespace RepairEngine
}  // namespace tessaly
