#include "dng/metadata/MetadataFixture.h"
#include "dng/metadata/MetadataReader.h"
#include "dng/samples/RawPlaneSource.h"
#include "dng/samples/StoredRows.h"
#include "dng/tiff/DNGContainer.h"

#include <algorithm>
#include <functional>

namespace tessaly::tests {
namespace {

using Samples = std::vector<std::uint16_t>;

class RawPlaneSourceTest : public MetadataFixture {
 protected:
  // Opens what the builder makes and hands it to `use` with its record, which may be changed.
  void with(const DNGBuilder& builder, const std::function<void(const InputFile&, DNGMetadata&)>& use) const {
    builder.write(path());
    const DNGContainer container(path());
    DNGMetadata metadata = parseMetadata(container);
    use(container.file(), metadata);
  }
};

Samples ramp(std::size_t count, unsigned limit) {
  Samples all(count);
  for (std::size_t i = 0; i < count; ++i)
    all[i] = static_cast<std::uint16_t>(i * 41 % limit);
  return all;
}

std::string refusalOfReading(const InputFile& file, const DNGMetadata& metadata) {
  Samples plane(static_cast<std::size_t>(metadata.pixelCount()));
  const std::string reading = refusalOf([&] { return RawPlaneSource(file, metadata).readInto({plane, metadata}), 0; });
  const std::string visiting =
      refusalOf([&] { return RawPlaneSource(file, metadata).forEachRun([](const SampleRun&, const auto&) {}), 0; });
  EXPECT_EQ(reading, visiting);
  return reading;
}

std::vector<SampleRun> runsOf(const InputFile& file, const DNGMetadata& metadata) {
  std::vector<SampleRun> runs;
  RawPlaneSource(file, metadata).forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> samples) {
    EXPECT_EQ(static_cast<std::int64_t>(samples.size()), run.count);
    runs.push_back(run);
  });
  return runs;
}

TEST_F(RawPlaneSourceTest, VisitsRowsOfStrips) {
  with(DNGBuilder().size(5, 3).strips(2), [](const InputFile& file, const DNGMetadata& metadata) {
    EXPECT_EQ(runsOf(file, metadata), (std::vector<SampleRun>{{0, 0, 5}, {1, 0, 5}, {2, 0, 5}}));
  });
}

TEST_F(RawPlaneSourceTest, VisitsRowsOfTilesWithoutTheirPadding) {
  with(DNGBuilder().size(5, 3).tiles(4, 2), [](const InputFile& file, const DNGMetadata& metadata) {
    EXPECT_EQ(runsOf(file, metadata),
              (std::vector<SampleRun>{{0, 0, 4}, {1, 0, 4}, {0, 4, 1}, {1, 4, 1}, {2, 0, 4}, {2, 4, 1}}));
  });
}

TEST_F(RawPlaneSourceTest, VisitsSamplesBehindTheTable) {
  const DNGBuilder builder = DNGBuilder().size(4, 1).bits(8).linearization({5, 60, 700}).samples({2, 1, 0, 1});
  with(builder, [](const InputFile& file, const DNGMetadata& metadata) {
    RawPlaneSource(file, metadata).forEachRun([](const SampleRun&, std::span<const std::uint16_t> samples) {
      EXPECT_EQ(Samples(samples.begin(), samples.end()), (Samples{700, 60, 5, 60}));
    });
  });
}

TEST_F(RawPlaneSourceTest, VisitsTheSamplesThatItReads) {
  const Samples all = ramp(70 * 50, 4096);
  for (const DNGBuilder& builder : {DNGBuilder().bits(12).strips(7), DNGBuilder().bits(12).tiles(32, 16),
                                    DNGBuilder().bits(16).strips(50), DNGBuilder().bits(16).bigEndian()}) {
    with(DNGBuilder(builder).size(70, 50).samples(all), [&](const InputFile& file, const DNGMetadata& metadata) {
      const ConstPlaneView plane(all, metadata);
      RawPlaneSource(file, metadata).forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> samples) {
        EXPECT_TRUE(std::ranges::equal(samples, plane.run(run))) << run.row;
      });
    });
  }
}

