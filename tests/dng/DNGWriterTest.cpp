#include "dng/DNGWriter.h"
#include "dng/WriterFixture.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <cmath>
#include <limits>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::readBytes;
using tests::readText;
using tests::Samples;
using tests::writeText;
using tools::DNGBuilder;

constexpr auto exists = "Invalid DNG structure: Output exists or equals source";

class DNGWriterTest : public tests::WriterFixture {
 protected:
  DNGWriterTest() {
    makeSource(DNGBuilder().size(8, 6).exif(100, {{1, 60}}));
    samples = Samples(48, 7);
  }

  std::string failure(std::optional<double> exposure = std::nullopt) {
    return failureOf([&] { copy(samples, false, exposure); });
  }

  std::string failureTo(const std::filesystem::path& path) {
    destination = path;
    return failure();
  }

  Samples samples;
};

TEST_F(DNGWriterTest, WritesTheSamplesAndNothingBesideTheCopy) {
  EXPECT_EQ(failure(), "");
  EXPECT_EQ(samplesOf(destination), samples);
  EXPECT_THAT(namesBesideTheCopy(), ElementsAre("copy.dng"));
}

TEST_F(DNGWriterTest, OnlyReadsTheSource) {
  const auto before = readBytes(source);
  permissions(source, std::filesystem::perms::owner_read);
  EXPECT_EQ(failure(), "");
  EXPECT_EQ(readBytes(source), before);
}

TEST_F(DNGWriterTest, RefusesAnExposureOutOfRange) {
  const std::string refused = "Invalid DNG structure: Synthetic exposure range";
  EXPECT_EQ(failure(-0.001), refused);
  EXPECT_EQ(failure(std::nextafter(4000.0, 5000.0)), refused);
  EXPECT_EQ(failure(std::numeric_limits<double>::infinity()), refused);
  EXPECT_EQ(failure(std::numeric_limits<double>::quiet_NaN()), refused);
  EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
}

TEST_F(DNGWriterTest, AcceptsAnExposureAtBothEnds) {
  EXPECT_EQ(failure(0.0), "");
  destination = folder / "out" / "long.dng";
  EXPECT_EQ(failure(4000.0), "");
}

TEST_F(DNGWriterTest, LooksAtTheExposureBeforeTheDestination) {
  destination = source;
  EXPECT_EQ(failure(-1.0), "Invalid DNG structure: Synthetic exposure range");
}

TEST_F(DNGWriterTest, RefusesTheSourceItselfHoweverItIsSpelled) {
  EXPECT_EQ(failureTo(source), exists);
  EXPECT_EQ(failureTo(folder.path() / "." / "source.dng"), exists);
  EXPECT_EQ(failureTo(folder.path() / "none" / ".." / "source.dng"), exists);
  EXPECT_EQ(failureTo(folder.path().string() + "//source.dng"), exists);
  EXPECT_EQ(failureTo(source.string() + "/"), exists);
}

TEST_F(DNGWriterTest, RefusesTheSourceBeforeAnythingIsRead) {
  source = folder / "missing.dng";
  EXPECT_EQ(failureTo(folder.path() / "x" / ".." / "missing.dng"), exists);
}

TEST_F(DNGWriterTest, ComparesRelativePathsWithAbsoluteOnes) {
  const auto old = std::filesystem::current_path();
  current_path(folder.path());
  source = folder / "missing.dng";
  EXPECT_EQ(failureTo("missing.dng"), exists);
  EXPECT_EQ(failureTo("./missing.dng"), exists);
  current_path(old);
}

TEST_F(DNGWriterTest, LeavesAFileThatExistsAlone) {
  writeText(folder / "taken.dng", "somebody else's");
  EXPECT_EQ(failureTo(folder / "taken.dng"), exists);
  EXPECT_EQ(readText(folder / "taken.dng"), "somebody else's");
}

TEST_F(DNGWriterTest, RefusesADanglingLinkAFolderAndAnotherNameOfTheSource) {
  create_symlink(folder / "nowhere", folder / "dangling.dng");
  create_directory(folder / "folder.dng");
  create_hard_link(source, folder / "hard.dng");
  EXPECT_EQ(failureTo(folder / "dangling.dng"), exists);
  EXPECT_EQ(failureTo(folder / "folder.dng"), exists);
  EXPECT_EQ(failureTo(folder / "hard.dng"), exists);
}

TEST_F(DNGWriterTest, LooksAtTheDestinationBeforeTheSource) {
  source = folder / "missing.dng";
  writeText(folder / "taken.dng", "");
  EXPECT_EQ(failureTo(folder / "taken.dng"), exists);
}

TEST_F(DNGWriterTest, PassesOnWhyTheSourceCannotBeOpened) {
  source = folder / "missing.dng";
  EXPECT_EQ(failure(), "No such file or directory");
  EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
}

