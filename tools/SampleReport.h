// Measures what was made of a sample set: how near repaired photographs come to the undamaged scene, and which of the
// planted defects a calibration found. Both tables are plain text, one line a kind of defect (of each photograph).
#pragma once

#include "profile/CameraProfile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
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
  /// What is left of a stripe: the mean of |mean of 32 rows of a column − the same of the scene|, in raw units; 0 where
  /// no 32 rows of a column belong to the kind.
  double damagedStripe = 0;
  double repairedStripe = 0;
  /// The grain of the repaired samples as a multiple of the scene's: the spread of differences between samples two rows
  /// apart, both of the kind; absent without any, or where the scene has none.
  std::optional<double> grain;
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

/// Planted defects of one kind and strength, and how many of their samples no entry of the profile covers.
struct StrengthReport {
  std::string kind;      ///< "Hot pixel"
  std::string strength;  ///< "30 … 100 e/s"; empty where the truth tells none
  double from = 0;       ///< the lower end, for the order
  std::int64_t planted = 0;
  std::int64_t found = 0;
  std::int64_t samples = 0;
  std::int64_t uncovered = 0;

  [[nodiscard]] std::int64_t missed() const { return planted - found; }
};

/// Compares every photograph of the set for which `repaired` holds a file of the same name: pixels, columns, partial
/// columns, spots, elsewhere. Throws std::runtime_error when such a file has another size.
[[nodiscard]] std::vector<DistanceReport> comparePhotographs(const std::filesystem::path& sampleSet,
                                                             const std::filesystem::path& repaired);

/// Pixels, columns, partial columns and spots, in this order.
[[nodiscard]] std::vector<KindReport> compareProfiles(const CameraProfile& truth, const CameraProfile& found);

/// What the second opinion of a calibration result (the JSON of calibrate --second-opinion) found, as a profile of the
/// camera of `truth`.
[[nodiscard]] CameraProfile findingsProfile(const CameraProfile& truth, const std::filesystem::path& result);

/// By kind, then from weak to strong, in steps of half a decade.
[[nodiscard]] std::vector<StrengthReport> compareStrengths(const CameraProfile& truth, const CameraProfile& found);

[[nodiscard]] std::string table(const std::vector<DistanceReport>& reports);
[[nodiscard]] std::string table(const std::vector<StrengthReport>& reports);
[[nodiscard]] std::string table(const std::vector<KindReport>& reports);

}  // namespace tessaly::tools
