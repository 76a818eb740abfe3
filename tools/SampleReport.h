// Measures what was made of a sample set: how near repaired photographs come to the undamaged scene, and which of the
// planted defects a calibration found. Both tables are plain text, one line a kind of defect (of each photograph).
#pragma once

#include "profile/CameraProfile.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::tools {

/// The distance of some samples from those of the undamaged scene, in raw units.
struct SampleDistance {
  double mean = 0;
  std::int64_t largest = 0;
};

/// The samples of one photograph that one kind of defect covers, before and after its repair. A sample under two kinds
/// counts with both; the kind "elsewhere" is all samples that no planted defect covers.
struct DistanceReport {
  std::string photograph;
  std::string kind;
  std::int64_t samples = 0;
  std::int64_t rebuilt = 0;  ///< how many of them the repair changed
  SampleDistance damaged;
  SampleDistance repaired;
};

/// One kind of defect: what was planted, how much of it a profile holds, and what the profile holds besides.
struct KindReport {
  std::string kind;
  std::int64_t planted = 0;
  std::int64_t found = 0;
  std::int64_t wrong = 0;   ///< entries of the profile that touch no planted defect of any kind
  std::int64_t second = 0;  ///< lines (or spots) over a planted one that another line (or spot) touches already

  [[nodiscard]] std::int64_t missed() const { return planted - found; }
};

/// Compares every photograph of the set for which `repaired` holds a file of the same name: pixels, columns, partial
/// columns, spots, elsewhere. Throws std::runtime_error when such a file has another size.
[[nodiscard]] std::vector<DistanceReport> comparePhotographs(const std::filesystem::path& sampleSet,
                                                             const std::filesystem::path& repaired);

/// Pixels, columns, partial columns and spots, in this order.
[[nodiscard]] std::vector<KindReport> compareProfiles(const CameraProfile& truth, const CameraProfile& found);

[[nodiscard]] std::string table(const std::vector<DistanceReport>& reports);
[[nodiscard]] std::string table(const std::vector<KindReport>& reports);

}  // namespace tessaly::tools
