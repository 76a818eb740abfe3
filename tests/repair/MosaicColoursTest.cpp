// The table of colours against the question that it answers.
#include "repair/MosaicColours.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

DNGMetadata sensor(std::int64_t activeX, std::int64_t activeY) {
  DNGMetadata metadata;
  metadata.rawWidth = 11;
  metadata.rawHeight = 9;
  metadata.activeX = activeX;
  metadata.activeY = activeY;
  return metadata;
}

void expectSameColours(const DNGMetadata& metadata) {
  const MosaicColours colours(metadata);
  const auto matches = [&](std::int64_t x, std::int64_t y) {
    return metadata.cfaLayout->matches(x - metadata.activeX, y - metadata.activeY, 0, 0);
  };
  for (std::int64_t y = 0; y < metadata.rawHeight; ++y) {
    for (std::int64_t x = 0; x < metadata.rawWidth; ++x) {
      const bool isSame = colours.at(x, y) == colours.at(metadata.activeX, metadata.activeY);
      ASSERT_EQ(isSame, matches(x, y)) << x << ", " << y;
    }
  }
}

TEST(MosaicColours, AreThoseOfThePatternAnchoredAtTheActiveArea) {
  for (std::int64_t activeX = 0; activeX < 5; ++activeX) {
    for (std::int64_t activeY = 0; activeY < 5; ++activeY) {
      DNGMetadata metadata = sensor(activeX, activeY);
      metadata.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
      expectSameColours(metadata);
      metadata.cfaLayout = CFALayout{3, 2, {0, 0, 1, 2, 0, 1}};
      expectSameColours(metadata);
      metadata.cfaLayout = CFALayout{1, 4, {0, 0, 1, 2}};
      expectSameColours(metadata);
    }
  }
}

TEST(MosaicColours, RepeatAfterTheWidthOfThePattern) {
  DNGMetadata metadata = sensor(0, 0);
  metadata.cfaLayout = CFALayout{3, 1, {0, 1, 2}};
  EXPECT_TRUE(MosaicColours(metadata).hasColours());
  EXPECT_EQ(MosaicColours(metadata).period(), 3);
}

TEST(MosaicColours, AreOneWithoutAPattern) {
  const DNGMetadata metadata = sensor(3, 2);
  const MosaicColours colours(metadata);
  EXPECT_FALSE(colours.hasColours());
  EXPECT_EQ(colours.period(), 1);
  EXPECT_EQ(colours.at(0, 0), colours.at(10, 8));
}

}  // namespace
}  // namespace tessaly
