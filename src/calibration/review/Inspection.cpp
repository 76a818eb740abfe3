#include "calibration/review/Inspection.h"

#include "calibration/CalibrationEngine.h"
#include "calibration/review/InvalidInput.h"
#include "dng/DNGReader.h"

namespace tessaly {

RawPreviewImage inspectionOf(const std::filesystem::path& photograph, const DNGMetadata& calibrated) {
  if (!DNGReader::readMetadata(photograph).isGeometryCompatible(calibrated))
    throw InvalidInput("The problem DNG does not match the calibration camera or sensor dimensions");
  return CalibrationEngine::makeInspectionPreview(photograph).second;
}

}  // namespace tessaly
