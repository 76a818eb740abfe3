#include "batch/OutputFolderAccess.h"
#include "calibration/review/InvalidInput.h"
#include "localization/Localization.h"
#include "presentation/FailureText.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>

namespace tessaly {
namespace {

using testing::StartsWith;

class FailureTextTest : public testing::Test {
 protected:
  void SetUp() override { Localization::setLanguageOverride(AppLanguage::french); }
  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }
};

TEST_F(FailureTextTest, OfAFileNamesTheFileAndItsInnermostCause) {
  const DNGError error = DNGError::file("a.dng", DNGError::invalid("Raw dimensions"));
  const FailureText text = failureText(error, "folder");
  EXPECT_THAT(text.description, StartsWith("a.dng: Ce DNG semble incomplet"));
  EXPECT_EQ(text.cause, "Invalid DNG structure: Raw dimensions");
}

TEST_F(FailureTextTest, OfNoFileIsDescribedWithTheSubject) {
  const FailureText text = failureText(DNGError::invalid("Not enough bright-field frames were detected"), "frames");
  EXPECT_THAT(text.description, StartsWith("frames: Il n’y a pas assez d’images d’étalonnage utilisables."));
  EXPECT_EQ(text.cause, "Invalid DNG structure: Not enough bright-field frames were detected");
}

TEST_F(FailureTextTest, OfAnInputIsTheWindowsText) {
  EXPECT_EQ(failureText(InvalidInput("Enter a camera profile name."), "x"),
            (FailureText{"Saisissez un nom de profil d’appareil.", "Enter a camera profile name."}));
}

TEST_F(FailureTextTest, OfTheSavedOutputFolderIsInBothLanguages) {
  const char* const english =
      "The saved output folder needs permission again. Choose it in Settings or choose an output folder for this "
      "batch.";
  EXPECT_EQ(failureText(OutputFolderPermission(L(english)), "x"), (FailureText{L(english), english}));
  EXPECT_NE(L(english), english);
}

TEST_F(FailureTextTest, OfAProfileFileSaysWhatIsWrongWithIt) {
  const std::string french = "Ce profil n’est pas valide ou utilise une version non prise en charge.";
  EXPECT_EQ(failureText(InvalidProfile("Profile version"), "p.json"),
            (FailureText{"p.json: " + french, "Profile version"}));
  EXPECT_EQ(failureText(ProfileDecodingError("\"name\" is missing"), "p.json"),
            (FailureText{"p.json: " + french, "\"name\" is missing"}));
  EXPECT_EQ(failureText(UnreadableProfile("/store/p.json", "words"), "store"),
            (FailureText{"/store/p.json: words", "words"}));
}

TEST_F(FailureTextTest, OfTheSystemIsTheSubjectAndTheSystemsWords) {
  const std::system_error error(ENOSPC, std::generic_category(), "write");
  EXPECT_EQ(failureText(error, "out.json"),
            (FailureText{"out.json: Aucun espace disponible sur le périphérique", "No space left on device"}));
  EXPECT_EQ(failureText(error, "").description, "Aucun espace disponible sur le périphérique");
}

TEST_F(FailureTextTest, OfTheDestinationNamesItsFolderAndNotTheSupport) {
  const DNGError error = DNGError::contextualize(DestinationError(EROFS, "/out"), "a.dng");
  EXPECT_EQ(failureText(error, "x"),
            (FailureText{"a.dng: Tessaly n’a pas pu écrire dans le dossier «\u00A0/out\u00A0»\u00A0: il est en lecture "
                         "seule. Choisissez un autre dossier, puis réessayez.",
                         "Unable to read: Read-only file system"}));
}

TEST_F(FailureTextTest, OfANameThatIsTakenIsARefusalLikeAnyOther) {
  const DNGError error = DNGError::invalid("Output exists or equals source").at({EEXIST, "/out"});
  const FailureText text = failureText(DNGError::file("a.dng", error), "x");
  EXPECT_THAT(text.description, StartsWith("a.dng: Ce DNG semble incomplet"));
  EXPECT_EQ(text.cause, "Invalid DNG structure: Output exists or equals source");
}

}  // namespace
}  // namespace tessaly
