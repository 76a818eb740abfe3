// A batch over the photographs of a real camera.
#include "batch/BatchFolders.h"
#include "batch/BatchProcessor.h"
#include "dng/DNGReader.h"
#include "support/RealFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tessaly {
namespace {

using tests::BatchFolders;
using tests::readBytes;

CameraProfile withOnePixel(const std::filesystem::path& file) {
  CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(file));
  DefectPixel pixel;
  pixel.x = 6;
  pixel.y = 5;
  profile.pixels = {pixel};
  return profile;
}

/// The number of positions at which two byte sequences of one length differ.
std::size_t differences(const std::vector<std::byte>& left, const std::vector<std::byte>& right) {
  EXPECT_EQ(left.size(), right.size());
  std::size_t count = 0;
  for (std::size_t index = 0; index < std::min(left.size(), right.size()); ++index)
    count += left[index] != right[index] ? 1 : 0;
  return count;
}

TEST(BatchRealFiles, RepairsASeriesInTheOrderOfAFileBrowser) {
  const BatchFolders folders;
  const std::filesystem::path series = tests::realFilesFolder / "series";
  const BatchSummary summary = BatchProcessor().processFolder(
      series, {.outputFolder = folders.output, .profile = withOnePixel(series / "IMG_1.dng")});
  EXPECT_EQ(summary.succeeded, 14);
  const tests::Names rows = tests::lines(tests::readText(*summary.logURL));
  for (int number = 1; number <= 14; ++number) {
    const std::string name = "IMG_" + std::to_string(number) + ".dng";
    EXPECT_EQ(rows.at(static_cast<std::size_t>(number)), "\"" + name + "\",Success,1,\"\"");
    EXPECT_LE(differences(readBytes(series / name), readBytes(folders.output / name)), 2U)
        << "more than the two bytes of the one sample";
  }
}

}  // namespace
}  // namespace tessaly
