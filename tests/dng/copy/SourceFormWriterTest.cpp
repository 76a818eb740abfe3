// The builder is the oracle: it packs bit by bit and shares no code with the writer. A copy of a file that was built
// with some samples must be, byte for byte, the file that is built with the others.
#include "dng/WriterFixture.h"
#include "dng/copy/SourceFormWriter.h"

#include <algorithm>
#include <tuple>

namespace tessaly {
namespace {

using tests::noise;
using tests::readBytes;
using tests::Samples;
using tools::DNGBuilder;

constexpr std::int64_t rowLength = 37;  // neither a whole number of groups nor of tiles
constexpr std::int64_t rowCount = 11;

enum class Arrangement { oneStrip, strips, tiles, reversedStrips, reversedTiles, gaps };

DNGBuilder laidOut(Arrangement layout) {
  switch (layout) {
    case Arrangement::oneStrip:
      return DNGBuilder();
    case Arrangement::strips:
      return DNGBuilder().strips(3);
    case Arrangement::tiles:
      return DNGBuilder().tiles(16, 4);
    case Arrangement::reversedStrips:
      return DNGBuilder().strips(2).segmentsInReverseOrder();
    case Arrangement::reversedTiles:
      return DNGBuilder().tiles(8, 5).segmentsInReverseOrder().gapBetweenSegments(3);
    default:
      return DNGBuilder().strips(4).gapBetweenSegments(5);
  }
}

// The runs of samples in which two planes differ.
std::vector<SampleRun> differences(const Samples& one, const Samples& other) {
  std::vector<SampleRun> runs;
  for (std::int64_t i = 0; i < rowLength * rowCount; ++i) {
    if (one[static_cast<std::size_t>(i)] == other[static_cast<std::size_t>(i)]) continue;
    const bool continues = !runs.empty() && i % rowLength != 0 && runs.back().row == i / rowLength &&
                           runs.back().column + runs.back().count == i % rowLength;
    if (continues) {
      ++runs.back().count;
    } else {
      runs.push_back({i / rowLength, i % rowLength, 1});
    }
  }
  return runs;
}

Samples withChanges(Samples samples, int bits, int changes) {
  std::mt19937 generator(static_cast<unsigned>(changes) + 17);
  for (int i = 0; i < changes; ++i)
    samples[generator() % samples.size()] = static_cast<std::uint16_t>(generator() >> (32 - bits));
  return samples;
}

using SourceVariant = std::tuple<int, bool, int, Arrangement>;  // bits, little-endian, fill order, layout

class SourceForm : public tests::WriterFixture, public testing::WithParamInterface<SourceVariant> {
 protected:
  [[nodiscard]] int bits() const { return std::get<0>(GetParam()); }

  // Odd in length, padding and tail filled with ones and zeros.
  [[nodiscard]] DNGBuilder builder() const {
    DNGBuilder result = laidOut(std::get<3>(GetParam()));
    result.size(rowLength, rowCount).bits(bits()).fillOrder(std::get<2>(GetParam())).paddingByte(0xA5);
    if (!std::get<1>(GetParam())) result.bigEndian();
    result.trailingBytes(100);
    if (result.build().size() % 2 == 0) result.trailingBytes(101);
    return result;
  }

  [[nodiscard]] Samples original() const { return noise(rowLength * rowCount, bits()); }

