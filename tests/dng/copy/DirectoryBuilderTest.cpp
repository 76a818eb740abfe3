#include "dng/copy/DirectoryBuilder.h"
#include "dng/tiff/DNGContainer.h"
#include "dng/tiff/TIFFTypes.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>

#include <array>
#include <optional>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::bytesOf;

TEST(StoreInteger, PutsTheLowByteFirstInLittleEndianFiles) {
  std::array<std::byte, 4> bytes{};
  storeInteger(bytes, 0x01020304, true);
  EXPECT_THAT(bytes, testing::ElementsAreArray(bytesOf({4, 3, 2, 1})));
  storeInteger(bytes, 0x01020304, false);
  EXPECT_THAT(bytes, testing::ElementsAreArray(bytesOf({1, 2, 3, 4})));
}

TEST(DirectoryBuilder, SortsEntriesByTagAndClosesWithTheNextDirectory) {
  DirectoryBuilder builder(true);
  builder.putInteger(0x0111, TIFFType::longInteger, 0x11223344);
  builder.putInteger(0x0102, TIFFType::shortInteger, 16);
  const DirectoryImage image = builder.build(100, 0x55);
  EXPECT_THAT(image.patches, ElementsAre(FilePatch{
                                 100, bytesOf({2,    0,                                            //
                                               0x02, 0x01, 3, 0, 1, 0, 0, 0, 16,   0,    0,    0,  //
                                               0x11, 0x01, 4, 0, 1, 0, 0, 0, 0x44, 0x33, 0x22, 0x11, 0x55, 0, 0, 0})}));
  EXPECT_EQ(builder.length(), 2 + 2 * 12 + 4);
}

TEST(DirectoryBuilder, PutsAShortAtTheStartOfItsSlotInBigEndianFilesToo) {
  DirectoryBuilder builder(false);
  builder.putInteger(0x0102, TIFFType::shortInteger, 16);
  EXPECT_THAT(builder.build(0, 0).patches,
              ElementsAre(FilePatch{0, bytesOf({0, 1, 0x01, 0x02, 0, 3, 0, 0, 0, 1, 0, 16, 0, 0, 0, 0, 0, 0})}));
}

TEST(DirectoryBuilder, PutsARationalBehindTheDirectory) {
  DirectoryBuilder builder(false);
  builder.putRational(0x829A, 1, 0x0F4240);
  const DirectoryImage image = builder.build(200, 0);
  EXPECT_THAT(image.patches,
              ElementsAre(FilePatch{200, bytesOf({0, 1, 0x82, 0x9A, 0, 5, 0, 0, 0, 1, 0, 0, 0, 218, 0, 0, 0, 0})},
                          FilePatch{218, bytesOf({0, 0, 0, 1, 0, 0x0F, 0x42, 0x40})}));
  EXPECT_EQ(builder.length(), 26);
}

TEST(DirectoryBuilder, ReplacesAllEntriesOfATag) {
  DirectoryBuilder builder(true);
  builder.putInteger(5, TIFFType::longInteger, 1);
  builder.putInteger(5, TIFFType::longInteger, 2);
  EXPECT_TRUE(builder.has(5));
  EXPECT_FALSE(builder.has(6));
  EXPECT_EQ(builder.length(), 2 + 12 + 4);
}

class CarriedEntries : public testing::Test {
 protected:
  CarriedEntries() {
    tools::DNGBuilder().rawText(40001, "ab").rawText(40002, "abcdef").rawText(40003, "xyz12").write(folder / "a.dng");
  }

  [[nodiscard]] const TIFFField& field(std::int64_t tag) const { return *container().directories()[0].field(tag); }

  [[nodiscard]] const DNGContainer& container() const {
    if (!container_) container_.emplace(folder / "a.dng");
    return *container_;
  }

  tests::TemporaryFolder folder;

 private:
  mutable std::optional<DNGContainer> container_;
};

TEST_F(CarriedEntries, KeepShortValuesInTheirSlot) {
  DirectoryBuilder builder(true);
  builder.carryWithValue(container().bytes(), field(40001));
  const DirectoryImage image = builder.build(0, 0);
  EXPECT_THAT(image.patches, ElementsAre(FilePatch{0, bytesOf({1, 0, 0x41, 0x9C, 2, 0, 3, 0, 0, 0, 'a', 'b', 0, 0,  //
                                                               0, 0, 0, 0})}));
  EXPECT_THAT(image.values, IsEmpty());
}

TEST_F(CarriedEntries, MoveLongValuesToEvenOffsetsBehindTheDirectory) {
  DirectoryBuilder builder(true);
  builder.carryWithValue(container().bytes(), field(40002));  // 7 bytes
  builder.carryWithValue(container().bytes(), field(40003));  // 6 bytes
  const DirectoryImage image = builder.build(100, 0);
  EXPECT_THAT(image.values, ElementsAre(CopyRange{field(40002).location, 130, 7},  //
                                        CopyRange{field(40003).location, 138, 6}));
  EXPECT_EQ(builder.length(), 44);
}

TEST_F(CarriedEntries, LeaveLongValuesWhereTheyAreWhenOnlyTheEntryIsCarried) {
  DirectoryBuilder builder(true);
  builder.carry(container().bytes(), field(40002));
  const DirectoryImage image = builder.build(100, 0);
  EXPECT_THAT(image.values, IsEmpty());
  EXPECT_EQ(image.patches.size(), 1U);
  EXPECT_EQ(builder.length(), 18);
}

}  // namespace
}  // namespace tessaly
