// Who made the frame, and where its raw directory stands.
#include "dng/metadata/MetadataFixture.h"
#include "dng/tiff/DNGContainer.h"

namespace tessaly::tests {
namespace {

class IdentityRules : public MetadataFixture {};

TEST_F(IdentityRules, PreferTheUniqueModel) {
  EXPECT_EQ(read(DNGBuilder().uniqueModel("Maker One").model("ONE")).model, "Maker One");
  EXPECT_EQ(read(DNGBuilder().withoutFirstTag(50708).model("ONE")).model, "ONE");
  EXPECT_EQ(read(DNGBuilder().withoutFirstTag(50708)).model, "Unknown Camera");
}

TEST_F(IdentityRules, TakeAnEmptyUniqueModelAsTheModel) {
  EXPECT_EQ(read(DNGBuilder().uniqueModel("").model("ONE")).model, "");
}

TEST_F(IdentityRules, PassOverAModelThatIsNoText) {
  EXPECT_EQ(read(DNGBuilder().firstTag(50708, bytes({'O', 'N', 'E', '1', 0})).model("ONE")).model, "ONE");
  EXPECT_EQ(read(DNGBuilder().uniqueModel("\xFF").model("ONE")).model, "ONE");
}

TEST_F(IdentityRules, TrimNeitherMakeNorModel) {
  const DNGMetadata metadata = read(DNGBuilder().make(" Maker ").uniqueModel(" ONE "));
  EXPECT_EQ(metadata.make, " Maker ");
  EXPECT_EQ(metadata.model, " ONE ");
  EXPECT_EQ(read(DNGBuilder()).make, std::nullopt);
}

TEST_F(IdentityRules, AreReadFromTheFirstDirectory) {
  const DNGMetadata metadata =
      read(DNGBuilder().inSubIFD().make("Maker").uniqueModel("ONE").rawText(271, "other").rawText(50708, "other"));
  EXPECT_EQ(metadata.make, "Maker");
  EXPECT_EQ(metadata.model, "ONE");
}

TEST_F(IdentityRules, TakeTheFirstSerialThatIsNotBlank) {
  DNGBuilder builder = DNGBuilder().inSubIFD().exif(std::nullopt, std::nullopt, "body");
  EXPECT_EQ(read(builder).cameraSerial, "body");
  EXPECT_EQ(read(builder.rawText(50735, "raw")).cameraSerial, "raw");
  EXPECT_EQ(read(builder.serial("\u3000first\t")).cameraSerial, "first");
  EXPECT_EQ(read(builder.serial(" \u00A0")).cameraSerial, "raw");
  EXPECT_EQ(read(builder.rawText(50735, "")).cameraSerial, "body");
}

TEST_F(IdentityRules, HaveNoSerialWhereAllAreBlank) {
  EXPECT_EQ(read(DNGBuilder().serial("  ").exif(std::nullopt, std::nullopt, "")).cameraSerial, std::nullopt);
}

TEST_F(IdentityRules, RecordWhereTheRawDirectoryStands) {
  const DNGMetadata inFirst = read(DNGBuilder().bigEndian());
  EXPECT_EQ(inFirst.sourceEncoding->ifdOffset, 8);
  EXPECT_EQ(inFirst.sourceEncoding->parentPointer, 4);
  EXPECT_FALSE(inFirst.sourceEncoding->littleEndian);
  const DNGMetadata inSub = read(DNGBuilder().inSubIFD());
  EXPECT_GT(inSub.sourceEncoding->ifdOffset, 8);
  EXPECT_EQ(DNGContainer(path()).uint(inSub.sourceEncoding->parentPointer, 4), inSub.sourceEncoding->ifdOffset);
  EXPECT_TRUE(inSub.sourceEncoding->littleEndian);
}

}  // namespace
}  // namespace tessaly::tests
