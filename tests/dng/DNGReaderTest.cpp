#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/metadata/MetadataFixture.h"
#include "support/FileBytes.h"

#include <sys/stat.h>

#include <numeric>

namespace tessaly::tests {
namespace {

class DNGReaderTest : public MetadataFixture {
 protected:
  [[nodiscard]] std::vector<std::uint16_t> samples(const DNGBuilder& builder) const {
    builder.write(path());
    const RawPlane plane = DNGReader::readPlane(path());
    return {plane.samples.begin(), plane.samples.end()};
  }

  [[nodiscard]] std::string refusalOfSamples(const DNGBuilder& builder) const {
    return refusalOf([&] { return samples(builder); });
  }

  // What reading the samples of `second` says where the metadata is that of `first`.
  [[nodiscard]] std::string refusalAfterReplacing(const DNGBuilder& first, const DNGBuilder& second) const {
    const DNGMetadata metadata = read(first);
    second.write(path());
    return refusalOf([&] { return DNGReader::readRaw(path(), metadata); });
  }
};

using Samples = std::vector<std::uint16_t>;

Samples ramp(std::size_t count, unsigned limit) {
  Samples all(count);
  for (std::size_t i = 0; i < count; ++i)
    all[i] = static_cast<std::uint16_t>(i * 37 % limit);
  return all;
}

// ---- Names and context

TEST_F(DNGReaderTest, RefusesProprietaryFilesUnread) {
  for (const char* name : {"/missing/a.NEF", "/missing/a.cr3", "/missing/a.3fr", "/missing/a.b.RaW"}) {
    EXPECT_EQ(refusalOf([&] { return DNGReader::readMetadata(name); }), "Unsupported DNG: Proprietary RAW") << name;
  }
  EXPECT_EQ(refusalOf([&] { return DNGReader::readRaw("/missing/a.nef", {}); }), "Unsupported DNG: Proprietary RAW");
}

TEST_F(DNGReaderTest, Knows23ProprietaryExtensions) {
  const std::vector<std::string> extensions{"nef", "nrw", "cr2", "cr3", "crw", "orf", "arw", "srw",
                                            "raf", "rw2", "pef", "3fr", "fff", "iiq", "rwl", "mos",
                                            "x3f", "sr2", "srf", "erf", "kdc", "dcr", "raw"};
  EXPECT_EQ(extensions.size(), 23U);
  for (const std::string& extension : extensions)
    EXPECT_TRUE(DNGReader::isProprietaryExtension(extension));
  for (const char* other : {"dng", "", "tif", "jpg", "NEF", "ne"}) {
    EXPECT_FALSE(DNGReader::isProprietaryExtension(other)) << other;
  }
}

TEST_F(DNGReaderTest, OpensEveryOtherName) {
  const std::filesystem::path name = folder_ / "image.tiff";
  DNGBuilder().write(name);
  EXPECT_EQ(DNGReader::readMetadata(name).rawWidth, 8);
  std::filesystem::rename(name, folder_ / "nef");
  EXPECT_EQ(DNGReader::readMetadata(folder_ / "nef").rawWidth, 8) << "a name without an extension";
}

TEST_F(DNGReaderTest, WrapsEveryErrorWithTheFilesName) {
  const auto failure = [](const std::filesystem::path& url) {
    try {
      (void)DNGReader::readMetadata(url);
    } catch (const DNGError& error) {
      EXPECT_EQ(error.kind(), DNGError::Case::file);
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_EQ(failure("/missing/a.NEF"), "a.NEF: Unsupported DNG: Proprietary RAW");
  EXPECT_EQ(failure("/missing/a.dng"), "a.dng: Unable to read: No such file or directory");
  writeText(path(), "no TIFF at all");
  EXPECT_EQ(failure(path()), "a.dng: Invalid DNG structure: TIFF byte order");
  std::filesystem::create_directory(folder_ / "folder.dng");
  EXPECT_EQ(failure(folder_ / "folder.dng"), "folder.dng: Invalid DNG structure: DNG size limit (2 GB)");
}

TEST_F(DNGReaderTest, ReportsATIFFThatIsNoDNG) {
  EXPECT_EQ(refusal(DNGBuilder().withoutFirstTag(50706)), "Invalid DNG structure: Missing DNGVersion");
}

TEST_F(DNGReaderTest, DoesNotWaitForAFIFO) {
  ASSERT_EQ(::mkfifo((folder_ / "fifo.dng").c_str(), 0600), 0);
  EXPECT_EQ(refusalOf([&] { return DNGReader::readPlane(folder_ / "fifo.dng"); }),
            "Invalid DNG structure: DNG size limit (2 GB)");
}

// ---- Support

TEST(SupportReason, IsAboutTheCompression) {
  const auto reason = [](std::int64_t compression) {
    DNGMetadata metadata;
    metadata.compression = compression;
    return DNGReader::supportReason(metadata);
  };
  EXPECT_EQ(reason(1), std::nullopt);
  EXPECT_EQ(reason(7), "Compressed (lossless JPEG) DNG is not supported yet");
  EXPECT_EQ(reason(34892), "Lossy JPEG DNG is not supported");
  EXPECT_EQ(reason(52546), "JPEG XL DNG is not supported");
  EXPECT_EQ(reason(8), "DNG compression 8 is not supported");
  EXPECT_EQ(reason(0), "DNG compression 0 is not supported");
  EXPECT_EQ(reason(-1), "DNG compression -1 is not supported");
}

TEST_F(DNGReaderTest, ReadsNoCompressedSamples) {
  EXPECT_EQ(refusalOfSamples(DNGBuilder().rawTag(259, shorts({7}))),
            "Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet");
}

// ---- Samples

TEST_F(DNGReaderTest, ReadsEveryDepth) {
  for (const int bits : {8, 10, 12, 14, 16}) {
    const Samples all = ramp(11 * 7, 1U << static_cast<unsigned>(bits));
    EXPECT_EQ(samples(DNGBuilder().size(11, 7).bits(bits).samples(all)), all) << bits;
    EXPECT_EQ(samples(DNGBuilder().size(11, 7).bits(bits).bigEndian().inSubIFD().samples(all)), all) << bits;
    EXPECT_EQ(samples(DNGBuilder().size(11, 7).bits(bits).fillOrder(2).tiles(4, 4).samples(all)), all) << bits;
  }
}

TEST_F(DNGReaderTest, WritesNoTilePaddingAnywhere) {
  const Samples all = ramp(33 * 18, 4096);
  EXPECT_EQ(samples(DNGBuilder().size(33, 18).bits(12).tiles(16, 16).paddingByte(0xFF).samples(all)), all);
}

TEST_F(DNGReaderTest, ReadsTheShortLastStrip) {
  const Samples all = ramp(2 * 3000, 65536);
  EXPECT_EQ(samples(DNGBuilder().size(2, 3000).strips(256).samples(all)), all);
}

TEST_F(DNGReaderTest, ReadsSegmentsInAnyOrder) {
  const Samples all = ramp(40 * 30, 16384);
  EXPECT_EQ(samples(DNGBuilder().size(40, 30).bits(14).strips(7).segmentsInReverseOrder().samples(all)), all);
  EXPECT_EQ(samples(DNGBuilder().size(40, 30).bits(14).tiles(16, 16).gapBetweenSegments(5).samples(all)), all);
  EXPECT_EQ(samples(DNGBuilder().size(40, 30).bits(14).tiles(16, 16).gapBetweenSegments(9000).samples(all)), all);
}

TEST_F(DNGReaderTest, AppliesTheLinearizationTable) {
  EXPECT_EQ(samples(DNGBuilder().size(3, 1).bits(8).linearization({9, 700, 65535}).samples({2, 0, 1})),
            (Samples{65535, 9, 700}));
  EXPECT_EQ(samples(DNGBuilder().size(3, 1).linearization({9, 700, 65535}).samples({2, 0, 1})),
            (Samples{65535, 9, 700}));
}

TEST_F(DNGReaderTest, RejectsACodeBeyondTheTable) {
  const Samples table(1024, 500);
  const auto with = [&](std::uint16_t code) {
    return DNGBuilder().size(3, 1).linearization(table).samples({0, code, 0});
  };
  EXPECT_EQ(refusalOfSamples(with(1023)), "");
  EXPECT_EQ(refusalOfSamples(with(1024)), "Invalid DNG structure: Sample exceeds LinearizationTable");
  EXPECT_EQ(refusalOfSamples(with(1024).bits(12)), "Invalid DNG structure: Sample exceeds LinearizationTable");
}

TEST_F(DNGReaderTest, SubtractsNoBlack) {
  EXPECT_EQ(samples(DNGBuilder().size(2, 1).black(100).white(200).samples({50, 60'000})), (Samples{50, 60'000}));
}

TEST_F(DNGReaderTest, GivesThePlaneWithItsMetadata) {
  DNGBuilder().size(5, 4).serial("12").write(path());
  const RawPlane plane = DNGReader::readPlane(path());
  EXPECT_EQ(plane.metadata, DNGReader::readMetadata(path()));
  EXPECT_EQ(plane.samples.size(), 20U);
}

TEST_F(DNGReaderTest, FillsABufferThatWasUsedBefore) {
  RawSamples buffer(1000, 7);
  const Samples all = ramp(8 * 6, 65536);
  const DNGMetadata metadata = read(DNGBuilder().samples(all));
  const auto* const place = buffer.data();
  DNGReader::readRaw(path(), metadata, buffer);
  EXPECT_EQ(Samples(buffer.begin(), buffer.end()), all);
  EXPECT_EQ(buffer.data(), place);
}

// ---- The file between the two readings

constexpr const char* changed = "Invalid DNG structure: Raw plane geometry/body changed";

TEST_F(DNGReaderTest, RefusesAFileOfAnotherBody) {
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().serial("1"), DNGBuilder().serial("1")), "");
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().serial("1"), DNGBuilder().serial("2")), changed);
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().serial("1"), DNGBuilder()), changed);
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder(), DNGBuilder().serial("1")), changed);
}

