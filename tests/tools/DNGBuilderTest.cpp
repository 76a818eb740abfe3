#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessaly::tools {
namespace {

using tests::bytesOf;

/// Everything from the offset to the end of the file.
Bytes tail(const Bytes& file, std::int64_t offset) {
  return {file.begin() + offset, file.end()};
}

Bytes slice(const Bytes& file, std::size_t offset, std::size_t count) {
  return {file.begin() + static_cast<std::ptrdiff_t>(offset),
          file.begin() + static_cast<std::ptrdiff_t>(offset + count)};
}

Bytes segmentBytes(const DNGBuilder& builder) {
  return tail(builder.build(), builder.segmentOffsets().front());
}

std::size_t numberAt(const Bytes& file, std::size_t offset) {
  return std::to_integer<std::size_t>(file.at(offset)) + 256 * std::to_integer<std::size_t>(file.at(offset + 1));
}

/// Offset of the 12 bytes of an entry in the directory at `directory`; small little-endian files.
std::size_t entryOffset(const Bytes& file, std::size_t directory, std::size_t tag) {
  for (std::size_t i = 0; i < numberAt(file, directory); ++i) {
    const std::size_t entry = directory + 2 + 12 * i;
    if (numberAt(file, entry) == tag) return entry;
  }
  throw std::runtime_error("No such tag");
}

/// The offset that the entry of this tag holds.
std::size_t pointerIn(const Bytes& file, std::size_t directory, std::size_t tag) {
  return numberAt(file, entryOffset(file, directory, tag) + 8);
}

TEST(TIFFLayout, WritesALittleEndianDirectoryByteForByte) {
  Bytes file;
  appendDirectory(file, {{282, {5, {72, 1}}}, {256, {3, {0x1234}}}, {271, {2, {'A', 'B', 'C', 'D', 0}}}}, 0x99, true);
  const Bytes expected = bytesOf({3,    0,                                             // three entries
                                  0x00, 0x01, 3,   0,   1, 0, 0, 0, 0x34, 0x12, 0, 0,  // 256 SHORT 1: inline
                                  0x0F, 0x01, 2,   0,   5, 0, 0, 0, 42,   0,    0, 0,  // 271 ASCII 5: at 42
                                  0x1A, 0x01, 5,   0,   1, 0, 0, 0, 48,   0,    0, 0,  // 282 RATIONAL 1: at 48
                                  0x99, 0,    0,   0,                                  // next directory
                                  'A',  'B',  'C', 'D', 0, 0,                          // padded to an even offset
                                  72,   0,    0,   0,   1, 0, 0, 0});
  EXPECT_EQ(file, expected);
}

TEST(TIFFLayout, WritesABigEndianDirectoryByteForByte) {
  Bytes file;
  appendDirectory(file, {{256, {3, {0x1234}}}, {257, {4, {0x01020304}}}}, 0, false);
  const Bytes expected = bytesOf({0,    2,                                         //
                                  0x01, 0x00, 0, 3, 0, 0, 0, 1, 0x12, 0x34, 0, 0,  // left-justified
                                  0x01, 0x01, 0, 4, 0, 0, 0, 1, 0x01, 0x02, 3, 4,  //
                                  0,    0,    0, 0});
  EXPECT_EQ(file, expected);
}

TEST(TIFFLayout, SizeIsWhatTheDirectoryTakes) {
  const TIFFEntries entries{{271, asciiValues("odd!")}, {272, {3, {1, 2, 3}}}, {50714, {12, {0}}}};
  Bytes file;
  appendDirectory(file, entries, 0, true);
  EXPECT_EQ(directorySize(entries), static_cast<std::int64_t>(file.size()));
  EXPECT_EQ(directorySize(entries), 2 + 3 * 12 + 4 + 6 + 6 + 8);
}

TEST(TIFFLayout, LiesWhereItIsToldTo) {
  Bytes file;
  appendDirectory(file, {{256, {3, {1}, 7}}, {257, {4, {1, 2}, 9, 0x40}}}, 0, true);
  EXPECT_EQ(slice(file, 6, 4), bytesOf({7, 0, 0, 0}));
  EXPECT_EQ(slice(file, 18, 8), bytesOf({9, 0, 0, 0, 0x40, 0, 0, 0}));
}

TEST(DNGBuilder, PutsTheFirstDirectoryBehindTheHeader) {
  EXPECT_EQ(slice(DNGBuilder().build(), 0, 8), bytesOf({'I', 'I', 42, 0, 8, 0, 0, 0}));
  EXPECT_EQ(slice(DNGBuilder().bigEndian().build(), 0, 8), bytesOf({'M', 'M', 0, 42, 0, 0, 0, 8}));
}

TEST(DNGBuilder, PacksTwelveBitsMostSignificantFirstAndPadsTheRow) {
  const auto builder = DNGBuilder().size(3, 2).bits(12).samples({0xABC, 0x123, 0xFED, 1, 2, 3});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0xAB, 0xC1, 0x23, 0xFE, 0xD0, 0x00, 0x10, 0x02, 0x00, 0x30}));
}

