// Measures what was made of a sample set: how near repaired photographs come to the undamaged scene, and which of the
// planted defects a calibration found. Both tables are plain text, one line a photograph or kind of defect.
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

/// One photograph before and after its repair, over the samples that the planted defects cover.
struct PhotographReport {
  std::string name;
  std::int64_t defectiveSamples = 0;
  std::int64_t changedSamples = 0;  ///< of the whole plane, by the repair
  SampleDistance damaged;
  SampleDistance repaired;
};

/// One kind of defect: what was planted, how much of it a profile holds, and what the profile holds besides.
struct KindReport {
  std::string kind;
  std::int64_t planted = 0;
  std::int64_t found = 0;
  std::int64_t wrong = 0;  ///< entries of the profile that touch no planted defect of any kind

  [[nodiscard]] std::int64_t missed() const { return planted - found; }
};

/// Compares every photograph of the set for which `repaired` holds a file of the same name.
[[nodiscard]] std::vector<PhotographReport> comparePhotographs(const std::filesystem::path& sampleSet,
                                                               const std::filesystem::path& repaired);

/// Pixels, columns, partial columns and spots, in this order.
[[nodiscard]] std::vector<KindReport> compareProfiles(const CameraProfile& truth, const CameraProfile& found);

[[nodiscard]] std::string table(const std::vector<PhotographReport>& reports);
[[nodiscard]] std::string table(const std::vector<KindReport>& reports);

}  // namespace tessaly::tools
