// Small files in every state of damage: cut at every length, and with every byte of their structure set to every other
// value. Each is read or refused with an error that names the file, never more. TESSALY_EXHAUSTIVE takes every value;
// without it some of them.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>

namespace tessaly::tests {
namespace {

/// Planes above this are only described: they cost seconds and show nothing that a small one does not.
constexpr std::int64_t mostSamples = 1 << 16;

/// Neighbouring and outstanding values, and bits turned over.
constexpr int somePatterns[] = {0x01, 0x02, 0x03, 0x10, 0x80, 0xFF};

bool takesEveryValue() {
  return ::getenv("TESSALY_EXHAUSTIVE") != nullptr;
}

std::filesystem::path memoryFolder() {
  return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
}

struct Shape {
  const char* name;
  int layout;
  bool littleEndian;
};

tools::DNGBuilder fileOf(const Shape& shape) {
  std::vector<std::uint16_t> samples(std::size_t{8} * 6, 100);
  tools::DNGBuilder builder = tools::DNGBuilder().size(8, 6).bits(12).samples(samples).uniqueModel("B").serial("7");
  builder.exif(100, std::pair<std::int64_t, std::int64_t>{1, 60}).activeArea(0, 0, 6, 8).black(3);
  if (shape.layout == 1) builder.tiles(4, 4);
  if (shape.layout == 2) builder.strips(2).inSubIFD();
  if (!shape.littleEndian) builder.bigEndian();
  return builder;
}

class Exhaustive : public testing::TestWithParam<Shape> {
 protected:
  void SetUp() override { tools::writeBytes(path, whole); }

  /// Whether the file is accepted; any error but one that names it fails the test.
  [[nodiscard]] bool isAccepted() const {
    try {
      const DNGMetadata metadata = DNGReader::readMetadata(path);
      if (metadata.pixelCount() > mostSamples || DNGReader::supportReason(metadata)) return true;
      const RawSamples samples = DNGReader::readRaw(path, metadata);
      EXPECT_EQ(static_cast<std::int64_t>(samples.size()), metadata.pixelCount());
      return true;
    } catch (const DNGError& error) {
      EXPECT_EQ(error.kind(), DNGError::Case::file);
      EXPECT_EQ(error.message(), "damaged.dng");
      return false;
    }
  }

  const TemporaryFolder folder{memoryFolder()};
  const std::filesystem::path path = folder / "damaged.dng";
  const std::vector<std::byte> whole = fileOf(GetParam()).build();
};

TEST_P(Exhaustive, FilesCutAtEveryLengthAreReadOrRefused) {
  EXPECT_TRUE(isAccepted());
  for (std::size_t length = whole.size(); length-- > 0;) {
    std::filesystem::resize_file(path, length);
    EXPECT_FALSE(isAccepted()) << length;
  }
}

TEST_P(Exhaustive, FilesWithAnyByteOfTheirStructureChangedAreReadOrRefused) {
  const std::vector<std::int64_t> segments = fileOf(GetParam()).segmentOffsets();
  const auto end = static_cast<std::size_t>(*std::min_element(segments.begin(), segments.end()));
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  std::int64_t accepted = 0;
  std::int64_t refused = 0;
  const auto tryByte = [&](std::size_t at, int pattern) {
    const std::byte changed = whole[at] ^ static_cast<std::byte>(pattern);
    ASSERT_EQ(::pwrite(file, &changed, 1, static_cast<off_t>(at)), 1);
    ++(isAccepted() ? accepted : refused);
  };
  for (std::size_t at = 0; at < end; ++at) {
    for (int pattern = 1; takesEveryValue() && pattern < 256; ++pattern)
      tryByte(at, pattern);
    for (const int pattern : somePatterns)
      tryByte(at, pattern);
    ASSERT_EQ(::pwrite(file, &whole[at], 1, static_cast<off_t>(at)), 1);
  }
  ::close(file);
  EXPECT_GT(accepted, 0);
  EXPECT_GT(refused, 0);
  RecordProperty("accepted", std::to_string(accepted));
  RecordProperty("refused", std::to_string(refused));
}

INSTANTIATE_TEST_SUITE_P(Each, Exhaustive,
                         testing::Values(Shape{"Strip", 0, true}, Shape{"StripBigEndian", 0, false},
                                         Shape{"Tiles", 1, true}, Shape{"TilesBigEndian", 1, false},
                                         Shape{"SubIFD", 2, true}, Shape{"SubIFDBigEndian", 2, false}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace tessaly::tests
