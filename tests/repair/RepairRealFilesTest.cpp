// Files of real cameras, repaired with a profile of one pixel, one short column and one spot.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "repair/DefectMap.h"
#include "repair/RepairCopy.h"
#include "support/RealFiles.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>

namespace tessaly {
namespace {

using testing::UnorderedElementsAre;

using Path = std::filesystem::path;

/// In the middle of the sensor; the pixel alone where there is no room for more.
CameraProfile withDefects(CameraProfile profile) {
  const std::int64_t x = profile.rawWidth / 2;
  const std::int64_t y = profile.rawHeight / 2;
  DefectPixel pixel;
  pixel.x = x;
  pixel.y = y;
  profile.pixels = {pixel};
  if (profile.rawWidth <= 100 || profile.rawHeight <= 100) return profile;
  DefectLine line;
  line.x = x + 20;
  line.yStart = y - 10;
  line.yEnd = y + 10;
  DefectSpot spot;
  spot.x = x - 20;
  spot.y = y;
  spot.radiusX = spot.radiusY = 4;
  profile.lines = {line};
  profile.spots = {spot};
  return profile;
}

/// How many samples outside the defects differ.
std::int64_t strayChanges(const Path& source, const Path& copy, const DefectMap& defects) {
  const RawPlane before = DNGReader::readPlane(source);
  const RawPlane after = DNGReader::readPlane(copy);
  EXPECT_EQ(before.samples.size(), after.samples.size());
  std::int64_t changes = 0;
  for (std::size_t i = 0; i < before.samples.size(); ++i) {
    const auto place = static_cast<std::int64_t>(i);
    const std::int64_t width = before.metadata.rawWidth;
    const bool mayChange = defects.all.contains(place % width, place / width);
    if (!mayChange && before.samples[i] != after.samples[i]) ++changes;
  }
  return changes;
}

void expectRepaired(const Path& source, const Path& copy) {
  const CameraProfile profile = withDefects(CameraProfile::empty("Body", DNGReader::readMetadata(source)));
  const DefectMap defects(profile, profile.rawWidth, profile.rawHeight);
  RepairWorkspace workspace;
  EXPECT_EQ(DNGWriter::repairCopy(source, copy, profile, workspace).report.changedSamples, defects.all.count());
  EXPECT_EQ(strayChanges(source, copy, defects), 0);
}

TEST(RealFiles, AreRepaired) {
  const tests::TemporaryFolder folder;
  std::set<std::string> refused;
  for (const Path& file : tests::realFiles("accept")) {
    SCOPED_TRACE(file);
    try {
      expectRepaired(file, folder / file.filename());
    } catch (const DNGError&) {
      refused.insert(file.filename());
    }
  }
  // The reader's tests tell why.
  EXPECT_THAT(refused, UnorderedElementsAre("10bit-one-tile-gbrg.dng", "1x1-no-image-in-first-directory.dng"));
}

}  // namespace
}  // namespace tessaly
