#include "PlainTIFF.h"
#include "dng/WriterFixture.h"
#include "dng/copy/SyntheticExposure.h"

#include <algorithm>

namespace tessaly {
namespace {

using tests::noise;
using tests::PlainDirectory;
using tests::PlainEntry;
using tests::PlainTIFF;
using tests::readBytes;
using tests::Samples;
using tools::DNGBuilder;

constexpr auto noEXIF = "Invalid DNG structure: EXIF directory size";

class SyntheticExposure : public tests::WriterFixture {
 protected:
  [[nodiscard]] static DNGBuilder builder() {
    return DNGBuilder().size(7, 5).samples(noise(35, 16)).exif(200, {{1, 60}}, "body 7");
  }

  void makeCopy(const DNGBuilder& from, double exposure) {
    makeSource(from);
    copy(samples, false, exposure);
    after.emplace(readBytes(destination));
  }

  [[nodiscard]] PlainDirectory exif() const {
    const PlainDirectory first = after->directory(after->first());
    return after->directory(after->value(first.entries.at(34665)));
  }

  [[nodiscard]] std::pair<std::int64_t, std::int64_t> exposure() const {
    const PlainEntry entry = exif().entries.at(33434);
    EXPECT_EQ(entry.type, 5);
    EXPECT_EQ(entry.count, 1);
    return {after->number(entry.offset, 4), after->number(entry.offset + 4, 4)};
  }

