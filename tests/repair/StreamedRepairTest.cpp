// The streamed road against the plane in memory: the same bytes, the same counts, the same refusals, for every depth,
// order and layout, however small the slices are and whenever the copy is verified.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/DNGWriter.h"
#include "repair/RepairCopy.h"
#include "repair/RepairEngine.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace tessaly {
namespace {

/// How the rows of the image lie in the file.
enum class Storage { oneStrip, strips, stripsFromTheEnd, rowStrips, tiles, tilesFromTheEnd, lowTiles, sharedTiles };

/// What stands between a code and its sample.
enum class Table { none, full, tooShort };

using Kind = std::tuple<int, bool, int, Storage, Table>;  // bits, little-endian, fill order

class StreamedRepair : public testing::TestWithParam<Kind> {
 protected:
  static constexpr std::int64_t columns = 53;  // neither a whole number of groups nor of tiles
  static constexpr std::int64_t rows = 150;    // more than the rules reach

  struct Outcome {
    std::string failure;
    RepairReport report;
    std::vector<std::byte> bytes;

    bool operator==(const Outcome&) const = default;
  };

  [[nodiscard]] tools::DNGBuilder builder() {
    const auto [bits, little, fillOrder, storage, table] = GetParam();
    tools::DNGBuilder made;
    made.size(columns, rows)
        .bits(bits)
        .fillOrder(fillOrder)
        .paddingByte(0x5A)
        .trailingBytes(3)
        .activeArea(3, 1, 150, 53);
    if (!little) made.bigEndian();
    if (draw(3) == 0) made.linear();
    const std::int64_t codes = std::int64_t{1} << bits;
    if (table != Table::none) made.linearization(risingTable(table == Table::full ? codes : codes - 3)).white(60000);
    std::vector<std::uint16_t> samples(static_cast<std::size_t>(columns * rows));
    for (std::uint16_t& sample : samples)
      sample = static_cast<std::uint16_t>(draw(table == Table::tooShort ? codes - 3 : codes));
    return store(made.samples(samples), storage);
  }

  static tools::DNGBuilder store(tools::DNGBuilder made, Storage storage) {
    switch (storage) {
      case Storage::oneStrip:
        return made;
      case Storage::strips:
        return made.strips(7).gapBetweenSegments(1);
      case Storage::stripsFromTheEnd:
        return made.strips(11).segmentsInReverseOrder();
      case Storage::rowStrips:
        return made.strips(1);
      case Storage::tiles:
        return made.tiles(16, 32);
      case Storage::tilesFromTheEnd:
        return made.tiles(24, 9).segmentsInReverseOrder().gapBetweenSegments(3);
      case Storage::lowTiles:
        return made.tiles(64, 1);
      case Storage::sharedTiles:
        break;
    }
    made.tiles(64, 50);
    std::vector<std::int64_t> offsets = made.segmentOffsets();
    offsets[1] = offsets[0] + 1;  // most rows of one lie in those of the other
    return made.rawTag(324, {4, offsets});
  }

  [[nodiscard]] std::vector<std::uint16_t> risingTable(std::int64_t entries) {
    std::vector<std::uint16_t> table(static_cast<std::size_t>(entries));
    for (std::uint16_t& entry : table)
      entry = static_cast<std::uint16_t>(draw(60000));
    std::sort(table.begin(), table.end());
    return table;
  }

  void addDefects() {
    profile = CameraProfile::empty("Body", DNGReader::readMetadata(source));
    for (std::int64_t i = draw(40); i > 0; --i)
      profile.pixels.push_back({draw(columns), draw(rows), 1.0, ""});
    for (std::int64_t i = draw(4); i > 0; --i) {
      const std::int64_t first = draw(rows);
      profile.lines.push_back({draw(columns - 3), first, first + draw(rows - first), 1 + draw(3), 1.0, ""});
    }
    if (draw(2) == 0) return;
    for (std::int64_t i = draw(5); i > 0; --i)
      profile.spots->push_back({10 + draw(columns - 20), 10 + draw(rows - 20), 1 + draw(10), 1 + draw(10), 1.0, ""});
  }

  [[nodiscard]] Outcome inMemory() {
    return outcome([this](const auto& copy) {
      RawPlane plane = DNGReader::readPlane(source);
      const RepairReport report = RepairEngine::repair(plane.samples, plane.metadata, profile);
      DNGWriter::writeCopy(source, copy, plane.samples, false, std::nullopt);
      return report;
    });
  }

