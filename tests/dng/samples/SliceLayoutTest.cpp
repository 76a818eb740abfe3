// Slices by hand, and every sample of small images in its place.
#include "dng/samples/SliceLayout.h"

#include <gmock/gmock.h>

namespace tessaly {
namespace {

using testing::ElementsAre;

DNGMetadata stripsOf(std::int64_t width, std::int64_t height, std::int64_t rowsPerStrip,
                     std::vector<std::int64_t> offsets) {
  DNGMetadata metadata;
  metadata.rawWidth = width;
  metadata.rawHeight = height;
  metadata.bitsPerSample = 16;
  metadata.rowsPerStrip = rowsPerStrip;
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->offsets = std::move(offsets);
  return metadata;
}

DNGMetadata tilesOf(std::int64_t width, std::int64_t height, std::int64_t tileWidth, std::int64_t tileHeight,
                    std::vector<std::int64_t> offsets) {
  DNGMetadata metadata = stripsOf(width, height, 0, std::move(offsets));
  metadata.sourceEncoding->tileWidth = tileWidth;
  metadata.sourceEncoding->tileHeight = tileHeight;
  return metadata;
}

std::vector<SliceRows> slicesOf(const SliceLayout& layout, std::int64_t height) {
  std::vector<SliceRows> slices;
  for (std::int64_t row = 0; row < height; row = slices.back().last)
    slices.push_back(layout.sliceFrom(row));
  return slices;
}

TEST(SliceLayout, GoesOverStripsAndJoinsThoseThatFollowEachOther) {
  const DNGMetadata metadata = stripsOf(10, 7, 2, {100, 140, 300, 400});
  const SliceLayout layout(metadata, 100);
  EXPECT_EQ(layout.mostRows(), 5);
  EXPECT_THAT(slicesOf(layout, 7), ElementsAre(SliceRows{0, 5}, SliceRows{5, 7}));
  EXPECT_THAT(layout.pieces({0, 5}), ElementsAre(SlicePiece{0, 100, 0, 80}, SlicePiece{2, 300, 80, 20}));
  EXPECT_THAT(layout.pieces({5, 7}), ElementsAre(SlicePiece{2, 320, 0, 20}, SlicePiece{3, 400, 20, 20}));
  EXPECT_TRUE(layout.endsSegments({0, 5}));
}

TEST(SliceLayout, KeepsWithinARowOfTiles) {
  const DNGMetadata metadata = tilesOf(10, 7, 8, 4, {100, 200, 300, 400});
  const SliceLayout layout(metadata, 96);
  EXPECT_EQ(layout.mostRows(), 3);
  EXPECT_THAT(slicesOf(layout, 7), ElementsAre(SliceRows{0, 3}, SliceRows{3, 4}, SliceRows{4, 7}));
  EXPECT_THAT(layout.pieces({0, 3}), ElementsAre(SlicePiece{0, 100, 0, 48}, SlicePiece{1, 200, 48, 48}));
  EXPECT_THAT(layout.pieces({3, 4}), ElementsAre(SlicePiece{0, 148, 0, 16}, SlicePiece{1, 248, 48, 16}));
  EXPECT_THAT(layout.pieces({4, 7}), ElementsAre(SlicePiece{2, 300, 0, 48}, SlicePiece{3, 400, 48, 48}));
  EXPECT_FALSE(layout.endsSegments({0, 3}));
  EXPECT_TRUE(layout.endsSegments({3, 4}));
  EXPECT_TRUE(layout.endsSegments({4, 7}));
}

TEST(SliceLayout, JoinsWholeTilesThatFollowEachOther) {
  const DNGMetadata metadata = tilesOf(10, 8, 8, 4, {100, 164, 300, 364});
  const SliceLayout layout(metadata);
  EXPECT_THAT(layout.pieces({0, 4}), ElementsAre(SlicePiece{0, 100, 0, 128}));
  EXPECT_THAT(layout.pieces({4, 8}), ElementsAre(SlicePiece{2, 300, 0, 128}));
}

TEST(SliceLayout, HasARowHoweverLongItIsAndNotThousandsOfShortOnes) {
  const DNGMetadata wide = stripsOf(1000, 2, 2, {8});
  EXPECT_EQ(SliceLayout(wide, 1).mostRows(), 1);
  const DNGMetadata narrow = stripsOf(1, 100'000, 100'000, {8});
  EXPECT_EQ(SliceLayout(narrow).mostRows(), 1024);
}

TEST(SliceLayout, FindsASampleInItsSliceAndInTheFile) {
  DNGMetadata metadata = tilesOf(10, 7, 8, 4, {100, 200, 300, 400});
  metadata.bitsPerSample = 12;
  const SliceLayout layout(metadata, 72);  // 3 rows of two tiles, 12 bytes a row each
  EXPECT_EQ(layout.mostRows(), 3);
  EXPECT_EQ(layout.bitInSlice(5, 1, 0), 8 * 12 + 60);
  EXPECT_EQ(layout.bitInSlice(9, 2, 0), 8 * (36 + 24) + 12);
  EXPECT_EQ(layout.bitInFile(5, 1), 8 * 112 + 60);
  EXPECT_EQ(layout.bitInFile(9, 6), 8 * 424 + 12);
  const DNGMetadata strips = stripsOf(10, 7, 2, {100, 140, 300, 400});
  EXPECT_EQ(SliceLayout(strips, 100).bitInFile(3, 5), 8 * (300 + 20) + 48);
}

}  // namespace
}  // namespace tessaly
