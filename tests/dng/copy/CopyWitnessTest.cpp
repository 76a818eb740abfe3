// Programs of other people as witnesses: a copy says the same as its source, and nobody complains about it who does not
// complain about the source.
#include "dng/copy/CopyWitness.h"

namespace tessaly {
namespace {

using testing::IsEmpty;
using tests::CopyWitness;
using tests::noise;
using tests::Samples;
using tests::tagsOf;
using tools::DNGBuilder;

TEST_F(CopyWitness, FindsTheSameTagsInACopyInTheSourceForm) {
  for (const DNGBuilder& builder : {camera(), camera().inSubIFD(), camera().tiles(16, 16).bigEndian()}) {
    makeSource(builder);
    destination = folder / "copy.dng";
    std::filesystem::remove(destination);
    copy(noise(40 * 30, 12, 2));
    EXPECT_THAT(changedTags(), IsEmpty());
    expectNoNewComplaints();
  }
}

TEST_F(CopyWitness, FindsOnlyTheStorageChangedInAReencodedCopy) {
  Samples table;
  for (int code = 0; code < 256; ++code)
    table.push_back(static_cast<std::uint16_t>(code * 16));
  for (const bool inSubIFD : {false, true}) {
    DNGBuilder builder = camera().linearization(table).rawTag(50972, {1, std::vector<std::int64_t>(16, 3)});
    if (inSubIFD) builder.inSubIFD();
    makeSource(builder);
    destination = folder / ("copy" + std::to_string(inSubIFD) + ".dng");
    copy(noise(40 * 30, 12, 2));
    std::set<std::string> expected;
    for (const char* tag :
         {"BitsPerSample", "FillOrder", "LinearizationTable", "RawImageDigest", "StripByteCounts", "StripOffsets"})
      expected.insert((inSubIFD ? "SubIFD:" : "IFD0:") + std::string(tag));
    EXPECT_EQ(changedTags(), expected);
    expectNoNewComplaints();
  }
}

TEST_F(CopyWitness, FindsOnlyTheExposureChangedInACopyWithASyntheticOne) {
  makeSource(camera());
  copy(noise(40 * 30, 12, 2), false, 0.5);
  EXPECT_EQ(changedTags(), (std::set<std::string>{"Composite:ShutterSpeed", "ExifIFD:ExposureTime"}));
  EXPECT_EQ(tagsOf(destination).at("ExifIFD:ExposureTime"), 0.5);
  expectNoNewComplaints();
}

}  // namespace
}  // namespace tessaly
