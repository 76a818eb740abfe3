#include "dng/HandMadeTIFF.h"
#include "dng/metadata/Refusal.h"
#include "dng/tiff/DNGContainer.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <system_error>

namespace tessaly::tests {
namespace {

class DNGContainerTest : public testing::Test {
 protected:
  [[nodiscard]] DNGContainer open(const HandMadeTIFF& tiff, std::int64_t fileSize = 0) const {
    tiff.write(folder_ / "a.dng", fileSize);
    return DNGContainer(folder_ / "a.dng");
  }

  [[nodiscard]] std::string refusal(const HandMadeTIFF& tiff, std::int64_t fileSize = 0) const {
    return refusalOf([&] { return open(tiff, fileSize); });
  }

  [[nodiscard]] std::string refusalOfText(const std::string& text) const {
    writeText(folder_ / "a.dng", text);
    return refusalOf([&] { return DNGContainer(folder_ / "a.dng"); });
  }

  TemporaryFolder folder_;
};

HandMadeTIFF smallest(bool little = true) {
  return HandMadeTIFF(little).directory(8, {dngVersion()});
}

constexpr const char* sizeLimit = "Invalid DNG structure: DNG size limit (2 GB)";
constexpr const char* cyclic = "Invalid DNG structure: Cyclic or excessive IFD chain";
constexpr const char* missingVersion = "Invalid DNG structure: Missing DNGVersion";

// ---- Size and header

TEST_F(DNGContainerTest, RejectsSevenBytesByTheirSize) {
  EXPECT_EQ(refusalOfText("II*\0\0\0\0"), sizeLimit);
  EXPECT_EQ(refusalOfText(std::string(7, '\0')), sizeLimit);
  EXPECT_EQ(refusalOfText(""), sizeLimit);
}

TEST_F(DNGContainerTest, LooksIntoEightBytes) {
  EXPECT_EQ(refusalOfText(std::string(8, '\0')), "Invalid DNG structure: TIFF byte order");
}

TEST_F(DNGContainerTest, AcceptsExactlyTwoBillionBytes) {
  EXPECT_EQ(refusal(smallest(), 2'000'000'000), "");
  EXPECT_EQ(refusal(smallest(), 2'000'000'001), sizeLimit);
}

TEST_F(DNGContainerTest, RefusesAFolderByTheSizeMessage) {
  EXPECT_EQ(refusalOf([&] { return DNGContainer(folder_.path()); }), sizeLimit);
}

TEST_F(DNGContainerTest, RefusesAFIFOWithoutWaiting) {
  ASSERT_EQ(::mkfifo((folder_ / "fifo.dng").c_str(), 0600), 0);
  EXPECT_EQ(refusalOf([&] { return DNGContainer(folder_ / "fifo.dng"); }), sizeLimit);
}

TEST_F(DNGContainerTest, PassesOnTheSystemsError) {
  EXPECT_THROW(DNGContainer(folder_ / "missing.dng"), std::system_error);
}

TEST_F(DNGContainerTest, KnowsBothByteOrders) {
  EXPECT_TRUE(open(smallest(true)).little());
  EXPECT_FALSE(open(smallest(false)).little());
  EXPECT_EQ(refusal(smallest().put(1, 'M', 1)), "Invalid DNG structure: TIFF byte order");
  EXPECT_EQ(refusal(smallest().put(0, 'i', 1)), "Invalid DNG structure: TIFF byte order");
}

TEST_F(DNGContainerTest, RequiresClassicTIFF) {
  EXPECT_EQ(refusal(smallest().put(2, 43, 2)), "Unsupported DNG: Classic TIFF required");
  EXPECT_EQ(refusal(smallest(false).put(2, 43, 2)), "Unsupported DNG: Classic TIFF required");
  EXPECT_EQ(refusal(smallest().put(2, 42 << 8, 2)), "Unsupported DNG: Classic TIFF required");
}

// ---- DNGVersion

TEST_F(DNGContainerTest, MissesTheVersionWhereThereIsNoDirectory) {
  EXPECT_EQ(refusal(HandMadeTIFF(true, 0)), missingVersion);
  EXPECT_EQ(refusal(HandMadeTIFF(false, 0)), missingVersion);
}

TEST_F(DNGContainerTest, MissesTheVersionInAPlainTIFF) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{256, 4, 1, {100}}})), missingVersion);
}

TEST_F(DNGContainerTest, RequiresFourBytesOfVersion) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {elsewhere(50706, 3, 4, 40)}).growTo(60)), missingVersion);
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{50706, 1, 3, {1, 4, 0}, 1}})), missingVersion);
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{50706, 7, 4, {1, 4, 0, 0}, 1}})), missingVersion);
}

