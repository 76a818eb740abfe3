#include "dng/DNGMetadata.h"

#include <gtest/gtest.h>

#include <functional>

namespace tessaly::tests {
namespace {

const CFALayout rggb{2, 2, {0, 1, 1, 2}};

TEST(CFALayout, ComparesColours) {
  EXPECT_TRUE(rggb.matches(0, 0, 2, 4));
  EXPECT_TRUE(rggb.matches(1, 0, 0, 1)) << "the two greens match";
  EXPECT_FALSE(rggb.matches(0, 0, 1, 0));
  EXPECT_FALSE(rggb.matches(0, 0, 1, 1));
}

TEST(CFALayout, ContinuesBeyondTheActiveArea) {
  EXPECT_TRUE(rggb.matches(-2, -4, 0, 0));
  EXPECT_TRUE(rggb.matches(-1, -1, 1, 1));
  EXPECT_TRUE(rggb.matches(-1, 0, 1, 0));
  EXPECT_FALSE(rggb.matches(-1, 0, 0, 0));
  EXPECT_TRUE(rggb.matches(INT64_MIN, INT64_MIN, 0, 0));
}

DNGMetadata frame() {
  DNGMetadata metadata;
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->activeArea = {1, 2, 30, 40};
  metadata.cameraSerial = "12";
  metadata.model = "ONE";
  metadata.cfaLayout = rggb;
  return metadata;
}

using Change = std::function<void(DNGMetadata&)>;

// Compatibility with an unchanged frame, asked from both sides.
bool isCompatibleAfter(const Change& change) {
  DNGMetadata changed = frame();
  change(changed);
  const bool compatible = frame().isGeometryCompatible(changed);
  EXPECT_EQ(changed.isGeometryCompatible(frame()), compatible);
  return compatible;
}

TEST(GeometryCompatibility, HoldsForEqualFrames) {
  EXPECT_TRUE(isCompatibleAfter([](DNGMetadata&) {}));
}

TEST(GeometryCompatibility, NeedsTheSameBodyAndMode) {
  const std::vector<Change> changes{
      [](DNGMetadata& other) { other.model = "TWO"; },
      [](DNGMetadata& other) { other.cameraSerial = "13"; },
      [](DNGMetadata& other) { other.cameraSerial.reset(); },
      [](DNGMetadata& other) { other.sourceEncoding.reset(); },
      [](DNGMetadata& other) { other.sourceEncoding->activeArea.x = 9; },
      [](DNGMetadata& other) { other.rawWidth = 9; },
      [](DNGMetadata& other) { other.rawHeight = 9; },
      [](DNGMetadata& other) { other.activeX = 9; },
      [](DNGMetadata& other) { other.activeY = 9; },
      [](DNGMetadata& other) { other.activeWidth = 9; },
      [](DNGMetadata& other) { other.activeHeight = 9; },
      [](DNGMetadata& other) { other.bitsPerSample = 9; },
      [](DNGMetadata& other) { other.compression = 9; },
      [](DNGMetadata& other) { other.samplesPerPixel = 9; },
      [](DNGMetadata& other) { other.photometricInterpretation = 9; },
      [](DNGMetadata& other) { other.packing = RawPacking::packed12MSB; },
      [](DNGMetadata& other) { other.cfaLayout.reset(); },
      [](DNGMetadata& other) {
        other.cfaLayout->pattern = {2, 1, 1, 0};
      },
  };
  for (std::size_t i = 0; i < changes.size(); ++i)
    EXPECT_FALSE(isCompatibleAfter(changes[i])) << "change " << i;
}

TEST(GeometryCompatibility, DoesNotDependOnTheRest) {
  const std::vector<Change> changes{
      [](DNGMetadata& other) { other.make = "Maker"; },
      [](DNGMetadata& other) { other.blackLevel = 9; },
      [](DNGMetadata& other) { other.whiteLevel = 9; },
      [](DNGMetadata& other) { other.rawOffset = 9; },
      [](DNGMetadata& other) { other.rawByteCount = 9; },
      [](DNGMetadata& other) { other.rowsPerStrip = 9; },
      [](DNGMetadata& other) { other.iso = 9; },
      [](DNGMetadata& other) { other.exposureSeconds = 9; },
      [](DNGMetadata& other) { other.sourceEncoding->crop.x = 9; },
      [](DNGMetadata& other) { other.sourceEncoding->offsets = {9}; },
      [](DNGMetadata& other) { other.sourceEncoding->littleEndian = false; },
  };
  for (std::size_t i = 0; i < changes.size(); ++i)
    EXPECT_TRUE(isCompatibleAfter(changes[i])) << "change " << i;
}

TEST(GeometryCompatibility, HoldsWhereNeitherHasAnEncodingOrSerialOrLayout) {
  DNGMetadata bare = frame();
  bare.sourceEncoding.reset();
  bare.cameraSerial.reset();
  bare.cfaLayout.reset();
  EXPECT_TRUE(bare.isGeometryCompatible(bare));
}

TEST(DNGMetadata, KnowsTheReferenceSignalRange) {
  EXPECT_EQ(DNGMetadata::referenceSignalRange, 16163);
}

TEST(DNGMetadata, CountsSamplesIn64Bits) {
  DNGMetadata metadata;
  metadata.rawWidth = 100'000;
  metadata.rawHeight = 100'000;
  EXPECT_EQ(metadata.pixelCount(), 10'000'000'000);
}

}  // namespace
}  // namespace tessaly::tests