TEST_F(DNGWriterTest, RefusesASourceThatTheReaderRefuses) {
  writeText(source, "no TIFF file");
  EXPECT_EQ(failure(), "Invalid DNG structure: TIFF byte order");
  makeSource(DNGBuilder().rawTag(277, {3, {3}}));
  EXPECT_EQ(failure(), "source.dng: Unsupported DNG: Multiple raw samples per pixel");
  source = folder / "source.NEF";
  makeSource(DNGBuilder());
  EXPECT_EQ(failure(), "source.NEF: Unsupported DNG: Proprietary RAW");
  EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
}

TEST_F(DNGWriterTest, NeedsExactlyAsManySamplesAsTheImageHas) {
  const std::string refused = "Invalid DNG structure: Raw sample count/descriptor";
  samples.pop_back();
  EXPECT_EQ(failure(), refused);
  samples.resize(49);
  EXPECT_EQ(failure(), refused);
  samples.clear();
  EXPECT_EQ(failure(), refused);
  EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
}

TEST_F(DNGWriterTest, CannotWriteIntoACompressedImage) {
  makeSource(DNGBuilder().size(8, 6).rawTag(259, {3, {7}}));
  EXPECT_EQ(failure(), "Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet");
}

TEST_F(DNGWriterTest, RefusesASampleThatTheDepthCannotHold) {
  makeSource(DNGBuilder().size(8, 6).bits(12));
  samples[47] = 4095;
  EXPECT_EQ(failure(), "");
  samples[47] = 4096;
  destination = folder / "other" / "copy.dng";
  EXPECT_EQ(failure(), "Invalid DNG structure: Sample exceeds source bit depth");
  EXPECT_FALSE(std::filesystem::exists(folder / "other"));
}

TEST_F(DNGWriterTest, MakesTheFolderWithTheFoldersAboveIt) {
  EXPECT_EQ(failureTo(folder / "a" / "b" / "c" / "copy.dng"), "");
  EXPECT_TRUE(is_regular_file(destination));
}

TEST_F(DNGWriterTest, PassesOnThatAFolderCannotBeMade) {
  writeText(folder / "file", "");
  EXPECT_EQ(failureTo(folder / "file" / "copy.dng"), "Not a directory");
}

TEST_F(DNGWriterTest, WritesToABareNameInTheWorkingFolder) {
  const auto old = std::filesystem::current_path();
  current_path(folder.path());
  EXPECT_EQ(failureTo("bare.dng"), "");
  current_path(old);
  EXPECT_EQ(samplesOf(folder / "bare.dng"), samples);
}

TEST_F(DNGWriterTest, TakesATrailingSlashForAFileName) {
  EXPECT_EQ(failureTo((folder / "out" / "copy.dng").string() + "/"), "");
  EXPECT_TRUE(is_regular_file(folder / "out" / "copy.dng"));
}

mode_t modeOf(const std::filesystem::path& file) {
  struct stat status {};
  return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST_F(DNGWriterTest, GivesTheCopyThePermissionBitsOfItsOriginal) {
  for (const mode_t mode : {0600U, 0644U, 0400U, 0664U, 04755U}) {
    ASSERT_EQ(::chmod(source.c_str(), mode), 0);
    const mode_t old = umask(mode == 0600U ? 0 : 077);
    EXPECT_EQ(failure(), "");
    umask(old);
    EXPECT_EQ(modeOf(destination), mode & 0777);
    remove(destination);
  }
}

TEST_F(DNGWriterTest, GivesTheCopyTheUsersAttributesOfItsOriginal) {
  const std::string rating = "5 stars";
  if (::setxattr(source.c_str(), "user.rating", rating.data(), rating.size(), 0) != 0)
    GTEST_SKIP() << "no extended attributes here";
  ASSERT_EQ(::setxattr(source.c_str(), "user.empty", "", 0, 0), 0);
  permissions(source, std::filesystem::perms::owner_read);
  EXPECT_EQ(failure(), "");
  std::array<char, 32> value{};
  const ssize_t length = ::getxattr(destination.c_str(), "user.rating", value.data(), value.size());
  ASSERT_GE(length, 0);
  EXPECT_EQ(std::string(value.data(), static_cast<std::size_t>(length)), rating);
  EXPECT_EQ(::getxattr(destination.c_str(), "user.empty", value.data(), value.size()), 0);
}

TEST_F(DNGWriterTest, WorksWithNamesThatAreNotUTF8) {
  source = folder / "s\xFF.dng";
  makeSource(DNGBuilder().size(8, 6));
  EXPECT_EQ(failureTo(folder / "copy\xFE.dng"), "");
  EXPECT_EQ(samplesOf(destination), samples);
}

}  // namespace
}  // namespace tessaly
