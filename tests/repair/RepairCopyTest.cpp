#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/DNGWriter.h"
#include "repair/RepairCopy.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <random>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::Call;
using tests::readBytes;
using tests::readText;
using tests::writeText;
using tools::DNGBuilder;

using Path = std::filesystem::path;
using Samples = std::vector<std::uint16_t>;

DefectPixel pixelAt(std::int64_t x, std::int64_t y) {
  DefectPixel pixel;
  pixel.x = x;
  pixel.y = y;
  return pixel;
}

DefectLine lineAt(std::int64_t x, std::int64_t yStart, std::int64_t yEnd, std::int64_t width = 1) {
  DefectLine line;
  line.x = x;
  line.yStart = yStart;
  line.yEnd = yEnd;
  line.width = width;
  return line;
}

DefectSpot spotAt(std::int64_t x, std::int64_t y, std::int64_t radius) {
  DefectSpot spot;
  spot.x = x;
  spot.y = y;
  spot.radiusX = spot.radiusY = radius;
  return spot;
}

// A smooth slope, so that a rebuilt sample is known.
Samples slope(std::int64_t width, std::int64_t height) {
  Samples samples;
  for (std::int64_t y = 0; y < height; ++y) {
    for (std::int64_t x = 0; x < width; ++x)
      samples.push_back(static_cast<std::uint16_t>(100 + 10 * x));
  }
  return samples;
}

class RepairCopy : public testing::Test {
 protected:
  static constexpr std::int64_t width = 40;
  static constexpr std::int64_t height = 30;

  RepairCopy() {
    Samples damaged = slope(width, height);
    damaged[10 * width + 20] = 4000;
    makeSource(builder().samples(damaged));
    profile.pixels = {pixelAt(20, 10)};
  }

  [[nodiscard]] static DNGBuilder builder() { return DNGBuilder().size(width, height).bits(12).serial("1"); }

  void makeSource(const DNGBuilder& from) {
    from.write(source);
    profile = CameraProfile::empty("Body", DNGReader::readMetadata(source));
  }

  DNGWriteResult repair() { return DNGWriter::repairCopy(source, destination, profile, workspace, system); }

  std::string failure() {
    try {
      repair();
      return "";
    } catch (const DNGError& error) {
      EXPECT_EQ(error.kind(), DNGError::Case::file);
      return error.what();
    }
  }

  [[nodiscard]] std::vector<Path> filesBesideTheSource() const {
    std::vector<Path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
      if (entry.is_regular_file() && entry.path() != source) files.push_back(entry.path().filename());
    }
    return files;
  }

  [[nodiscard]] static Samples samplesOf(const Path& file) {
    const RawPlane plane = DNGReader::readPlane(file);
    return {plane.samples.begin(), plane.samples.end()};
  }

  tests::TemporaryFolder folder;
  Path source = folder / "source.dng";
  Path destination = folder / "out" / "copy.dng";
  CameraProfile profile;
  RepairWorkspace workspace;
  tests::FailingFileSystem system;
};

TEST_F(RepairCopy, RebuildsTheDefectsAndReportsThem) {
  const DNGWriteResult result = repair();
  EXPECT_EQ(result.destination, destination);
  EXPECT_EQ(result.report, (RepairReport{1, 1, 0, 0}));
  EXPECT_EQ(result.sourceBytes, static_cast<std::int64_t>(file_size(source)));
  EXPECT_EQ(samplesOf(destination), slope(width, height));
}

TEST_F(RepairCopy, ChangesNothingButTheDefects) {
  repair();
  EXPECT_TRUE(readBytes(destination) == builder().samples(slope(width, height)).build());
}

