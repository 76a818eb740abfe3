// Which samples of a raw plane a profile's defects cover, by the rule that rebuilds them.
//
// A sample that several defects cover belongs to the first of: line, spot, point; so the three sets are disjoint, and
// `all` is their union. No rebuilt value reads another sample of `all`. Immutable once built; concurrent use is safe.
#pragma once

#include "profile/CameraProfile.h"
#include "repair/SampleMask.h"

#include <cstdint>

namespace tessaly {

struct DefectMap {
  /// `profile` must have been validated for a plane of this size.
  DefectMap(const CameraProfile& profile, std::int64_t rawWidth, std::int64_t rawHeight);

  SampleMask lines;
  SampleMask spots;
  SampleMask points;
  SampleMask all;
};

}  // namespace tessaly
