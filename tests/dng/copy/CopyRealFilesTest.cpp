// Copies of real cameras' files before the same witnesses.
#include "dng/copy/CopyWitness.h"
#include "support/RealFiles.h"

namespace tessaly {
namespace {

using testing::IsEmpty;
using tests::CopyWitness;
using tests::readBytes;
using tests::Samples;

using Path = std::filesystem::path;

// Which real files are read at all is what the reader's tests are about.
std::vector<Path> readableRealFiles() {
  std::vector<Path> files = tests::realFiles("accept");
  std::erase_if(files, [](const Path& file) {
    try {
      static_cast<void>(DNGReader::readMetadata(file));
      return false;
    } catch (const DNGError&) {
      return true;
    }
  });
  return files;
}

TEST_F(CopyWitness, FindsTheSameTagsInCopiesOfRealFiles) {
  const std::vector<Path> files = readableRealFiles();
  ASSERT_FALSE(files.empty());
  for (const Path& file : files) {
    source = file;
    Samples samples = samplesOf(file);
    destination = folder / "unchanged" / file.filename();
    copy(samples);
    EXPECT_TRUE(readBytes(destination) == readBytes(source)) << file;
    samples[samples.size() / 2] ^= 1;
    samples.back() ^= 1;
    destination = folder / "changed" / file.filename();
    copy(samples);
    EXPECT_EQ(samplesOf(destination), samples) << file;
    EXPECT_THAT(changedTags(), IsEmpty()) << file;
    expectNoNewComplaints();
  }
}

}  // namespace
}  // namespace tessaly
