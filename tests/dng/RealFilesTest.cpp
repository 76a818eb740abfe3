// Files of real cameras, read and refused.
#include "dng/DNGReader.h"
#include "dng/LibRawWitness.h"
#include "dng/metadata/Refusal.h"
#include "support/FileBytes.h"
#include "support/NaiveRawReader.h"
#include "support/RealFiles.h"

#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

using Samples = std::vector<std::uint16_t>;

struct RealFile {
  const char* name;
  const char* expected;  // how it is refused
};

void PrintTo(const RealFile& file, std::ostream* out) {
  *out << file.name;
}

class RealFiles : public testing::TestWithParam<RealFile> {
 protected:
  [[nodiscard]] static std::filesystem::path path() { return realFilesFolder / GetParam().name; }
};

class AcceptedFiles : public RealFiles {};

TEST_P(AcceptedFiles, AreReadAsBitByBit) {
  const RawPlane plane = DNGReader::readPlane(path());
  const std::vector<std::byte> file = readBytes(path());
  EXPECT_TRUE(NaiveRawReader(file, plane.metadata).readPlane() == Samples(plane.samples.begin(), plane.samples.end()));
}

TEST_P(AcceptedFiles, AreReadAsLibRawReadsThem) {
  const std::optional<WitnessedPlane> witness = readWithLibRaw(path());
  ASSERT_TRUE(witness);
  const RawPlane plane = DNGReader::readPlane(path());
  ASSERT_EQ(witness->width, plane.metadata.rawWidth);
  ASSERT_EQ(witness->height, plane.metadata.rawHeight);
  EXPECT_TRUE(witness->samples == Samples(plane.samples.begin(), plane.samples.end()));
}

INSTANTIATE_TEST_SUITE_P(OfCameras, AcceptedFiles,
                         testing::Values(RealFile{"accept/10bit-strip-bggr-dark.dng", ""},
                                         RealFile{"accept/10bit-strip-brighter.dng", ""},
                                         RealFile{"accept/10bit-strip-dark-2.dng", ""},
                                         RealFile{"accept/10bit-strip-light.dng", ""},
                                         RealFile{"accept/10bit-strip-saturated.dng", ""},
                                         RealFile{"accept/14bit-strip-masked-border-hot-pixels.dng", ""},
                                         RealFile{"accept/16bit-subifd-preview.dng", ""},
                                         RealFile{"series/IMG_1.dng", ""}, RealFile{"series/IMG_14.dng", ""}));

class RefusedFiles : public RealFiles {};

TEST_P(RefusedFiles, HaveTheirOwnReason) {
  EXPECT_EQ(refusalOf([] { return DNGReader::readPlane(path()); }), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    OfCameras, RefusedFiles,
    testing::Values(
        RealFile{"reject/compression-9.dng", "Unsupported DNG: DNG compression 9 is not supported"},
        RealFile{"reject/linear-rgb-many-subifds.dng", "Unsupported DNG: One BitsPerSample value is required"},
        RealFile{"reject/lossless-jpeg-bigendian-tiles-linearization.dng",
                 "Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet"},
        RealFile{"reject/lossless-jpeg-phone-tiles.dng",
                 "Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet"},
        RealFile{"reject/lossy-linear-rgb.dng", "Unsupported DNG: One BitsPerSample value is required"},
        RealFile{"reject/malformed-photometric-35.dng", "Invalid DNG structure: No main raw image IFD"},
        RealFile{"reject/truncated-linear-rgb-bigendian.dng", "Unsupported DNG: One BitsPerSample value is required"},
        RealFile{"reject/truncated-lossless-jpeg.dng", "Incomplete DNG file: TIFF field at 28428288, length 42"},
        RealFile{"reject/uncompressed-linear-rgb-tiny.dng", "Unsupported DNG: One BitsPerSample value is required"}));

// Their images are uncompressed and complete, but their directories break rules that keep hostile files out.
INSTANTIATE_TEST_SUITE_P(WithDamagedDirectories, RefusedFiles,
                         testing::Values(RealFile{"accept/10bit-one-tile-gbrg.dng",
                                                  "Invalid DNG structure: Duplicate TIFF tag 50706"},
                                         RealFile{"accept/1x1-no-image-in-first-directory.dng",
                                                  "Invalid DNG structure: Too many IFD entries"}));

}  // namespace
}  // namespace tessaly::tests