  Samples samples = noise(35, 16, 2);
  std::optional<PlainTIFF> after;
};

TEST_F(SyntheticExposure, IsRoundedToMillionthsOfASecond) {
  makeCopy(builder(), 0.1234565);
  EXPECT_EQ(exposure(), std::make_pair(std::int64_t{123457}, std::int64_t{1'000'000}));
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(SyntheticExposure, ReachesBothEndsOfTheRange) {
  makeCopy(builder(), 4000.0);
  EXPECT_EQ(exposure(), std::make_pair(std::int64_t{4'000'000'000}, std::int64_t{1'000'000}));
  EXPECT_EQ(DNGReader::readMetadata(destination).exposureSeconds, 4000.0);
  destination = folder / "zero.dng";
  makeCopy(builder().bigEndian(), 0.0);
  EXPECT_EQ(exposure(), std::make_pair(std::int64_t{0}, std::int64_t{1'000'000}));
}

TEST_F(SyntheticExposure, KeepsTheRestOfTheEXIFDirectory) {
  makeCopy(builder().exifTag(37500, {7, std::vector<std::int64_t>(31, 5)}), 2.5);
  const PlainTIFF before(readBytes(source));
  const PlainDirectory first = before.directory(before.first());
  PlainDirectory old = before.directory(before.value(first.entries.at(34665)));
  PlainDirectory fresh = exif();
  EXPECT_TRUE(std::is_sorted(fresh.tags.begin(), fresh.tags.end()));
  for (PlainDirectory* directory : {&old, &fresh}) {
    directory->entries.erase(33434);
    for (auto& [tag, entry] : directory->entries)
      if (entry.value.size() <= 4) entry.offset = 0;
  }
  EXPECT_TRUE(old.entries == fresh.entries) << "maker notes stay where they are";
}

TEST_F(SyntheticExposure, IsAddedWhereThereIsNone) {
  makeCopy(builder().exif(200, std::nullopt).exifTag(33434, {3, {1}}), 0.5);
  EXPECT_EQ(exposure().first, 500'000);
  destination = folder / "none.dng";
  makeCopy(DNGBuilder().size(7, 5).exif(200, std::nullopt), 0.5);
  EXPECT_EQ(exposure().first, 500'000);
  EXPECT_EQ(DNGReader::readMetadata(destination).iso, 200);
}

// All bytes of the source stay but the record in the first directory that leads to the EXIF directory.
TEST_F(SyntheticExposure, IsAppendedToTheSourceForm) {
  DNGBuilder from = builder();
  if (from.build().size() % 2 == 0) from.trailingBytes(1);
  samples = noise(35, 16);
  makeCopy(from, 0.5);
  const PlainTIFF before(readBytes(source));
  const PlainEntry old = before.directory(before.first()).entries.at(34665);
  std::vector<std::byte> start = after->bytes(0, before.size());
  const std::vector<std::byte> pointer = before.bytes(old.offset, 4);
  std::copy(pointer.begin(), pointer.end(), start.begin() + old.offset);
  EXPECT_TRUE(start == readBytes(source));
  EXPECT_EQ(after->value(after->directory(after->first()).entries.at(34665)), before.size() + 1);
}

TEST_F(SyntheticExposure, IsFoundFromARewrittenFirstDirectory) {
  const Samples table{0, 9, 3};
  makeCopy(builder().samples(Samples(35, 1)).linearization(table).white(60000), 1.5);
  EXPECT_EQ(exposure().first, 1'500'000);
  const DNGMetadata metadata = DNGReader::readMetadata(destination);
  EXPECT_EQ(metadata.exposureSeconds, 1.5);
  EXPECT_EQ(metadata.bitsPerSample, 16);
  EXPECT_EQ(metadata.cameraSerial, "body 7");
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(SyntheticExposure, IsFoundFromTheOldFirstDirectoryWhenARawSubIFDIsRewritten) {
  const Samples table{0, 9, 3};
  makeCopy(builder().inSubIFD().bigEndian().samples(Samples(35, 1)).linearization(table).white(60000), 1.5);
  EXPECT_EQ(DNGReader::readMetadata(destination).exposureSeconds, 1.5);
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(SyntheticExposure, KeepsAPointerOfTypeIFDAndMakesALongOfAnyOther) {
  makeSource(builder());
  std::vector<std::byte> bytes = readBytes(source);
  const std::int64_t entry = PlainTIFF(bytes).directory(8).entries.at(34665).offset - 8;
  const auto pointerType = [&](int type) {
    bytes[static_cast<std::size_t>(entry + 2)] = static_cast<std::byte>(type);
    tools::writeBytes(source, bytes);
    destination = folder / ("type " + std::to_string(type));
    copy(samples, false, 0.5);
    const PlainTIFF fresh(readBytes(destination));
    EXPECT_EQ(DNGReader::readMetadata(destination).exposureSeconds, 0.5);
    return fresh.directory(8).entries.at(34665).type;
  };
  EXPECT_EQ(pointerType(13), 13);
  EXPECT_EQ(pointerType(4), 4);
  EXPECT_EQ(pointerType(3), 4);
}

TEST_F(SyntheticExposure, NeedsAnEXIFDirectory) {
  makeSource(DNGBuilder().size(7, 5));
  EXPECT_EQ(failureOf([&] { copy(samples, false, 1.0); }), noEXIF);
  EXPECT_FALSE(exists(destination.parent_path()));
}

TEST_F(SyntheticExposure, NeedsAnEXIFDirectoryWithinTheFile) {
  makeSource(DNGBuilder().size(7, 5).firstTag(34665, {4, {1'000'000}}));
  EXPECT_EQ(failureOf([&] { static_cast<void>(exposureDirectory(DNGContainer(source), 1.0)); }), noEXIF);
  const auto size = static_cast<std::int64_t>(file_size(source));
  makeSource(DNGBuilder().size(7, 5).firstTag(34665, {4, {size - 3}}));
  EXPECT_EQ(failureOf([&] { static_cast<void>(exposureDirectory(DNGContainer(source), 1.0)); }), noEXIF);
  makeSource(DNGBuilder().size(7, 5).firstTag(34665, {4, {0}}));  // 18,761 entries
  EXPECT_EQ(failureOf([&] { static_cast<void>(exposureDirectory(DNGContainer(source), 1.0)); }), noEXIF);
}

}  // namespace
}  // namespace tessaly
