// A source of one strip with a LinearizationTable becomes a copy with plain 16-bit samples.
#include "PlainTIFF.h"
#include "dng/WriterFixture.h"
#include "dng/copy/CopyPlanner.h"

#include <algorithm>
#include <array>

namespace tessaly {
namespace {

using tests::noise;
using tests::PlainDirectory;
using tests::PlainEntry;
using tests::PlainTIFF;
using tests::readBytes;
using tests::Samples;
using tools::DNGBuilder;

// Neither rising nor falling: no way back is needed here.
Samples table() {
  Samples values;
  for (int code = 0; code < 256; ++code)
    values.push_back(static_cast<std::uint16_t>(code * 40503 % 50000));
  return values;
}

class ReencodedForm : public tests::WriterFixture {
 protected:
  [[nodiscard]] static DNGBuilder builder() {
    return DNGBuilder().size(7, 5).bits(8).linearization(table()).samples(noise(35, 8)).white(60000);
  }

  // Makes source and copy; the copy's samples differ from the source's.
  void makeCopy(const DNGBuilder& from, std::optional<double> exposure = std::nullopt) {
    makeSource(from);
    copy(samples, false, exposure);
    before.emplace(readBytes(source));
    after.emplace(readBytes(destination));
  }

  [[nodiscard]] PlainDirectory rawOf(const PlainTIFF& file, bool inSubIFD) const {
    const PlainDirectory first = file.directory(file.first());
    return inSubIFD ? file.directory(file.value(first.entries.at(330))) : first;
  }

  void expectSamplesAt(std::int64_t offset, bool little) const {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const auto at = offset + 2 * static_cast<std::int64_t>(i);
      const std::int64_t low = after->number(at, 1);
      const std::int64_t high = after->number(at + 1, 1);
      ASSERT_EQ(little ? high * 256 + low : low * 256 + high, samples[i]) << i;
    }
  }

