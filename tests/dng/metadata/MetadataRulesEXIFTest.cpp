// The EXIF directory: exposure, ISO, serial.
#include "dng/HandMadeTIFF.h"
#include "dng/metadata/MetadataFixture.h"
#include "support/FileBytes.h"

namespace tessaly::tests {
namespace {

class EXIFRules : public MetadataFixture {
 protected:
  // A plain image whose EXIF directory is written by hand behind everything else.
  [[nodiscard]] DNGMetadata readWith(const std::vector<HandMadeEntry>& entries, std::int64_t cut = 0) const {
    const std::int64_t place = place_;
    DNGBuilder().firstTag(34665, longs({place})).write(path());
    HandMadeTIFF exif = HandMadeTIFF().directory(place, entries);
    const std::int64_t end = place + 2 + 12 * static_cast<std::int64_t>(entries.size()) + 4 - cut;
    exif.growTo(end).cutTo(end);
    exif.write(folder_ / "exif");
    std::vector<std::byte> file = readBytes(path());
    const std::vector<std::byte> tail = readBytes(folder_ / "exif");
    file.resize(static_cast<std::size_t>(place));
    file.insert(file.end(), tail.begin() + place, tail.end());
    tools::writeBytes(path(), file);
    return DNGReader::readMetadata(path());
  }

  [[nodiscard]] std::string refusalWith(const std::vector<HandMadeEntry>& entries, std::int64_t cut = 0) const {
    return refusalOf([&] { return readWith(entries, cut); });
  }

  static constexpr std::int64_t place_ = 4000;
};

TEST_F(EXIFRules, LeaveEverythingAbsentWithoutADirectory) {
  const DNGMetadata metadata = read(DNGBuilder());
  EXPECT_EQ(metadata.exposureSeconds, std::nullopt);
  EXPECT_EQ(metadata.iso, std::nullopt);
  EXPECT_EQ(metadata.cameraSerial, std::nullopt);
}

TEST_F(EXIFRules, GiveExposureISOAndSerial) {
  for (const bool big : {false, true}) {
    DNGBuilder builder = DNGBuilder().exif(800, {{1, 250}}, " 12345 ");
    if (big) builder.bigEndian();
    const DNGMetadata metadata = read(builder);
    EXPECT_EQ(metadata.exposureSeconds, 1.0 / 250.0);
    EXPECT_EQ(metadata.iso, 800);
    EXPECT_EQ(metadata.cameraSerial, "12345");
  }
}

TEST_F(EXIFRules, GiveThemOneByOne) {
  EXPECT_EQ(read(DNGBuilder().exif(std::nullopt, {{30, 1}})).exposureSeconds, 30.0);
  EXPECT_EQ(read(DNGBuilder().exif(100, std::nullopt)).exposureSeconds, std::nullopt);
  EXPECT_EQ(read(DNGBuilder().exif(std::nullopt, std::nullopt)).iso, std::nullopt);
}

TEST_F(EXIFRules, TakeTheFirstOfSeveralValues) {
  const DNGMetadata metadata =
      read(DNGBuilder().exifTag(34855, shorts({400, 500})).exifTag(33434, rationals({1, 4, 1, 8})));
  EXPECT_EQ(metadata.iso, 400);
  EXPECT_EQ(metadata.exposureSeconds, 0.25);
}

TEST_F(EXIFRules, AreAboutTheFirstDirectory) {
  EXPECT_EQ(read(DNGBuilder().inSubIFD().exif(800, std::nullopt)).iso, 800);
  EXPECT_EQ(refusal(DNGBuilder().inSubIFD().rawTag(34665, longs({0xFFFFFFFF}))), "");
}

TEST_F(EXIFRules, TreatAnEntryWithoutValuesAsNoDirectory) {
  EXPECT_EQ(read(DNGBuilder().firstTag(34665, longs({}))).iso, std::nullopt);
}

TEST_F(EXIFRules, RequireTheDirectoryInTheFile) {
  EXPECT_EQ(refusal(DNGBuilder().firstTag(34665, longs({0xFFFFFFFF}))),
            "Incomplete DNG file: TIFF field at 4294967295, length 2");
  EXPECT_EQ(refusal(DNGBuilder().firstTag(34665, signedRationals({-5, 1}))),
            "Incomplete DNG file: TIFF field at -5, length 2");
  EXPECT_EQ(refusalWith({{34855, 3, 1, {100}, 2}}, 0), "");
  EXPECT_EQ(refusalWith({{34855, 3, 1, {100}, 2}}, 1), "Incomplete DNG file: TIFF field at 4002, length 16")
      << "the next-directory word too";
}

TEST_F(EXIFRules, Accept4096Entries) {
  const auto entries = [](int count) {
    std::vector<HandMadeEntry> all;
    for (int tag = 1; tag <= count; ++tag)
      all.push_back({tag, 1, 1, {0}, 1});
    return all;
  };
  EXPECT_EQ(refusalWith(entries(4096)), "");
  EXPECT_EQ(refusalWith(entries(4097)), "Invalid DNG structure: EXIF size");
}

TEST_F(EXIFRules, RejectUnknownTypesAndCounts) {
  EXPECT_EQ(refusalWith({{700, 16, 1, {0}}}), "Invalid DNG structure: EXIF field");
  EXPECT_EQ(refusalWith({elsewhere(700, 1, 16'777'217, 0)}), "Invalid DNG structure: EXIF field");
}

TEST_F(EXIFRules, CheckTheRangeOfEveryEntry) {
  EXPECT_EQ(refusalWith({elsewhere(700, 4, 2, 4020)}), "Incomplete DNG file: TIFF field at 4020, length 8");
}

TEST_F(EXIFRules, LetALaterEntryReplaceAnEarlierOne) {
  EXPECT_EQ(readWith({{34855, 3, 1, {100}, 2}, {34855, 3, 1, {200}, 2}}).iso, 200);
}

TEST_F(EXIFRules, RejectValuesThatAreNoNumbers) {
  EXPECT_EQ(refusalWith({{34855, 9, 1, {100}}}), "Unsupported DNG: Numeric TIFF type 9");
  EXPECT_EQ(refusal(DNGBuilder().exif(std::nullopt, {{1, 0}})), "Invalid DNG structure: Zero rational denominator");
}

TEST_F(EXIFRules, ReadOnlyTheEntriesTheyNeed) {
  EXPECT_EQ(refusal(DNGBuilder().exifTag(37380, floats({0})).exifTag(273, longs({1}))), "");
}

TEST_F(EXIFRules, ComeAfterTheLevels) {
  EXPECT_EQ(refusal(DNGBuilder().firstTag(34665, longs({0xFFFFFFFF})).white(0)),
            "Unsupported DNG: WhiteLevel outside UInt16 domain");
}

}  // namespace
}  // namespace tessaly::tests
