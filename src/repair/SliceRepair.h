// Rebuilds the samples that a camera profile marks as defective while an image streams by: the same samples, by the
// same rules, as RepairEngine in a whole plane.
//
// Used by one thread, for one pass over one image; metadata and profile must outlive it.
#pragma once

#include "dng/copy/SampleWindow.h"
#include "profile/CameraProfile.h"
#include "repair/DefectRows.h"
#include "repair/MosaicColours.h"

#include <cstdint>

namespace tessaly {

class SliceRepair {
 public:
  /// `profile` must have been validated for the image. `mostRows`: the most rows of a slice.
  SliceRepair(const DNGMetadata& metadata, const CameraProfile& profile, std::int64_t mostRows);

  /// How many rows above and below a sample the profile's rules look at.
  [[nodiscard]] static std::int64_t reachOf(const CameraProfile& profile);

  /// The slices come from top to bottom. Samples are replaced at once, because no rule reads another defective one.
  void repair(SampleWindow& samples, const SliceRows& slice);

  /// Complete when the last slice is.
  [[nodiscard]] const RepairReport& report() const { return defects_.report(); }

 private:
  const DNGMetadata& metadata_;
  MosaicColours colours_;
  DefectRows defects_;
};

}  // namespace tessaly
