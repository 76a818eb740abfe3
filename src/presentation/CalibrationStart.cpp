#include "presentation/CalibrationStart.h"

#include "localization/Localization.h"

namespace tessaly::CalibrationStart {
namespace {

constexpr std::size_t fewestFiles = 3;

}  // namespace

std::optional<std::string> tooFewFiles(const std::vector<std::filesystem::path>& candidates) {
  if (candidates.size() >= fewestFiles) return std::nullopt;
  return L("The folder contains fewer than three DNG files");
}

}  // namespace tessaly::CalibrationStart