TEST_F(DNGContainerTest, RejectsAnotherMajorVersion) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{50706, 1, 4, {2, 0, 0, 0}, 1}})),
            "Unsupported DNG: DNGVersion [2.0, 0.0, 0.0, 0.0]");
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{50706, 1, 4, {0, 255, 10, 3}, 1}})),
            "Unsupported DNG: DNGVersion [0.0, 255.0, 10.0, 3.0]");
}

TEST_F(DNGContainerTest, LooksForTheVersionInTheFirstDirectoryOnly) {
  const HandMadeTIFF tiff = HandMadeTIFF().directory(8, {{256, 4, 1, {1}}}, 40).directory(40, {dngVersion()});
  EXPECT_EQ(refusal(tiff), missingVersion);
}

TEST_F(DNGContainerTest, LooksForTheVersionAfterTheWalk) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {{256, 4, 1, {1}}}, 8)), cyclic);
}

// ---- Directories

TEST_F(DNGContainerTest, RecordsWhereThingsStand) {
  const DNGContainer container =
      open(HandMadeTIFF().directory(8, {dngVersion(), elsewhere(271, 2, 6, 60), {258, 3, 1, {12}, 2}}, 0).growTo(66));
  const TIFFDirectory& first = container.directories().at(0);
  EXPECT_EQ(first.offset, 8);
  EXPECT_EQ(first.pointer, 4);
  EXPECT_EQ(first.nextPointer, 8 + 2 + 3 * 12);
  EXPECT_EQ(*first.field(50706), (TIFFField{50706, 1, 4, 10, 18, 4}));
  EXPECT_EQ(*first.field(271), (TIFFField{271, 2, 6, 22, 60, 6}));
  EXPECT_EQ(*first.field(258), (TIFFField{258, 3, 1, 34, 42, 2}));
  EXPECT_EQ(first.field(259), nullptr);
}

std::vector<std::int64_t> offsetsOf(const DNGContainer& container) {
  std::vector<std::int64_t> offsets;
  for (const TIFFDirectory& directory : container.directories())
    offsets.push_back(directory.offset);
  return offsets;
}

// 100 has the sub-directories 200 and 300 and is followed by 400; 300 has the sub-directory 500.
TEST_F(DNGContainerTest, VisitsTheLastSubdirectoryFirstAndTheNextDirectoryLast) {
  const DNGContainer container = open(HandMadeTIFF(true, 100)
                                          .directory(100, {dngVersion(), elsewhere(330, 4, 2, 600)}, 400)
                                          .put(600, 200, 4)
                                          .put(604, 300, 4)
                                          .directory(200, {})
                                          .directory(300, {{330, 13, 1, {500}}})
                                          .directory(400, {})
                                          .directory(500, {}));
  EXPECT_EQ(offsetsOf(container), (std::vector<std::int64_t>{100, 300, 500, 200, 400}));
  EXPECT_EQ(container.directories()[1].pointer, 604);
  EXPECT_EQ(container.directories()[2].pointer, 300 + 2 + 8);
  EXPECT_EQ(container.directories()[3].pointer, 600);
  EXPECT_EQ(container.directories()[4].pointer, 100 + 2 + 2 * 12);
}

