// A second, plain implementation of the repair: sets of indices, no masks, values written apart from those read. It is
// the oracle for the engine and shares nothing with it but the records.
#pragma once

#include "profile/CameraProfile.h"
#include "repair/RepairEngine.h"

#include <cstdint>
#include <vector>

namespace tessaly::reference {

struct RepairedPlane {
  std::vector<std::uint16_t> samples;
  RepairReport report;
};

/// `profile` must fit the metadata.
[[nodiscard]] RepairedPlane repair(const std::vector<std::uint16_t>& samples, const DNGMetadata& metadata,
                                   const CameraProfile& profile);

}  // namespace tessaly::reference
