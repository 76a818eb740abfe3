// CalibrationEngine::analyze with the number of threads chosen, which only changes how long it takes.
#pragma once

#include "calibration/CalibrationEngine.h"
#include "calibration/CalibrationRecords.h"

#include <filesystem>
#include <vector>

namespace tessaly::CalibrationEngine {

[[nodiscard]] CalibrationResult analyzeOnThreads(std::vector<std::filesystem::path> urls,
                                                 const CalibrationProgressHandler& progress, int threads,
                                                 Opinions opinions = Opinions::documented);

}  // namespace tessaly::CalibrationEngine
