// Batches with the real repair of each file.
#include "batch/BatchFolders.h"
#include "batch/BatchProcessor.h"
#include "dng/DNGReader.h"
#include "localization/Localization.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::BatchFolders;
using tests::lines;
using tests::namesIn;
using tests::readBytes;
using tests::readText;
using tests::writeText;
using tools::DNGBuilder;

const std::string helpLine =
    " For help, email support@tessaly.example with your camera model and we'll look at adding support.";

/// A photograph of 16 × 12 samples of one value with one hot pixel at (6, 5).
DNGBuilder photograph(std::uint16_t value) {
  std::vector<std::uint16_t> samples(16 * 12, value);
  samples[5 * 16 + 6] = 60'000;
  return DNGBuilder().size(16, 12).samples(std::move(samples));
}

/// The profile that knows the hot pixel of the photographs.
CameraProfile profileOf(const std::filesystem::path& file) {
  CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(file));
  DefectPixel pixel;
  pixel.x = 6;
  pixel.y = 5;
  profile.pixels.push_back(pixel);
  return profile;
}

constexpr std::array<std::uint16_t, 3> values{1000, 2000, 3000};

BatchSummary run(const BatchFolders& folders, const CameraProfile& profile, std::int64_t workers = 1) {
  return BatchProcessor().processFolder(folders.input,
                                        {.outputFolder = folders.output, .profile = profile, .workers = workers});
}

TEST(BatchRepair, RebuildsTheDefectsOfEveryFileAndLeavesOriginalsAlone) {
  const BatchFolders folders;
  for (const std::uint16_t value : values)
    photograph(value).write(folders.input / (std::to_string(value) + ".dng"));
  const auto original = readBytes(folders.input / "2000.dng");

  const BatchSummary summary = run(folders, profileOf(folders.input / "1000.dng"), 2);
  EXPECT_EQ(summary.succeeded, 3);
  for (const std::uint16_t value : values) {
    const RawPlane plane = DNGReader::readPlane(folders.output / (std::to_string(value) + ".dng"));
    EXPECT_THAT(plane.samples, testing::Each(value));
  }
  EXPECT_EQ(readBytes(folders.input / "2000.dng"), original);
}

TEST(BatchRepair, ListsProprietaryFilesAndRefusesThemWithTheirMessage) {
  const BatchFolders folders({"c.NEF"});
  photograph(1000).write(folders.input / "a.DNG");
  photograph(2000).write(folders.input / "b.dng");
  std::filesystem::create_directory(folders.input / "sub");
  photograph(3000).write(folders.input / "sub/x.dng");

  const BatchSummary summary = run(folders, profileOf(folders.input / "a.DNG"));
  const std::string message =
      "c.NEF: This camera RAW format is not supported yet. Support for converted files is planned. Adobe DNG Converter "
      "defaults to lossless JPEG, which Tessaly cannot read yet; conversion is not a supported workaround." +
      helpLine;
  EXPECT_EQ(summary.total, 3);
  EXPECT_EQ(summary.succeeded, 2);
  EXPECT_THAT(summary.failures, ElementsAre(BatchFailure{"c.NEF", message}));
  EXPECT_THAT(lines(readText(*summary.logURL)),
              ElementsAre("File,Status,Repaired Samples,Details", "\"a.DNG\",Success,1,\"\"",
                          "\"b.dng\",Success,1,\"\"", "\"c.NEF\",Failed,0,\"" + message + "\""));
  EXPECT_THAT(namesIn(folders.output), ElementsAre(summary.logURL->filename().native(), "a.DNG", "b.dng"));
}

TEST(BatchRepair, RefusesFilesOfAnotherCamera) {
  const BatchFolders folders;
  photograph(1000).write(folders.input / "a.dng");
  photograph(1000).uniqueModel("Other Camera").write(folders.input / "b.dng");
  const BatchSummary summary = run(folders, profileOf(folders.input / "a.dng"));
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_THAT(summary.failures,
              ElementsAre(BatchFailure{"b.dng", Localization::rejectionMessage(RejectionReason::mismatch, "b.dng")}));
  EXPECT_FALSE(std::filesystem::exists(folders.output / "b.dng"));
}

TEST(BatchRepair, NeverTakesEarlierResultsInTheDefaultFolderForSources) {
  BatchFolders folders;
  folders.output = folders.input / "Tessaly Results";
  photograph(1000).write(folders.input / "a.dng");
  const CameraProfile profile = profileOf(folders.input / "a.dng");
  EXPECT_EQ(run(folders, profile).succeeded, 1);
  const BatchSummary again = run(folders, profile);
  EXPECT_EQ(again.total, 1);
  EXPECT_EQ(again.skipped, 1);
}

TEST(BatchRepair, ReusesAWorkersMemoryForFilesOfDifferentSizes) {
  const BatchFolders folders;
  // Another size means another sensor, so that only files of the profile's size succeed, between larger and smaller.
  for (int number = 0; number < 9; ++number) {
    const std::string name = "a" + std::to_string(number) + ".dng";
    const int scale = number % 3;  // 0: the profile's size
    if (scale == 0) photograph(static_cast<std::uint16_t>(1000 + number)).write(folders.input / name);
    if (scale == 1) DNGBuilder().size(200, 100).write(folders.input / name);
    if (scale == 2) DNGBuilder().size(8, 6).write(folders.input / name);
  }
  const BatchSummary summary = run(folders, profileOf(folders.input / "a0.dng"));
  EXPECT_EQ(summary.succeeded, 3);
  EXPECT_EQ(summary.failed, 6);
  for (const int number : {0, 3, 6}) {
    const RawPlane plane = DNGReader::readPlane(folders.output / ("a" + std::to_string(number) + ".dng"));
    EXPECT_THAT(plane.samples, testing::Each(1000 + number));
  }
}

TEST(BatchRepair, OpensAListedFileWhateverItsExtension) {
  const BatchFolders folders;
  photograph(1000).write(folders.input / "a.tif");
  const std::filesystem::path file = folders.input / "a.tif";
  const BatchSummary summary =
      BatchProcessor().processFiles({file}, {.outputFolder = folders.output, .profile = profileOf(file)});
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_TRUE(std::filesystem::exists(folders.output / "a.tif"));
}

}  // namespace
}  // namespace tessaly