// Larger than a slice, so that rows cross from one slice into the next.
TEST_F(RawPlaneSourceTest, ReadsImagesOfManySlices) {
  const Samples all = ramp(1601 * 1501, 4096);
  for (const DNGBuilder& builder :
       {DNGBuilder().bits(12), DNGBuilder().bits(12).strips(100), DNGBuilder().bits(12).strips(1),
        DNGBuilder().bits(12).tiles(256, 256), DNGBuilder().bits(16).bigEndian().strips(900),
        DNGBuilder().bits(14).strips(64).gapBetweenSegments(3),
        DNGBuilder().bits(12).strips(16).segmentsInReverseOrder()}) {
    with(DNGBuilder(builder).size(1601, 1501).samples(all), [&](const InputFile& file, const DNGMetadata& metadata) {
      Samples plane(all.size());
      RawPlaneSource(file, metadata).readInto({plane, metadata});
      EXPECT_TRUE(plane == all);
    });
  }
}

TEST_F(RawPlaneSourceTest, ReadsStripsThatShareTheirBytes) {
  const Samples row = ramp(20, 1024);
  with(DNGBuilder().size(20, 6).bits(10).strips(1), [&](const InputFile& file, DNGMetadata& metadata) {
    for (std::int64_t& offset : metadata.sourceEncoding->offsets)
      offset = metadata.sourceEncoding->offsets.back();
    Samples plane(120, 1);
    RawPlaneSource(file, metadata).readInto({plane, metadata});
    EXPECT_EQ(plane, Samples(120, 0));
  });
}

// ---- Segments that are not there

TEST_F(RawPlaneSourceTest, RejectsASegmentOutsideTheFile) {
  for (const int bits : {12, 16}) {
    with(DNGBuilder().size(8, 6).bits(bits).strips(2), [](const InputFile& file, DNGMetadata& metadata) {
      metadata.sourceEncoding->offsets[1] = file.size() + 1;
      EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 1");
      metadata.sourceEncoding->offsets[1] = INT64_MAX;
      EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 1");
    });
  }
}

TEST_F(RawPlaneSourceTest, RejectsAByteCountThatLeavesTheFile) {
  with(DNGBuilder().size(8, 6).strips(2), [](const InputFile& file, DNGMetadata& metadata) {
    metadata.sourceEncoding->byteCounts[2] += 1;
    EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 2");
  });
}

TEST_F(RawPlaneSourceTest, RejectsASegmentThatIsTooShort) {
  with(DNGBuilder().size(8, 6).strips(4), [](const InputFile& file, DNGMetadata& metadata) {
    EXPECT_EQ(refusalOfReading(file, metadata), "");
    metadata.sourceEncoding->byteCounts[1] -= 1;
    EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 1");
  });
  with(DNGBuilder().size(8, 6).tiles(8, 8), [](const InputFile& file, DNGMetadata& metadata) {
    metadata.sourceEncoding->byteCounts[0] -= 1;
    EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 0") << "tiles hold their padding";
  });
}

TEST_F(RawPlaneSourceTest, RejectsAFileThatShrinksWhileItIsRead) {
  for (const int bits : {12, 16}) {
    with(DNGBuilder().size(8, 6).bits(bits).strips(2), [&](const InputFile& file, const DNGMetadata& metadata) {
      std::filesystem::resize_file(path(), static_cast<std::uintmax_t>(metadata.sourceEncoding->offsets[1] + 5));
      EXPECT_EQ(refusalOfReading(file, metadata), "Incomplete DNG file: Raw segment 1");
    });
  }
}

TEST_F(RawPlaneSourceTest, ReportsEarlierRowsBeforeTheMissingOnes) {
  with(DNGBuilder().size(8, 6).bits(12).strips(2), [&](const InputFile& file, const DNGMetadata& metadata) {
    std::filesystem::resize_file(path(), static_cast<std::uintmax_t>(metadata.sourceEncoding->offsets[1]));
    std::int64_t rows = 0;
    EXPECT_EQ(refusalOf([&] {
                RawPlaneSource(file, metadata).forEachRun([&](const SampleRun&, const auto&) { ++rows; });
                return 0;
              }),
              "Incomplete DNG file: Raw segment 1");
    EXPECT_EQ(rows, 2);
  });
}

}  // namespace
}  // namespace tessaly::tests