  Samples samples = noise(35, 16, 3);
  std::optional<PlainTIFF> before;
  std::optional<PlainTIFF> after;
};

TEST_F(ReencodedForm, ReadsBackAsTheSamplesThatWereWritten) {
  makeSource(builder());
  copy(samples);
  EXPECT_EQ(samplesOf(destination), samples);
  EXPECT_TRUE(DNGReader::readMetadata(destination).sourceEncoding->linearization.empty());
}

TEST_F(ReencodedForm, IsTakenWhenNothingHasChangedToo) {
  makeSource(builder());
  samples = samplesOf(source);
  copy(samples);
  EXPECT_EQ(DNGReader::readMetadata(destination).bitsPerSample, 16);
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(ReencodedForm, IsTakenOnlyForOneUncompressedStripWithATable) {
  const auto isTaken = [this](const DNGBuilder& from, bool preserveEncoding) {
    makeSource(from);
    return takesReencodedForm(DNGReader::readMetadata(source), preserveEncoding);
  };
  EXPECT_TRUE(isTaken(builder(), false));
  EXPECT_FALSE(isTaken(builder(), true));
  EXPECT_FALSE(isTaken(builder().strips(3), false));
  EXPECT_FALSE(isTaken(builder().tiles(16, 16), false));
  EXPECT_FALSE(isTaken(builder().withoutRawTag(50712), false));
  EXPECT_FALSE(isTaken(builder().rawTag(259, {3, {7}}), false));
}

struct Place {
  bool little;
  bool inSubIFD;
  std::int64_t trailing;
};

class ReencodedPlaces : public ReencodedForm, public testing::WithParamInterface<Place> {
 protected:
  void SetUp() override {
    DNGBuilder from = builder();
    from.trailingBytes(GetParam().trailing).exif(100, {{1, 60}}).rawText(40000, "a value out of line");
    if (!GetParam().little) from.bigEndian();
    if (GetParam().inSubIFD) from.inSubIFD();
    makeCopy(from);
  }
};

// The source's bytes, but for the one word that leads to the raw directory.
TEST_P(ReencodedPlaces, KeepEverythingButOnePointer) {
  std::vector<std::byte> start = after->bytes(0, before->size());
  const PlainDirectory first = before->directory(before->first());
  const std::int64_t pointer = GetParam().inSubIFD ? first.entries.at(330).offset : 4;
  const std::vector<std::byte> old = before->bytes(pointer, 4);
  EXPECT_FALSE(std::equal(old.begin(), old.end(), start.begin() + pointer));
  std::copy(old.begin(), old.end(), start.begin() + pointer);
  EXPECT_TRUE(start == readBytes(source));
}

TEST_P(ReencodedPlaces, AppendTheSamplesOnAnEvenOffset) {
  const PlainDirectory raw = rawOf(*after, GetParam().inSubIFD);
  const std::int64_t offset = after->value(raw.entries.at(273));
  EXPECT_EQ(offset, before->size() + before->size() % 2);
  expectSamplesAt(offset, GetParam().little);
}

TEST_P(ReencodedPlaces, DescribeTheSamplesInTheNewDirectory) {
  const PlainDirectory raw = rawOf(*after, GetParam().inSubIFD);
  const auto expect = [&](std::int64_t tag, std::int64_t type, std::int64_t value) {
    const PlainEntry& entry = raw.entries.at(tag);
    EXPECT_EQ(entry.type, type) << tag;
    EXPECT_EQ(entry.count, 1) << tag;
    EXPECT_EQ(after->value(entry), value) << tag;
  };
  expect(258, 3, 16);
  expect(259, 3, 1);
  expect(266, 3, 1);
  expect(278, 4, 5);
  expect(279, 4, 70);
  EXPECT_TRUE(std::is_sorted(raw.tags.begin(), raw.tags.end()));
}

TEST_P(ReencodedPlaces, CarryAllOtherEntriesOver) {
  PlainDirectory old = rawOf(*before, GetParam().inSubIFD);
  PlainDirectory fresh = rawOf(*after, GetParam().inSubIFD);
  old.entries.erase(50712);
  for (const std::int64_t tag : {258, 259, 266, 273, 278, 279}) {
    old.entries.erase(tag);
    fresh.entries.erase(tag);
  }
  ASSERT_EQ(fresh.entries.size(), old.entries.size());
  for (const auto& [tag, entry] : old.entries) {
    EXPECT_EQ(fresh.entries.at(tag).type, entry.type) << tag;
    EXPECT_EQ(fresh.entries.at(tag).count, entry.count) << tag;
    EXPECT_EQ(fresh.entries.at(tag).value, entry.value) << tag;
    if (entry.value.size() <= 4) continue;
    EXPECT_GT(fresh.entries.at(tag).offset, before->size()) << tag;
    EXPECT_EQ(fresh.entries.at(tag).offset % 2, 0) << tag;
  }
}

std::string placeName(const testing::TestParamInfo<Place>& info) {
  return std::string(info.param.little ? "Little" : "Big") + (info.param.inSubIFD ? "SubIFD" : "FirstDirectory") +
         "Trailing" + std::to_string(info.param.trailing);
}

INSTANTIATE_TEST_SUITE_P(All, ReencodedPlaces,
                         testing::Values(Place{true, false, 0}, Place{true, false, 1}, Place{true, true, 0},
                                         Place{true, true, 1}, Place{false, false, 0}, Place{false, false, 1},
                                         Place{false, true, 0}, Place{false, true, 1}),
                         placeName);

TEST_F(ReencodedForm, StartsOneByteLaterBehindASourceOfOddLength) {
  DNGBuilder from = builder();
  if (from.build().size() % 2 == 0) from.trailingBytes(1);
  makeCopy(from);
  const PlainDirectory raw = rawOf(*after, false);
  EXPECT_EQ(before->size() % 2, 1);
  EXPECT_EQ(after->value(raw.entries.at(273)), before->size() + 1);
  EXPECT_EQ(after->number(before->size(), 1), 0);
}

TEST_F(ReencodedForm, LeavesTheFirstDirectoryAndItsPreviewAlone) {
  makeCopy(builder().inSubIFD());
  PlainDirectory old = before->directory(before->first());
  PlainDirectory fresh = after->directory(after->first());
  EXPECT_EQ(before->first(), after->first());
  old.entries.erase(330);
  fresh.entries.erase(330);
  EXPECT_TRUE(old.entries == fresh.entries);
}

TEST_F(ReencodedForm, CarriesTheNextDirectoryOver) {
  makeSource(builder());
  std::vector<std::byte> bytes = readBytes(source);
  const PlainTIFF plain(bytes);
  const std::int64_t second = plain.size() + plain.size() % 2;
  const std::int64_t count = plain.number(plain.first(), 2);
  bytes.resize(static_cast<std::size_t>(second + 6));  // an empty directory
  bytes[static_cast<std::size_t>(plain.first() + 2 + 12 * count)] = static_cast<std::byte>(second % 256);
  bytes[static_cast<std::size_t>(plain.first() + 3 + 12 * count)] = static_cast<std::byte>(second / 256);
  tools::writeBytes(source, bytes);
  copy(samples);
  const PlainTIFF fresh(readBytes(destination));
  EXPECT_EQ(fresh.directory(fresh.first()).next, second);
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(ReencodedForm, DropsWhatNoLongerHolds) {
  const tools::TIFFValues digest{7, std::vector<std::int64_t>(16, 9)};
  makeCopy(builder()
               .rawTag(50972, digest)
               .rawTag(51111, digest)
               .rawTag(322, {4, {7}})
               .rawTag(323, {4, {5}})
               .rawTag(325, {4, {35}}));
  const PlainDirectory raw = rawOf(*after, false);
  for (const std::int64_t tag : {322, 323, 324, 325, 50712, 50972, 51111})
    EXPECT_FALSE(raw.entries.contains(tag)) << tag;
}

TEST_F(ReencodedForm, KeepsTheWhiteLevelOfTheSource) {
  makeCopy(builder());
  const PlainEntry white = rawOf(*after, false).entries.at(50717);
  EXPECT_EQ(after->value(white), 60000);
  EXPECT_EQ(white.type, 3);
}

TEST_F(ReencodedForm, SaysTheWhiteLevelThatTheTableImplied) {
  makeCopy(builder().withoutRawTag(50717));
  const PlainEntry white = rawOf(*after, false).entries.at(50717);
  EXPECT_EQ(white.type, 4);
  EXPECT_EQ(white.count, 1);
  EXPECT_EQ(after->value(white), table().back());
  EXPECT_EQ(DNGReader::readMetadata(destination).whiteLevel, DNGReader::readMetadata(source).whiteLevel);
}

TEST_F(ReencodedForm, ReplacesTheOldDepthFillOrderAndStrips) {
  makeCopy(builder().bits(12).fillOrder(2).samples(noise(35, 8)).withoutRawTag(278));
  EXPECT_EQ(samplesOf(destination), samples);
  EXPECT_EQ(after->value(rawOf(*after, false).entries.at(266)), 1);
}

TEST_F(ReencodedForm, GivesTheSameMetadataButForTheEncoding) {
  makeSource(builder().inSubIFD().serial("123").black(40).activeArea(1, 1, 5, 7).exif(200, {{1, 8}}));
  copy(samples);
  DNGMetadata old = DNGReader::readMetadata(source);
  DNGMetadata fresh = DNGReader::readMetadata(destination);
  EXPECT_EQ(old.isGeometryCompatible(fresh), false) << "another depth is another mode";
  fresh.bitsPerSample = old.bitsPerSample;
  fresh.rawOffset = old.rawOffset;
  fresh.rawByteCount = old.rawByteCount;
  fresh.packing = old.packing;
  fresh.sourceEncoding->ifdOffset = old.sourceEncoding->ifdOffset;
  fresh.sourceEncoding->offsets = old.sourceEncoding->offsets;
  fresh.sourceEncoding->byteCounts = old.sourceEncoding->byteCounts;
  fresh.sourceEncoding->linearization = old.sourceEncoding->linearization;
  EXPECT_TRUE(fresh == old);
}

TEST_F(ReencodedForm, IsTheSameWhetherTheChangesAreKnownOrNotAndInAClone) {
  makeSource(builder());
  samples = samplesOf(source);
  samples[11] = 4711;
  copy(samples);
  const auto general = readBytes(destination);
  const std::vector<SampleRun> runs{{1, 4, 1}};
  destination = folder / "runs.dng";
  system.offerClones();
  copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
  EXPECT_TRUE(readBytes(destination) == general);
}

constexpr auto tooLongForTIFF = "Invalid DNG structure: Classic TIFF output overflow";
constexpr auto tooLongForTheReader = "Invalid DNG structure: DNG size limit (2 GB)";

// Sources whose entries all claim the same far-away bytes, so that a small (sparse) file asks for a huge copy.
class HugeValues : public ReencodedForm {
 protected:
  static constexpr std::int64_t classicLimit = 4'294'967'295;
  static constexpr std::int64_t valuesOf8Bytes = 16'777'216;
  static constexpr std::int64_t longestValue = 8 * valuesOf8Bytes;

  // 39 entries of the largest size and one of `lastSize` (even); `tail` makes the length of the copy odd or even.
  void makeHugeSource(std::int64_t lastSize, const std::string& tail) {
    DNGBuilder from = builder().rawText(60000, tail);
    for (int i = 0; i < entries; ++i)
      from.rawTag(41000 + i, {5, {1, 1}, i == 0 ? lastSize / 8 : valuesOf8Bytes, 8});
    makeSource(from);
    resize_file(source, static_cast<std::uintmax_t>(longestValue + 8));
  }

  // The length that is planned when all entries are of 8 bytes.
  [[nodiscard]] std::int64_t smallLength(const std::string& tail) {
    DNGBuilder from = builder().rawText(60000, tail);
    for (int i = 0; i < entries; ++i)
      from.rawTag(41000 + i, {5, {1, 1}});
    makeSource(from);
    resize_file(source, static_cast<std::uintmax_t>(longestValue + 8));
    return planCopy(SourceImage(source), true, std::nullopt).length;
  }

  [[nodiscard]] std::string failureAtLength(std::int64_t length, const std::string& tail) {
    const std::int64_t missing = length - smallLength(tail) - (entries - 1) * (longestValue - 8);
    EXPECT_EQ(missing % 8, 0);
    makeHugeSource(missing + 8, tail);
    return failureOf([&] { copy(samples); });
  }

  static constexpr int entries = 31;
};

// The length moves in steps of 8 bytes here, so the tail is chosen to meet the limit.
std::string tailFor(std::int64_t length, std::int64_t lengthWithOneByte) {
  return std::string(static_cast<std::size_t>(8 + (length - lengthWithOneByte) % 8), 't');
}

TEST_F(HugeValues, ReachTheLastOffsetOfClassicTIFFAndNoFurther) {
  const std::int64_t length = smallLength(std::string(8, 't'));  // 9 bytes with the closing zero
  EXPECT_EQ(failureAtLength(classicLimit, tailFor(classicLimit, length)), tooLongForTheReader);
  EXPECT_EQ(failureAtLength(classicLimit + 1, tailFor(classicLimit + 1, length)), tooLongForTIFF);
  EXPECT_FALSE(exists(destination.parent_path()));
}

TEST_F(HugeValues, AreRefusedHoweverManyThereAre) {
  DNGBuilder from = builder();
  for (int i = 0; i < 4000; ++i)
    from.rawTag(60000 + i, {5, {1, 1}, valuesOf8Bytes, 8});
  makeSource(from);
  resize_file(source, static_cast<std::uintmax_t>(longestValue + 8));
  EXPECT_EQ(failureOf([&] { copy(samples); }), tooLongForTIFF);
  EXPECT_FALSE(exists(destination.parent_path()));
}

TEST_F(HugeValues, AreWrittenOnlyAsFarAsTheReaderReads) {
  makeSource(builder());
  const std::int64_t appended = planCopy(SourceImage(source), true, std::nullopt).length -
                                evenOffset(static_cast<std::int64_t>(file_size(source)));
  const std::int64_t longest = 2'000'000'000 - appended;
  ASSERT_EQ(longest % 2, 0);
  resize_file(source, static_cast<std::uintmax_t>(longest));
  EXPECT_EQ(planCopy(SourceImage(source), true, std::nullopt).length, 2'000'000'000);
  resize_file(source, static_cast<std::uintmax_t>(longest + 1));
  EXPECT_EQ(failureOf([&] { copy(samples); }), tooLongForTheReader);
  EXPECT_FALSE(exists(destination.parent_path()));
}

}  // namespace
}  // namespace tessaly