TEST_F(DNGContainerTest, SkipsPointersThatAreZero) {
  const DNGContainer container = open(HandMadeTIFF()
                                          .directory(8, {dngVersion(), elsewhere(330, 4, 5, 100)})
                                          .put(100, 0, 4)
                                          .put(104, 200, 4)
                                          .put(108, 0, 4)
                                          .put(112, 300, 4)
                                          .put(116, 0, 4)
                                          .directory(200, {})
                                          .directory(300, {}));
  EXPECT_EQ(offsetsOf(container), (std::vector<std::int64_t>{8, 300, 200}));
}

TEST_F(DNGContainerTest, RejectsAChainThatPointsBackToItself) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion()}, 8)), cyclic);
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion()}, 100).directory(100, {}, 8)), cyclic);
}

TEST_F(DNGContainerTest, RejectsASubdirectoryThatIsReachedTwice) {
  EXPECT_EQ(refusal(HandMadeTIFF()
                        .directory(8, {dngVersion(), elsewhere(330, 4, 2, 100)})
                        .put(100, 200, 4)
                        .put(104, 200, 4)
                        .directory(200, {})),
            cyclic);
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), {330, 4, 1, {8}}})), cyclic);
}

// `count` directories of six bytes, one behind the other.
HandMadeTIFF chain(std::int64_t count) {
  HandMadeTIFF tiff;
  tiff.directory(8, {dngVersion()}, count > 1 ? 1000 : 0);
  for (std::int64_t i = 1; i < count; ++i) {
    const std::int64_t at = 1000 + 6 * (i - 1);
    tiff.directory(at, {}, i + 1 < count ? at + 6 : 0);
  }
  return tiff;
}

TEST_F(DNGContainerTest, Accepts256Directories) {
  EXPECT_EQ(open(chain(255)).directories().size(), 255U);
  EXPECT_EQ(open(chain(256)).directories().size(), 256U);
  EXPECT_EQ(refusal(chain(257)), cyclic);
}

HandMadeTIFF withEntries(std::int64_t count) {
  std::vector<HandMadeEntry> entries{dngVersion()};
  for (int tag = 1; tag < count; ++tag)
    entries.push_back({10'000 + tag, 1, 1, {7}, 1});
  return HandMadeTIFF().directory(8, entries);
}

TEST_F(DNGContainerTest, Accepts4096Entries) {
  EXPECT_EQ(open(withEntries(4095)).directories()[0].fields.size(), 4095U);
  EXPECT_EQ(open(withEntries(4096)).directories()[0].fields.size(), 4096U);
  EXPECT_EQ(refusal(withEntries(4097)), "Invalid DNG structure: Too many IFD entries");
}

TEST_F(DNGContainerTest, LimitsTheEntriesBeforeItLooksForThem) {
  EXPECT_EQ(refusal(HandMadeTIFF().put(8, 4097, 2)), "Invalid DNG structure: Too many IFD entries");
  EXPECT_EQ(refusal(HandMadeTIFF().put(8, 4096, 2)), "Incomplete DNG file: TIFF field at 10, length 49156");
}

TEST_F(DNGContainerTest, RequiresTheEntryCountInTheFile) {
  EXPECT_EQ(refusal(HandMadeTIFF(true, 9).growTo(10)), "Incomplete DNG file: TIFF field at 9, length 2");
  EXPECT_EQ(refusal(HandMadeTIFF(true, 0xFFFFFFFF)), "Incomplete DNG file: TIFF field at 4294967295, length 2");
}

TEST_F(DNGContainerTest, RequiresTheNextPointerInTheFile) {
  EXPECT_EQ(refusal(smallest().cutTo(8 + 2 + 12 + 4)), "");
  EXPECT_EQ(refusal(smallest().cutTo(8 + 2 + 12 + 3)), "Incomplete DNG file: TIFF field at 10, length 16");
}

TEST_F(DNGContainerTest, RejectsTypesThatClassicTIFFDoesNotKnow) {
  for (const int type : {0, 14, 16, 17, 18, 65535}) {
    EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), {700, type, 1, {0}}})),
              "Invalid DNG structure: TIFF type/count limit for tag 700")
        << type;
  }
}