TEST_F(RepairCopy, IsTheSourceByteForByteWithoutDefects) {
  profile.pixels.clear();
  EXPECT_EQ(repair().report, RepairReport());
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_F(RepairCopy, ReencodesOneStripWithATableEvenWithoutDefects) {
  makeSource(builder().bits(8).linearization({0, 7, 3}).white(60000).samples(Samples(width * height, 2)));
  repair();
  EXPECT_EQ(DNGReader::readMetadata(destination).bitsPerSample, 16);
  EXPECT_EQ(samplesOf(destination), Samples(width * height, 3));
}

TEST_F(RepairCopy, CannotTakeTheWayBackThroughATableThatRisesAndFallsEvenWithoutDefects) {
  makeSource(builder().bits(8).strips(4).linearization({0, 7, 3}).white(60000));
  EXPECT_EQ(failure(), "source.dng: Unsupported DNG: Inverse nonmonotonic LinearizationTable");
  EXPECT_THAT(filesBesideTheSource(), IsEmpty());
}

TEST_F(RepairCopy, WorksWithoutAWorkspaceOfTheCallers) {
  const DNGWriteResult result = DNGWriter::repairCopy(source, destination, profile);
  EXPECT_EQ(result.report.changedSamples, 1);
  EXPECT_EQ(samplesOf(destination), slope(width, height));
}

TEST_F(RepairCopy, NamesTheSourceInEveryFailure) {
  source = folder / "missing.dng";
  EXPECT_EQ(failure(), "missing.dng: Unable to read: No such file or directory");
  source = folder / "text.dng";
  writeText(source, "some text");
  EXPECT_EQ(failure(), "text.dng: Invalid DNG structure: TIFF byte order");
  source = folder.path();
  EXPECT_THAT(failure(), testing::EndsWith(": Invalid DNG structure: DNG size limit (2 GB)"));
}

TEST_F(RepairCopy, DoesNotOpenACamerasOwnRawFormat) {
  source = folder / "missing.NEF";
  EXPECT_EQ(failure(), "missing.NEF: Unsupported DNG: Proprietary RAW");
}

TEST_F(RepairCopy, NamesTheTemporaryFileWhenItCannotBeReadBack) {
  system.before(Call::dropCache, [](const Path& copy) { resize_file(copy, 7); });
  const std::string failed = failure();
  EXPECT_EQ(failed, system.created().filename().string() + ": Invalid DNG structure: DNG size limit (2 GB)");
  EXPECT_THAT(filesBesideTheSource(), IsEmpty());
}

TEST_F(RepairCopy, NamesTheSourceWhenTheCopyReadsBackWrong) {
  system.before(Call::dropCache, [](const Path& copy) { DNGBuilder().size(width, height).bits(12).write(copy); });
  EXPECT_EQ(failure(), "source.dng: Invalid DNG structure: Writer re-read verification failed");
  EXPECT_THAT(filesBesideTheSource(), IsEmpty());
}

TEST_F(RepairCopy, PassesTheSystemsWordsOn) {
  system.fail(Call::writeAt, ENOSPC);
  system.fail(Call::copyRange, ENOSPC);
  EXPECT_EQ(failure(), "source.dng: Unable to read: No space left on device");
  EXPECT_THAT(filesBesideTheSource(), IsEmpty());
}

// What does not fit costs its metadata only: the samples here could not even be read.
TEST_F(RepairCopy, MatchesTheProfileBeforeItReadsSamples) {
  makeSource(builder().bits(8).linearization({0, 7}).samples(Samples(width * height, 200)));
  EXPECT_EQ(failure(), "source.dng: Invalid DNG structure: Sample exceeds LinearizationTable");
  profile.cameraModel = "Another";
  EXPECT_EQ(failure(),
            "source.dng: Camera profile mismatch: Profile camera: Another; file camera: Tessaly Test Camera");
}

TEST_F(RepairCopy, SaysThatAFileIsCompressedBeforeItMatchesTheProfile) {
  makeSource(builder().rawTag(259, {3, {7}}));
  profile.cameraModel = "Another";
  EXPECT_EQ(failure(), "source.dng: Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet");
}

TEST_F(RepairCopy, LooksAtTheDestinationOnlyWhenThereIsSomethingToWrite) {
  create_directory(folder / "out");
  writeText(destination, "somebody else's");
  EXPECT_EQ(failure(), "source.dng: Invalid DNG structure: Output exists or equals source");
  profile.cameraSerial = "2";
  EXPECT_EQ(failure(), "source.dng: Camera profile mismatch: Camera serial differs or is missing");
  EXPECT_EQ(readText(destination), "somebody else's");
}

TEST_F(RepairCopy, RefusesToReplaceItsSource) {
  destination = folder.path() / "." / "source.dng";
  EXPECT_EQ(failure(), "source.dng: Invalid DNG structure: Output exists or equals source");
}

TEST_F(RepairCopy, DoesNotKnowTheSizeOfASourceThatIsGone) {
  system.before(Call::synchronizeFolder, [this](const Path&) { remove(source); });
  EXPECT_EQ(repair().sourceBytes, 0);
  EXPECT_TRUE(exists(destination));
}

// The file that was opened is the one that is repaired, whatever takes its name meanwhile.
TEST_F(RepairCopy, NeverMixesTwoFiles) {
  system.before(Call::createFolders, [this](const Path&) {
    remove(source);
    builder().samples(Samples(width * height, 9)).write(source);
  });
  repair();
  EXPECT_EQ(samplesOf(destination), slope(width, height));
}

TEST_F(RepairCopy, FailsCleanlyWhenTheSourceShrinksMeanwhile) {
  system.before(Call::createFolders, [this](const Path&) { resize_file(source, file_size(source) - 100); });
  EXPECT_THAT(failure(), testing::StartsWith("source.dng: Incomplete DNG file: "));
  EXPECT_THAT(filesBesideTheSource(), IsEmpty());
}

// The short way of the chain and the long way of its steps, over forms and profiles made by chance.
class RepairCopyForms : public RepairCopy, public testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] DNGBuilder randomSource() {
    static constexpr int depths[] = {8, 10, 12, 14, 16};
    const int bits = depths[next(5)];
    DNGBuilder from = DNGBuilder().size(width, height).bits(bits).fillOrder(1 + next(2)).paddingByte(0x5A);
    if (next(2) == 0) from.bigEndian();
    if (next(2) == 0) from.inSubIFD();
    if (next(3) == 0) from.strips(1 + next(height));
    if (next(3) == 0) from.tiles(1 + next(50), 1 + next(40));
    if (next(3) == 0) from.linear();
    if (next(4) == 0) from.linearization(randomTable(1 << bits)).white(65535);
    Samples samples;
    for (std::int64_t i = 0; i < width * height; ++i)
      samples.push_back(static_cast<std::uint16_t>(next(1 << bits)));
    return from.samples(samples);
  }

  [[nodiscard]] Samples randomTable(int size) {
    Samples table;
    for (int code = 0; code < size; ++code)
      table.push_back(static_cast<std::uint16_t>(next(65536)));
    std::sort(table.begin(), table.end());
    return table;
  }

  void addRandomDefects() {
    for (int i = next(20); i > 0; --i)
      profile.pixels.push_back(pixelAt(next(width), next(height)));
    for (int i = next(3); i > 0; --i)
      profile.lines.push_back(lineAt(next(width - 3), next(height / 2), height / 2 + next(height / 2), 1 + next(3)));
    for (int i = next(3); i > 0; --i)
      profile.spots->push_back(spotAt(8 + next(width - 16), 8 + next(height - 16), 1 + next(7)));
  }

  void repairStepByStep(const Path& copy) const {
    RawPlane plane = DNGReader::readPlane(source);
    RepairEngine::repair(plane.samples, plane.metadata, profile);
    DNGWriter::writeCopy(source, copy, plane.samples, false, std::nullopt);
  }

  int next(std::int64_t below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }

  std::mt19937 random{static_cast<unsigned>(GetParam())};
};

TEST_P(RepairCopyForms, GiveTheSameBytesByTheShortWayAndTheLong) {
  for (int file = 0; file < 10; ++file) {
    makeSource(randomSource());
    addRandomDefects();
    destination = folder / ("short" + std::to_string(file));
    const Path other = folder / ("long" + std::to_string(file));
    repair();  // with the memory that the file before has left
    repairStepByStep(other);
    ASSERT_TRUE(readBytes(destination) == readBytes(other)) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Random, RepairCopyForms, testing::Range(0, 12));

TEST_F(RepairCopy, ForgetsTheProfileOfTheFileBefore) {
  repair();
  profile.pixels = {pixelAt(5, 5), pixelAt(6, 6)};
  destination = folder / "second.dng";
  EXPECT_EQ(repair().report.changedSamples, 2);
  EXPECT_EQ(samplesOf(destination)[10 * width + 20], 4000);
}

}  // namespace
}  // namespace tessaly