TEST(DNGBuilder, ReversesTheBitsOfEachByteForFillOrderTwo) {
  const auto builder = DNGBuilder().size(2, 1).bits(12).fillOrder(2).samples({0xABC, 0x123});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0xD5, 0x83, 0xC4}));
}

TEST(DNGBuilder, PacksTenBits) {
  const auto builder = DNGBuilder().size(4, 1).bits(10).samples({0x3FF, 0x000, 0x201, 0x155});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0xFF, 0xC0, 0x08, 0x05, 0x55}));
}

TEST(DNGBuilder, PacksFourteenBits) {
  const auto builder = DNGBuilder().size(2, 1).bits(14).samples({0x3FFF, 0x0001});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0xFF, 0xFC, 0x00, 0x10}));
}

TEST(DNGBuilder, PacksEightBits) {
  EXPECT_EQ(segmentBytes(DNGBuilder().size(2, 1).bits(8).samples({0xA5, 0x01})), bytesOf({0xA5, 0x01}));
}

TEST(DNGBuilder, WritesSixteenBitsInTheByteOrderOfTheFile) {
  const auto builder = DNGBuilder().size(2, 1).samples({0x1234, 0xABCD});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0x34, 0x12, 0xCD, 0xAB}));
  EXPECT_EQ(segmentBytes(DNGBuilder(builder).bigEndian()), bytesOf({0x12, 0x34, 0xAB, 0xCD}));
  EXPECT_EQ(segmentBytes(DNGBuilder(builder).fillOrder(2)), bytesOf({0x2C, 0x48, 0xB3, 0xD5}));
  EXPECT_EQ(segmentBytes(DNGBuilder(builder).bigEndian().fillOrder(2)), bytesOf({0x48, 0x2C, 0xD5, 0xB3}));
}

TEST(DNGBuilder, PaddingByteFillsRowBitsGapsAndTail) {
  const auto builder =
      DNGBuilder().size(1, 2).bits(12).strips(1).paddingByte(0xEE).gapBetweenSegments(1).trailingBytes(2).samples(
          {0x123, 0x456});
  EXPECT_EQ(segmentBytes(builder), bytesOf({0x12, 0x3E, 0xEE, 0x45, 0x6E, 0xEE, 0xEE}));
}

TEST(DNGBuilder, CutsTheLastStripShort) {
  const auto builder = DNGBuilder().size(1, 3).bits(8).strips(2).samples({1, 2, 3});
  EXPECT_EQ(segmentBytes(builder), bytesOf({1, 2, 3}));
  EXPECT_EQ(builder.segmentOffsets()[1] - builder.segmentOffsets()[0], 2);
}

