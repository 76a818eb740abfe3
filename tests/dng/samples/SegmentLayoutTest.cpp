#include "dng/samples/SegmentLayout.h"

#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

SegmentLayout strips(std::int64_t width, std::int64_t height, std::int64_t bits, std::int64_t rowsPerStrip) {
  return SegmentLayout({width, height, bits, rowsPerStrip, std::nullopt, std::nullopt});
}

SegmentLayout tiles(std::int64_t width, std::int64_t height, std::int64_t tileWidth, std::int64_t tileHeight) {
  return SegmentLayout({width, height, 12, height, tileWidth, tileHeight});
}

TEST(SegmentLayout, CutsAnImageIntoStrips) {
  const SegmentLayout layout = strips(100, 3000, 16, 256);
  EXPECT_FALSE(layout.isTiled());
  EXPECT_EQ(layout.count(), 12);
  EXPECT_EQ(layout.rowBytes(), 200);
  EXPECT_EQ(layout.segment(0), (Segment{0, 0, 0, 100, 256, 256}));
  EXPECT_EQ(layout.segment(11), (Segment{11, 0, 2816, 100, 184, 184}));
  EXPECT_EQ(layout.byteCount(0), 256 * 200);
  EXPECT_EQ(layout.byteCount(11), 184 * 200);
}

TEST(SegmentLayout, CutsAnImageIntoTiles) {
  const SegmentLayout layout = tiles(100, 40, 32, 16);
  EXPECT_TRUE(layout.isTiled());
  EXPECT_EQ(layout.count(), 12);
  EXPECT_EQ(layout.rowBytes(), 48);
  EXPECT_EQ(layout.storedColumns(), 32);
  EXPECT_EQ(layout.segment(0), (Segment{0, 0, 0, 32, 16, 16}));
  EXPECT_EQ(layout.segment(7), (Segment{7, 96, 16, 4, 16, 16}));
  EXPECT_EQ(layout.segment(11), (Segment{11, 96, 32, 4, 8, 16})) << "tiles store their padding rows";
  EXPECT_EQ(layout.byteCount(11), 16 * 48);
}

TEST(SegmentLayout, StartsEveryRowOnAByte) {
  EXPECT_EQ(strips(3, 1, 10, 1).rowBytes(), 4);
  EXPECT_EQ(strips(5, 1, 14, 1).rowBytes(), 9);
  EXPECT_EQ(strips(1, 1, 12, 1).rowBytes(), 2);
}

TEST(SegmentLayout, HasOneStripWhereItHoldsMoreRowsThanThereAre) {
  const SegmentLayout layout = strips(10, 7, 8, 0xFFFFFFFF);
  EXPECT_EQ(layout.count(), 1);
  EXPECT_EQ(layout.segment(0), (Segment{0, 0, 0, 10, 7, 7}));
}

TEST(SegmentLayout, StaysExactAtTheLimits) {
  const SegmentLayout layout = SegmentLayout({100'000, 2'500, 16, 2'500, 100'000, 100'000});
  EXPECT_EQ(layout.count(), 1);
  EXPECT_EQ(layout.byteCount(0), 20'000'000'000);
}

TEST(SegmentLayout, FollowsARecord) {
  DNGMetadata metadata;
  metadata.rawWidth = 100;
  metadata.rawHeight = 40;
  metadata.bitsPerSample = 14;
  metadata.rowsPerStrip = 10;
  metadata.sourceEncoding.emplace();
  EXPECT_EQ(SegmentLayout::of(metadata).count(), 4);
  EXPECT_EQ(SegmentLayout::of(metadata).rowBytes(), 175);
  metadata.sourceEncoding->tileWidth = 64;
  metadata.sourceEncoding->tileHeight = 64;
  EXPECT_EQ(SegmentLayout::of(metadata).count(), 2);
  EXPECT_EQ(SegmentLayout::of(metadata).rowBytes(), 112);
}

}  // namespace
}  // namespace tessaly::tests