TEST_F(DNGContainerTest, KnowsTheSizeOfEveryType) {
  const std::vector<std::int64_t> sizes{1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  for (int type = 1; type <= 13; ++type) {
    const DNGContainer container =
        open(HandMadeTIFF().directory(8, {dngVersion(), elsewhere(700, type, 9, 100)}).growTo(200));
    EXPECT_EQ(container.directories()[0].field(700)->size, 9 * sizes.at(static_cast<std::size_t>(type - 1))) << type;
  }
}

TEST_F(DNGContainerTest, Accepts16777216Values) {
  const auto withCount = [](std::int64_t count) {
    return HandMadeTIFF().directory(8, {dngVersion(), elsewhere(700, 1, count, 100)});
  };
  EXPECT_EQ(refusal(withCount(16'777'215), 20'000'000), "");
  EXPECT_EQ(refusal(withCount(16'777'216), 20'000'000), "");
  EXPECT_EQ(refusal(withCount(16'777'217), 20'000'000), "Invalid DNG structure: TIFF type/count limit for tag 700");
}

TEST_F(DNGContainerTest, RejectsValuesThatEndBehindTheFile) {
  const auto tiff = HandMadeTIFF().directory(8, {dngVersion(), elsewhere(700, 4, 10, 60)});
  EXPECT_EQ(refusal(tiff, 100), "");
  EXPECT_EQ(refusal(tiff, 99), "Incomplete DNG file: TIFF field at 60, length 40");
}

TEST_F(DNGContainerTest, KeepsUpToFourBytesInTheEntry) {
  const DNGContainer container = open(HandMadeTIFF().directory(8, {dngVersion(), {700, 3, 2, {5, 6}, 2}}));
  EXPECT_EQ(container.directories()[0].field(700)->location, 22 + 8);
  EXPECT_EQ(container.ints(container.directories()[0].field(700)), (std::vector<std::int64_t>{5, 6}));
}

TEST_F(DNGContainerTest, RejectsATagThatComesTwice) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), {700, 4, 1, {1}}, {700, 4, 1, {1}}})),
            "Invalid DNG structure: Duplicate TIFF tag 700");
}

TEST_F(DNGContainerTest, JudgesEntriesOneByOneInTheirOrder) {
  const HandMadeEntry unknownType{701, 99, 1, {0}};
  const HandMadeEntry outside = elsewhere(702, 4, 10, 5000);
  const HandMadeEntry twice = dngVersion();
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), twice, unknownType, outside})),
            "Invalid DNG structure: Duplicate TIFF tag 50706");
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), unknownType, outside, twice})),
            "Invalid DNG structure: TIFF type/count limit for tag 701");
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), outside, unknownType, twice})),
            "Incomplete DNG file: TIFF field at 5000, length 40");
}

TEST_F(DNGContainerTest, ChecksTheRangeOfATagBeforeItsUniqueness) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), elsewhere(50706, 4, 10, 5000)})),
            "Incomplete DNG file: TIFF field at 5000, length 40");
}

TEST_F(DNGContainerTest, AcceptsEntriesOutOfOrder) {
  EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), {700, 4, 1, {1}}, {3, 4, 1, {1}}})), "");
}

TEST_F(DNGContainerTest, RequiresPointersInSubIFDs) {
  for (const int type : {1, 3, 5, 9}) {
    EXPECT_EQ(refusal(HandMadeTIFF().directory(8, {dngVersion(), elsewhere(330, type, 1, 0)})),
              "Invalid DNG structure: SubIFDs type")
        << type;
  }
}

TEST_F(DNGContainerTest, AcceptsSubIFDsWithoutValues) {
  EXPECT_EQ(open(HandMadeTIFF().directory(8, {dngVersion(), {330, 4, 0, {999}}})).directories().size(), 1U);
}