TEST(DNGBuilder, PadsEdgeTilesToTheirFullSize) {
  const auto builder =
      DNGBuilder().size(3, 3).bits(8).tiles(2, 2).paddingByte(0xFF).samples({1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(segmentBytes(builder), bytesOf({1, 2, 4, 5, 3, 0xFF, 6, 0xFF, 7, 8, 0xFF, 0xFF, 9, 0xFF, 0xFF, 0xFF}));
}

TEST(DNGBuilder, CanPutTheLastSegmentFirst) {
  const auto builder = DNGBuilder().size(2, 2).bits(8).strips(1).segmentsInReverseOrder().samples({1, 2, 3, 4});
  const auto offsets = builder.segmentOffsets();
  EXPECT_LT(offsets[1], offsets[0]);
  EXPECT_EQ(tail(builder.build(), offsets[1]), bytesOf({3, 4, 1, 2}));
}

TEST(DNGBuilder, NamesItsSegmentsInTheDirectory) {
  const auto builder = DNGBuilder().size(2, 1).bits(8).samples({1, 2});
  EXPECT_EQ(pointerIn(builder.build(), 8, 273), static_cast<std::size_t>(builder.segmentOffsets()[0]));
}

TEST(DNGBuilder, PutsTheRawImageIntoASubIFDBehindAPreview) {
  const Bytes file = DNGBuilder().inSubIFD().serial("S1").exif(200, std::pair{1, 125}).build();
  const std::size_t raw = pointerIn(file, 8, 330);
  EXPECT_EQ(numberAt(file, entryOffset(file, 8, 254) + 8), 1U);
  EXPECT_EQ(numberAt(file, entryOffset(file, raw, 254) + 8), 0U);
  EXPECT_EQ(numberAt(file, entryOffset(file, raw, 262) + 8), 32803U);
  EXPECT_NO_THROW(entryOffset(file, 8, 50735));
  EXPECT_THROW(entryOffset(file, raw, 50735), std::runtime_error);
}

TEST(DNGBuilder, WritesIsoAndExposureIntoTheExifDirectory) {
  const Bytes file = DNGBuilder().exif(200, std::pair{1, 125}).build();
  const std::size_t exif = pointerIn(file, 8, 34665);
  EXPECT_EQ(slice(file, entryOffset(file, exif, 34855), 10), bytesOf({0x27, 0x88, 3, 0, 1, 0, 0, 0, 200, 0}));
  EXPECT_EQ(slice(file, pointerIn(file, exif, 33434), 8), bytesOf({1, 0, 0, 0, 125, 0, 0, 0}));
}

TEST(DNGBuilder, WritesTheColoursOfACamera) {
  const Bytes file = DNGBuilder().neutral({0.5, 1, 0.75}).colourMatrix({2, -0.5, 0, 0, 1, 0, 0, 0, 1}, 21).build();
  EXPECT_EQ(slice(file, entryOffset(file, 8, 50778), 10), bytesOf({0x5A, 0xC6, 3, 0, 1, 0, 0, 0, 21, 0}));
  EXPECT_EQ(slice(file, entryOffset(file, 8, 50728), 8), bytesOf({0x28, 0xC6, 5, 0, 3, 0, 0, 0}));
  EXPECT_EQ(slice(file, pointerIn(file, 8, 50728), 8), bytesOf({0x88, 0x13, 0, 0, 0x10, 0x27, 0, 0}));
  EXPECT_EQ(slice(file, entryOffset(file, 8, 50721), 8), bytesOf({0x21, 0xC6, 10, 0, 9, 0, 0, 0}));
  EXPECT_EQ(slice(file, pointerIn(file, 8, 50721) + 8, 8), bytesOf({0x78, 0xEC, 0xFF, 0xFF, 0x10, 0x27, 0, 0}));
}

TEST(DNGBuilder, ACallWinsOverAGeneratedEntry) {
  const Bytes file = DNGBuilder().size(8, 6).rawTag(256, {3, {77}}).build();
  EXPECT_EQ(slice(file, entryOffset(file, 8, 256), 10), bytesOf({0, 1, 3, 0, 1, 0, 0, 0, 77, 0}));
}

TEST(DNGBuilder, ATakenAwayEntryIsAbsent) {
  EXPECT_NO_THROW(entryOffset(DNGBuilder().build(), 8, 50706));
  EXPECT_THROW(entryOffset(DNGBuilder().withoutFirstTag(50706).build(), 8, 50706), std::runtime_error);
  EXPECT_THROW(entryOffset(DNGBuilder().withoutRawTag(50706).build(), 8, 50706), std::runtime_error);
  EXPECT_THROW(entryOffset(DNGBuilder().linear().build(), 8, 33422), std::runtime_error);
}

TEST(DNGBuilder, RefusesSamplesThatCannotBeStored) {
  EXPECT_THROW(DNGBuilder().size(2, 1).samples({1}).build(), std::invalid_argument);
  EXPECT_THROW(DNGBuilder().size(1, 1).bits(12).samples({4096}).build(), std::invalid_argument);
  EXPECT_NO_THROW(DNGBuilder().size(1, 1).bits(12).samples({4095}).build());
}

TEST(DNGBuilder, WritesWhatItBuilds) {
  const tests::TemporaryFolder folder;
  DNGBuilder().write(folder / "a.dng");
  EXPECT_EQ(tests::readBytes(folder / "a.dng"), DNGBuilder().build());
}

}  // namespace
}  // namespace tessaly::tools
