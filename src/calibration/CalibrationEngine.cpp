#include "calibration/CalibrationEngine.h"

#include "calibration/CalibrationAnalysis.h"
#include "calibration/RawPreview.h"
#include "dng/DNGReader.h"
#include "platform/ParallelBands.h"

namespace tessaly::CalibrationEngine {

CalibrationResult analyze(std::vector<std::filesystem::path> urls, const CalibrationProgressHandler& progress,
                          Opinions opinions) {
  return analyzeOnThreads(std::move(urls), progress, availableThreads(), opinions);
}

std::pair<DNGMetadata, RawPreviewImage> makeInspectionPreview(const std::filesystem::path& url) {
  RawPlane plane = DNGReader::readPlane(url);
  RawPreviewImage preview = inspectionPreview(plane.samples, plane.metadata);
  return {std::move(plane.metadata), std::move(preview)};
}

}  // namespace tessaly::CalibrationEngine