TEST_F(DNGReaderTest, RefusesAFileOfAnotherGeometry) {
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().size(8, 6), DNGBuilder().size(8, 7)), changed);
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().size(8, 6), DNGBuilder().size(6, 8)), changed);
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().cfa("RGGB"), DNGBuilder().cfa("BGGR")), changed);
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder().cfa("RGGB"), DNGBuilder().linear()), changed);
}

TEST_F(DNGReaderTest, NoticesAReplacementBeforeItsCompression) {
  EXPECT_EQ(refusalAfterReplacing(DNGBuilder(), DNGBuilder().serial("2").rawTag(259, shorts({7}))), changed);
}

TEST_F(DNGReaderTest, DecodesTheFileAsItIsNow) {
  const Samples all = ramp(8 * 6, 4096);
  const DNGMetadata before = read(DNGBuilder());
  DNGBuilder().bits(12).strips(2).bigEndian().samples(all).write(path());
  const RawSamples now = DNGReader::readRaw(path(), before);
  EXPECT_EQ(Samples(now.begin(), now.end()), all);
}

// ---- Records without a source encoding

class WithoutSourceEncoding : public DNGReaderTest {
 protected:
  [[nodiscard]] DNGMetadata bare(const DNGBuilder& builder) const {
    DNGMetadata metadata = read(builder);
    metadata.sourceEncoding.reset();
    return metadata;
  }