  void expectBytes(const Samples& samples) const {
    EXPECT_TRUE(readBytes(destination) == builder().samples(samples).build());
  }
};

TEST_P(SourceForm, IsTheSourceByteForByteWhenNothingHasChanged) {
  makeSource(builder().samples(original()));
  copy(original());
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_P(SourceForm, IsTheSourceByteForByteWithoutRuns) {
  makeSource(builder().samples(original()));
  const Samples samples = original();
  copyChanged({destination, samples, ChangedSamples(std::span<const SampleRun>()), false, std::nullopt});
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_P(SourceForm, HoldsOtherSamplesInTheSamePlaces) {
  makeSource(builder().samples(original()));
  const Samples other = noise(rowLength * rowCount, bits(), 2);
  copy(other);
  expectBytes(other);
}

TEST_P(SourceForm, HoldsAFewChangedSamples) {
  makeSource(builder().samples(original()));
  for (const int changes : {1, 5, 60}) {
    destination = folder / "out" / std::to_string(changes);
    const Samples samples = withChanges(original(), bits(), changes);
    copy(samples, true);
    expectBytes(samples);
  }
}

TEST_P(SourceForm, IsTheSameWhetherTheChangesAreKnownOrNot) {
  makeSource(builder().samples(original()));
  for (const int changes : {1, 5, 60}) {
    destination = folder / "out" / std::to_string(changes);
    const Samples samples = withChanges(original(), bits(), changes);
    const std::vector<SampleRun> runs = differences(original(), samples);
    copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
    expectBytes(samples);
  }
}

TEST_P(SourceForm, IsTheSameInACloneOfTheFileSystem) {
  makeSource(builder().samples(original()));
  system.offerClones();
  const Samples samples = withChanges(original(), bits(), 7);
  const std::vector<SampleRun> runs = differences(original(), samples);
  copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
  expectBytes(samples);
  EXPECT_EQ(system.count(tests::Call::copyRange), 0);
}

TEST_P(SourceForm, IsTheSameWhereTheSystemCopiesNothingByItself) {
  makeSource(builder().samples(original()));
  system.fail(tests::Call::copyRange, EXDEV);
  const Samples samples = withChanges(original(), bits(), 7);
  const std::vector<SampleRun> runs = differences(original(), samples);
  copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
  expectBytes(samples);
}

std::string variantName(const testing::TestParamInfo<SourceVariant>& info) {
  static const char* const layouts[] = {"OneStrip", "Strips", "Tiles", "ReversedStrips", "ReversedTiles", "Gaps"};
  const auto [bits, little, fillOrder, layout] = info.param;
  return std::to_string(bits) + "Bits" + (little ? "Little" : "Big") + "FillOrder" + std::to_string(fillOrder) +
         layouts[static_cast<int>(layout)];
}

INSTANTIATE_TEST_SUITE_P(All, SourceForm,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Values(1, 2),
                                          testing::Values(Arrangement::oneStrip, Arrangement::strips,
                                                          Arrangement::tiles, Arrangement::reversedStrips,
                                                          Arrangement::reversedTiles, Arrangement::gaps)),
                         variantName);

// Rows of more than the buffer together, changed and unchanged stretches longer than what is bridged.
using LargeImage = tests::WriterFixture;

TEST_F(LargeImage, PassesThroughTheBufferInPieces) {
  const std::int64_t wide = 3000;
  const std::int64_t high = 900;
  DNGBuilder builder;
  builder.size(wide, high).bits(12).strips(250);
  const Samples before = noise(wide * high, 12);
  Samples after = before;
  std::vector<SampleRun> runs;
  const auto change = [&](std::int64_t row, std::int64_t column, std::int64_t count) {
    runs.push_back({row, column, count});
    for (std::int64_t i = row * wide + column; i < row * wide + column + count; ++i)
      after[static_cast<std::size_t>(i)] ^= 0x0FF;
  };
  change(0, 0, 1);
  change(99, 17, 33);
  for (std::int64_t row = 100; row < 480; ++row)
    change(row, 1501, 3);
  change(899, 2999, 1);
  builder.samples(before).write(source);
  copyChanged({destination, after, ChangedSamples(runs), false, std::nullopt});
  EXPECT_TRUE(readBytes(destination) == builder.samples(after).build());
  destination = folder / "general.dng";
  copy(after);
  EXPECT_TRUE(readBytes(destination) == builder.build());
}

// Files with a table, in forms that are not re-encoded.
class SourceFormWithTable : public tests::WriterFixture {
 protected:
  static constexpr auto nonmonotonic = "Unsupported DNG: Inverse nonmonotonic LinearizationTable";

  [[nodiscard]] static DNGBuilder builder(const Samples& table) {
    return DNGBuilder().size(8, 6).bits(8).strips(2).linearization(table).white(60000);
  }

  // 0, 0, 100, 100, 200, 200 … 25400, 25400: every value twice, 99 of 100 skipped.
  [[nodiscard]] static Samples stairs() {
    Samples table;
    for (int code = 0; code < 256; ++code)
      table.push_back(static_cast<std::uint16_t>(code / 2 * 200));
    return table;
  }

  [[nodiscard]] static Samples linear(const Samples& codes, const Samples& table) {
    Samples samples;
    for (const std::uint16_t code : codes)
      samples.push_back(table[code]);
    return samples;
  }
};

TEST_F(SourceFormWithTable, KeepsTheCodesOfSamplesThatHaveNotChanged) {
  const Samples codes = noise(48, 8);
  makeSource(builder(stairs()).samples(codes));
  copy(linear(codes, stairs()));
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_F(SourceFormWithTable, GivesChangedSamplesTheSmallestOfTheNearestCodes) {
  Samples codes = noise(48, 8);
  makeSource(builder(stairs()).samples(codes));
  Samples samples = linear(codes, stairs());
  const std::vector<std::pair<std::uint16_t, std::uint16_t>> changes{
      {200, 2}, {299, 2}, {300, 2}, {301, 4}, {0, 0}, {25400, 254}, {65535, 254}, {101, 2}, {99, 0}, {100, 0}};
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const std::size_t place = 4 * i + 1;
    codes[place] = 255;  // a code whose value is none of the above's but the last: it changes
    samples[place] = changes[i].first;
  }
  makeSource(builder(stairs()).samples(codes));
  copy(samples);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const bool hasChanged = samples[4 * i + 1] != 25400;
    if (hasChanged) codes[4 * i + 1] = changes[i].second;
  }
  EXPECT_TRUE(readBytes(destination) == builder(stairs()).samples(codes).build());
}

TEST_F(SourceFormWithTable, ReadsBackTheTableValueNearestToAChangedSample) {
  const Samples codes(48, 10);
  makeSource(builder(stairs()).samples(codes));
  Samples samples = linear(codes, stairs());
  samples[5] = 333;
  copy(samples);
  samples[5] = 400;
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_F(SourceFormWithTable, IsTheSameWhetherTheChangesAreKnownOrNot) {
  const Samples codes = noise(48, 8);
  makeSource(builder(stairs()).samples(codes));
  Samples samples = linear(codes, stairs());
  samples[13] = 77;
  samples[14] = 1234;
  const std::vector<SampleRun> runs{{1, 4, 4}};  // two of the four have not changed
  copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
  const auto known = readBytes(destination);
  destination = folder / "general.dng";
  copy(samples);
  EXPECT_TRUE(readBytes(destination) == known);
}

TEST_F(SourceFormWithTable, WritesThroughAFallingTable) {
  Samples table = stairs();
  std::reverse(table.begin(), table.end());
  Samples codes = noise(48, 8);
  codes[7] = 3;
  makeSource(builder(table).samples(codes));
  Samples samples = linear(codes, table);
  samples[7] = 100;  // as near to 200 (codes 252, 253) as to 0 (codes 254, 255)
  copy(samples);
  codes[7] = 252;
  EXPECT_TRUE(readBytes(destination) == builder(table).samples(codes).build());
}

TEST_F(SourceFormWithTable, RefusesATableThatRisesAndFallsEvenWhenNothingHasChanged) {
  Samples table = stairs();
  table[255] = 0;
  const Samples codes(48, 10);
  makeSource(builder(table).samples(codes));
  EXPECT_EQ(failureOf([&] { copy(linear(codes, table)); }), nonmonotonic);
  EXPECT_FALSE(exists(destination.parent_path()));
}

TEST_F(SourceFormWithTable, RefusesItForTilesAndForAKeptEncodingToo) {
  const Samples table{0, 100, 50};
  const Samples codes(48, 1);
  makeSource(DNGBuilder().size(8, 6).tiles(16, 16).linearization(table).white(60000).samples(codes));
  EXPECT_EQ(failureOf([&] { copy(linear(codes, table)); }), nonmonotonic);
  makeSource(DNGBuilder().size(8, 6).linearization(table).white(60000).samples(codes));
  EXPECT_EQ(failureOf([&] { copy(linear(codes, table), true); }), nonmonotonic);
}

TEST_F(SourceFormWithTable, KeepsTheEncodingOfOneStripWhenAsked) {
  const Samples codes = noise(48, 8);
  DNGBuilder one = builder(stairs()).strips(6);
  makeSource(one.samples(codes));
  copy(linear(codes, stairs()), true);
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_F(SourceFormWithTable, IsTakenByASingleTile) {
  const Samples codes = noise(48, 8);
  makeSource(DNGBuilder().size(8, 6).bits(8).tiles(16, 16).linearization(stairs()).white(60000).samples(codes));
  copy(linear(codes, stairs()));
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

// Files that only malice writes: the verification notices that samples overwrite each other.
class OverlappingSegments : public tests::WriterFixture {
 protected:
  // Two strips of 3 rows that both stand where the second should.
  void makeOverlappingStrips() {
    DNGBuilder builder;
    builder.size(8, 6).strips(3).samples(Samples(48, 5));
    const std::int64_t offset = builder.segmentOffsets()[1];
    makeSource(builder.rawTag(273, {4, {offset, offset}}));
  }
};

TEST_F(OverlappingSegments, AreCopiedUnchanged) {
  makeOverlappingStrips();
  copy(Samples(48, 5));
  EXPECT_TRUE(readBytes(destination) == readBytes(source));
}

TEST_F(OverlappingSegments, AreCaughtWhenTheyCannotHoldDifferentSamples) {
  makeOverlappingStrips();
  for (const std::size_t place : {3U, 27U}) {
    Samples samples(48, 5);
    samples[place] = 6;
    const auto row = static_cast<std::int64_t>(place) / 8;
    const std::vector<SampleRun> runs{{row, 3, 1}};
    const std::string caught = "Invalid DNG structure: Writer re-read verification failed";
    EXPECT_EQ(failureOf([&] { copy(samples); }), caught);
    EXPECT_EQ(failureOf([&] {
                copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
              }),
              caught);
    EXPECT_THAT(namesBesideTheCopy(), testing::IsEmpty());
  }
}

TEST_F(OverlappingSegments, AreWrittenWhenTheyHoldTheSameSamples) {
  makeOverlappingStrips();
  Samples samples(48, 5);
  samples[3] = samples[27] = 6;
  copy(samples);
  EXPECT_EQ(samplesOf(destination), samples);
}

// Two tiles of the right edge, each in the padding of the other: no sample overlaps another.
TEST_F(OverlappingSegments, MayLieInEachOthersPadding) {
  DNGBuilder builder;
  builder.size(12, 4).bits(8).tiles(8, 2).samples(Samples(48, 5)).trailingBytes(16);
  std::vector<std::int64_t> offsets = builder.segmentOffsets();
  offsets[3] = offsets[1] + 4;
  makeSource(builder.rawTag(324, {4, offsets}));
  Samples samples = samplesOf(source);
  for (const std::size_t place : {8U, 9U, 20U, 23U, 32U, 44U, 47U})
    samples[place] = static_cast<std::uint16_t>(100 + place);
  copy(samples);
  EXPECT_EQ(samplesOf(destination), samples);
  const auto general = readBytes(destination);
  destination = folder / "runs.dng";
  const std::vector<SampleRun> runs{{0, 8, 2}, {1, 8, 1}, {1, 11, 1}, {2, 8, 1}, {3, 8, 1}, {3, 11, 1}};
  copyChanged({destination, samples, ChangedSamples(runs), false, std::nullopt});
  EXPECT_TRUE(readBytes(destination) == general);
}

TEST_F(OverlappingSegments, AreCaughtWhenTheyOverlapInPart) {
  DNGBuilder builder;
  builder.size(8, 6).strips(3).samples(Samples(48, 5));
  const std::int64_t offset = builder.segmentOffsets()[0];
  makeSource(builder.rawTag(273, {4, {offset, offset + 16}}));
  Samples samples(48, 5);
  samples[12] = 6;
  EXPECT_NE(failureOf([&] { copy(samples); }), "");
  EXPECT_FALSE(exists(destination));
}

// A strip that lies over its own directory: writing samples there destroys what describes them.
TEST_F(OverlappingSegments, AreCaughtWhenTheyOverwriteTheDirectory) {
  DNGBuilder builder;
  builder.size(8, 6).bits(8).rawTag(273, {4, {8}});
  makeSource(builder);
  Samples samples = samplesOf(source);
  samples[0] = 255;  // the entry count
  EXPECT_NE(failureOf([&] { copy(samples); }), "");
  EXPECT_THAT(namesBesideTheCopy(), testing::IsEmpty());
}

// The guard behind the reader's own checks: an image whose segments do not fit is not written at all.
TEST_F(OverlappingSegments, HaveAGuardAgainstSegmentsThatAreTooShort) {
  makeSource(DNGBuilder().size(8, 6).rawTag(259, {3, {9}}).rawTag(279, {4, {95}}));
  const SourceImage image(source);
  const Samples samples(48);
  const ChangedSamples changed;
  EXPECT_EQ(failureOf([&] {
              SourceFormWriter(image, {samples, image.metadata()}, changed);
            }),
            "Incomplete DNG file: Output raw segment");
}

}  // namespace
}  // namespace tessaly
