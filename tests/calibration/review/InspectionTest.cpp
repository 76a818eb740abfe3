#include "calibration/CalibrationEngine.h"
#include "calibration/FrameFolder.h"
#include "calibration/review/Inspection.h"
#include "calibration/review/InvalidInput.h"
#include "dng/DNGError.h"
#include "dng/DNGReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

namespace tessaly {
namespace {

using tests::FrameFolder;

const tests::FrameExposure exposure{100, std::pair{1, 125}};

TEST(Inspection, ShowsAPhotographOfTheCalibratedSensor) {
  FrameFolder folder;
  const std::filesystem::path file = folder.add("a.dng", FrameFolder::brightLevel, exposure).path("a.dng");
  const RawPreviewImage preview = inspectionOf(file, DNGReader::readMetadata(file));
  EXPECT_EQ(preview, CalibrationEngine::makeInspectionPreview(file).second);
}

TEST(Inspection, RefusesAPhotographOfOtherDimensions) {
  FrameFolder folder;
  FrameFolder other(300, 220);
  folder.add("a.dng", FrameFolder::brightLevel, exposure);
  other.add("b.dng", FrameFolder::brightLevel, exposure);
  const DNGMetadata calibrated = DNGReader::readMetadata(folder.path("a.dng"));
  try {
    static_cast<void>(inspectionOf(other.path("b.dng"), calibrated));
    FAIL() << "not refused";
  } catch (const InvalidInput& refusal) {
    EXPECT_STREQ(refusal.what(), "The problem DNG does not match the calibration camera or sensor dimensions");
  }
}

TEST(Inspection, SaysWhyAPhotographCannotBeRead) {
  EXPECT_THROW(static_cast<void>(inspectionOf("/no/such/photo.dng", DNGMetadata())), DNGError);
}

}  // namespace
}  // namespace tessaly