  [[nodiscard]] Outcome streamed(std::int64_t sliceBytes, Verification verification, bool clones) {
    return outcome([&](const auto& copy) {
      RepairWorkspace workspace;
      workspace.sliceBytes = sliceBytes;
      workspace.verification = verification;
      tests::FailingFileSystem system;
      if (clones) system.offerClones();
      return DNGWriter::repairCopy(source, copy, profile, workspace, system).report;
    });
  }

  template <typename Repair>
  [[nodiscard]] Outcome outcome(Repair repair) {
    const std::filesystem::path copy = folder / "copy.dng";
    Outcome made;
    try {
      made.report = repair(copy);
      made.bytes = tests::readBytes(copy);
    } catch (const DNGError& error) {
      made.failure = error.innermost().what();
    }
    remove(copy);
    return made;
  }

  std::int64_t draw(std::int64_t below) { return static_cast<std::int64_t>(random() % static_cast<unsigned>(below)); }

  std::mt19937 random{std::mt19937::default_seed};
  tests::TemporaryFolder folder{"/dev/shm"};
  std::filesystem::path source = folder / "source.dng";
  CameraProfile profile;
};

TEST_P(StreamedRepair, GivesTheBytesOfThePlaneInMemory) {
  for (int file = 0; file < 3; ++file) {
    builder().write(source);
    addDefects();
    const Outcome plane = inMemory();
    EXPECT_TRUE(streamed(1, Verification::afterwards, false) == plane) << file;
    EXPECT_TRUE(streamed(700, Verification::behindTheWriter, false) == plane) << file;
    EXPECT_TRUE(streamed(2500, Verification::afterwards, true) == plane) << file;
    EXPECT_TRUE(streamed(SliceLayout::usualBytes, Verification::behindTheWriter, true) == plane) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Plain, StreamedRepair,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Values(1, 2),
                                          testing::Values(Storage::oneStrip, Storage::strips, Storage::stripsFromTheEnd,
                                                          Storage::rowStrips, Storage::tiles, Storage::tilesFromTheEnd,
                                                          Storage::lowTiles, Storage::sharedTiles),
                                          testing::Values(Table::none)));

INSTANTIATE_TEST_SUITE_P(Linearized, StreamedRepair,
                         testing::Combine(testing::Values(8, 12), testing::Values(true), testing::Values(1, 2),
                                          testing::Values(Storage::oneStrip, Storage::strips, Storage::tiles),
                                          testing::Values(Table::full, Table::tooShort)));

class StreamedRefusal : public StreamedRepair {};

// A line's texture may go beyond the depth where the white level does.
TEST_P(StreamedRefusal, OfSamplesBeyondTheDepthComesBeforeAFolderIsMade) {
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(columns * rows), 4095);
  for (std::size_t i = 0; i < samples.size(); i += 7)
    samples[i] = 0;
  tools::DNGBuilder().size(columns, rows).bits(12).white(65535).linear().samples(samples).write(source);
  profile = CameraProfile::empty("Body", DNGReader::readMetadata(source));
  profile.lines = {{20, 0, rows - 1, 1, 1.0, ""}};
  const Outcome plane = inMemory();
  EXPECT_EQ(plane.failure, "Invalid DNG structure: Sample exceeds source bit depth");
  EXPECT_TRUE(streamed(300, Verification::afterwards, false) == plane);
  RepairWorkspace workspace;
  const std::filesystem::path missing = folder / "missing";
  EXPECT_THROW(DNGWriter::repairCopy(source, missing / "copy.dng", profile, workspace), DNGError);
  EXPECT_FALSE(exists(missing));
}

// The same file is refused or not as the table says, before the destination is looked at.
TEST_P(StreamedRefusal, OfCodesBeyondTheTableComesBeforeTheDestinationIsLookedAt) {
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(columns * rows), 1);
  samples.back() = 2;
  tools::DNGBuilder().size(columns, rows).bits(8).strips(7).linearization({0, 7}).samples(samples).write(source);
  profile = CameraProfile::empty("Body", DNGReader::readMetadata(source));
  tests::writeText(folder / "taken.dng", "somebody else's");
  try {
    DNGWriter::repairCopy(source, folder / "taken.dng", profile);
    ADD_FAILURE() << "nothing thrown";
  } catch (const DNGError& error) {
    EXPECT_STREQ(error.what(), "source.dng: Invalid DNG structure: Sample exceeds LinearizationTable");
  }
}

INSTANTIATE_TEST_SUITE_P(Once, StreamedRefusal, testing::Values(Kind{12, true, 1, Storage::oneStrip, Table::none}));

}  // namespace
}  // namespace tessaly