  [[nodiscard]] Samples samplesOf(const DNGMetadata& metadata) const {
    const RawSamples samples = DNGReader::readRaw(path(), metadata);
    return {samples.begin(), samples.end()};
  }

  [[nodiscard]] std::string refusalOfRecord(const DNGMetadata& metadata) const {
    return refusalOf([&] { return samplesOf(metadata); });
  }
};

TEST_F(WithoutSourceEncoding, DecodesOneBlock) {
  const Samples words = ramp(8 * 6, 65536);
  EXPECT_EQ(samplesOf(bare(DNGBuilder().samples(words))), words);
  const Samples packed = ramp(8 * 6, 4096);
  EXPECT_EQ(samplesOf(bare(DNGBuilder().bits(12).samples(packed))), packed);
}

TEST_F(WithoutSourceEncoding, RequiresTheExactLength) {
  DNGMetadata metadata = bare(DNGBuilder().trailingBytes(100));
  metadata.rawByteCount = 97;
  EXPECT_EQ(refusalOfRecord(metadata), "Incomplete DNG file: Expected 96 raw-strip bytes, found 97");
  metadata.rawByteCount = -1;
  EXPECT_EQ(refusalOfRecord(metadata), "Incomplete DNG file: Expected 96 raw-strip bytes, found 0");
}

TEST_F(WithoutSourceEncoding, ReadsNoFurtherThanTheFile) {
  DNGMetadata metadata = bare(DNGBuilder());
  metadata.rawByteCount = INT64_MAX;
  metadata.rawOffset += 10;
  EXPECT_EQ(refusalOfRecord(metadata), "Incomplete DNG file: Expected 96 raw-strip bytes, found 86");
  metadata.rawOffset = UINT64_MAX;
  EXPECT_EQ(refusalOfRecord(metadata), "Incomplete DNG file: Expected 96 raw-strip bytes, found 0");
}

TEST_F(WithoutSourceEncoding, StillComparesWithTheFile) {
  DNGMetadata metadata = bare(DNGBuilder());
  metadata.rawWidth = 9;
  EXPECT_EQ(refusalOfRecord(metadata), changed);
}

}  // namespace
}  // namespace tessaly::tests