TEST_F(DNGContainerTest, ReadsBigEndianDirectories) {
  const DNGContainer container = open(HandMadeTIFF(false)
                                          .directory(8, {dngVersion(), {330, 4, 1, {200}}}, 300)
                                          .directory(200, {})
                                          .directory(300, {{258, 3, 1, {14}, 2}}));
  EXPECT_EQ(offsetsOf(container), (std::vector<std::int64_t>{8, 200, 300}));
  EXPECT_EQ(container.ints(container.directories()[2].field(258)), (std::vector<std::int64_t>{14}));
}

// ---- Hostile files

constexpr std::int64_t manyWords = 16'777'216;

TEST_F(DNGContainerTest, WalksThroughMillionsOfZeroPointers) {
  const HandMadeTIFF tiff = HandMadeTIFF()
                                .directory(8, {dngVersion(), elsewhere(330, 4, manyWords, 1000)}, 0)
                                .directory(500, {})
                                .put(1000, 500, 4);
  EXPECT_EQ(offsetsOf(open(tiff, 1000 + 4 * manyWords)), (std::vector<std::int64_t>{8, 500}));
}

// 255 directories that all list the same 64 MB of zeros as their sub-directories.
TEST_F(DNGContainerTest, SearchesSharedPointersOnce) {
  HandMadeTIFF tiff;
  tiff.directory(8, {dngVersion()}, 1000);
  for (std::int64_t i = 0; i < 255; ++i) {
    const std::int64_t at = 1000 + 20 * i;
    tiff.directory(at, {elsewhere(330, 4, manyWords, 10'000 + i)}, i < 254 ? at + 20 : 0);
  }
  EXPECT_EQ(open(tiff, 20'000 + 4 * manyWords).directories().size(), 256U);
}

TEST_F(DNGContainerTest, EndsAtTheLastOfMillionsOfEqualPointers) {
  HandMadeTIFF tiff = HandMadeTIFF().directory(8, {dngVersion(), elsewhere(330, 4, 100'000, 1000)}).directory(500, {});
  for (std::int64_t i = 0; i < 100'000; ++i)
    tiff.put(1000 + 4 * i, 500, 4);
  EXPECT_EQ(refusal(tiff), cyclic);
}

TEST_F(DNGContainerTest, CountsDirectoriesBeforeItReadsTheNextOne) {
  HandMadeTIFF tiff = HandMadeTIFF().directory(8, {dngVersion(), elsewhere(330, 4, 256, 1000)});
  for (std::int64_t i = 0; i < 256; ++i)
    tiff.put(1000 + 4 * i, i == 0 ? 0xFFFFFFF0 : 3000 + 6 * i, 4);
  EXPECT_EQ(refusal(tiff, 10'000), cyclic) << "the 257th directory would lie outside the file";
}

// ---- Choice of the raw directory

HandMadeEntry number(int tag, std::int64_t value) {
  return {tag, 4, 1, {value}};
}

std::vector<HandMadeEntry> image(std::int64_t width, std::int64_t height, std::int64_t photometric = 32803) {
  return {number(262, photometric), number(256, width), number(257, height)};
}

class RawDirectoryTest : public DNGContainerTest {
 protected:
  // A first directory without an image, followed by these, in a chain at 1000, 2000, …
  [[nodiscard]] DNGContainer chainOf(const std::vector<std::vector<HandMadeEntry>>& directories) const {
    HandMadeTIFF tiff;
    tiff.directory(8, {dngVersion()}, directories.empty() ? 0 : 1000);
    std::int64_t at = 1000;
    for (const auto& entries : directories) {
      const bool isLast = at == 1000 * static_cast<std::int64_t>(directories.size());
      tiff.directory(at, entries, isLast ? 0 : at + 1000);
      at += 1000;
    }
    return open(tiff);
  }

  [[nodiscard]] std::int64_t chosen(const std::vector<std::vector<HandMadeEntry>>& directories) const {
    return chainOf(directories).rawDirectory().offset;
  }

  [[nodiscard]] std::string refusalAmong(const std::vector<std::vector<HandMadeEntry>>& directories) const {
    return refusalOf([&] { return chosen(directories); });
  }
};

TEST_F(RawDirectoryTest, IsTheLargest) {
  EXPECT_EQ(chosen({image(10, 10), image(20, 20), image(15, 15)}), 2000);
}

TEST_F(RawDirectoryTest, IsTheFirstOfEqualArea) {
  EXPECT_EQ(chosen({image(20, 10), image(10, 20), image(20, 10)}), 1000);
}

TEST_F(RawDirectoryTest, MayBeOfThreePhotometricInterpretations) {
  EXPECT_EQ(chosen({image(9, 9, 1)}), 1000);
  EXPECT_EQ(chosen({image(9, 9, 32803)}), 1000);
  EXPECT_EQ(chosen({image(9, 9, 34892)}), 1000);
}

TEST_F(RawDirectoryTest, MustBeThere) {
  const std::string none = "Invalid DNG structure: No main raw image IFD";
  EXPECT_EQ(refusalAmong({}), none);
  EXPECT_EQ(refusalAmong({image(9, 9, 2)}), none);
  EXPECT_EQ(refusalAmong({image(9, 9, 0)}), none);
  EXPECT_EQ(refusalAmong({{number(256, 9), number(257, 9)}}), none) << "no photometric interpretation counts as 0";
  EXPECT_EQ(refusalAmong({{number(262, 1), number(256, 9)}}), none);
  EXPECT_EQ(refusalAmong({{number(262, 1), number(257, 9)}}), none);
}

TEST_F(RawDirectoryTest, IsOfFullResolution) {
  std::vector<HandMadeEntry> reduced = image(100, 100);
  reduced.push_back(number(254, 1));
  EXPECT_EQ(chosen({reduced, image(10, 10)}), 2000);
  std::vector<HandMadeEntry> full = image(100, 100);
  full.push_back(number(254, 0));
  EXPECT_EQ(chosen({full, image(10, 10)}), 1000);
  full.back() = {254, 4, 0, {1}};
  EXPECT_EQ(chosen({full, image(10, 10)}), 1000) << "no value counts as 0";
}

TEST_F(RawDirectoryTest, IsTakenWithoutALookWhenItIsTheOnlyOne) {
  EXPECT_EQ(chosen({image(0, 0)}), 1000);
  EXPECT_EQ(chosen({image(200'000, 1)}), 1000);
}

TEST_F(RawDirectoryTest, IsComparedOnlyWithinTheLimits) {
  const std::string dimensions = "Invalid DNG structure: Raw dimensions";
  EXPECT_EQ(chosen({image(100'000, 1), image(1, 100'000)}), 1000);
  EXPECT_EQ(refusalAmong({image(100'001, 1), image(10, 10)}), dimensions);
  EXPECT_EQ(refusalAmong({image(10, 10), image(1, 100'001)}), dimensions);
  EXPECT_EQ(refusalAmong({image(0, 10), image(10, 10)}), dimensions);
  EXPECT_EQ(refusalAmong({image(10, 10), image(10, 0)}), dimensions);
  EXPECT_EQ(refusalAmong({image(10, 10), {number(262, 1), {256, 4, 0, {5}}, number(257, 9)}}), dimensions);
}

TEST_F(RawDirectoryTest, IsFoundOnlyAmongNumbers) {
  EXPECT_EQ(refusalAmong({{{254, 11, 1, {0}}}}), "Unsupported DNG: Numeric TIFF type 11");
  EXPECT_EQ(refusalAmong({{{262, 2, 1, {0}}}}), "Unsupported DNG: Numeric TIFF type 2");
}

TEST_F(RawDirectoryTest, DoesNotAskAReducedImageForMore) {
  EXPECT_EQ(chosen({{number(254, 1), {262, 11, 1, {0}}}, image(9, 9)}), 2000);
}

}  // namespace
}  // namespace tessaly::tests
