#include "localization/Localization.h"
#include "preferences/AppPreferences.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <set>
#include <system_error>

namespace tessaly {
namespace {

using enum AppLanguage;

using testing::HasSubstr;

/// With preferences of its own, and without a language for the run.
class LocalizationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const tests::TemporaryFolder home;
    setenv("TESSALY_HOME", home.path().c_str(), 1);
  }

  void TearDown() override {
    Localization::setLanguageOverride(std::nullopt);
    AppPreferences::shared().reset();
  }
};

TEST_F(LocalizationTest, TranslatesATextOfTheTable) {
  EXPECT_EQ(Localization::text("Processing complete", english), "Processing complete");
  EXPECT_EQ(Localization::text("Processing complete", chinese), "处理完成");
  EXPECT_EQ(Localization::text("Processing complete", french), "Traitement terminé");
}

TEST_F(LocalizationTest, LeavesATextThatIsNotInTheTable) {
  for (const char* text : {"Processing Complete", "Processing complete ", "", "Traitement terminé", "anything"}) {
    for (const AppLanguage language : {english, chinese, french}) {
      EXPECT_EQ(Localization::text(text, language), text);
    }
  }
}

TEST_F(LocalizationTest, KnowsTheKeyOfEveryCell) {
  ASSERT_EQ(Localization::entries().size(), 194U);
  for (const Localization::Entry& entry : Localization::entries()) {
    for (const std::string_view text : entry.texts)
      EXPECT_EQ(Localization::original(text), entry.english());
  }
}

TEST_F(LocalizationTest, HasEachKeyOnce) {
  std::set<std::string_view> keys;
  for (const auto table : {Localization::entries(), Localization::additions()}) {
    for (const Localization::Entry& entry : table)
      EXPECT_TRUE(keys.insert(entry.english()).second) << entry.english();
  }
}

TEST_F(LocalizationTest, LooksInTheAdditionsToo) {
  for (const Localization::Entry& entry : Localization::additions()) {
    EXPECT_EQ(Localization::text(entry.english(), chinese), entry.in(chinese));
    EXPECT_EQ(Localization::text(Localization::original(entry.in(french)), french), entry.in(french));
  }
}

TEST_F(LocalizationTest, LeavesATextWithoutAKeyAsItIs) {
  EXPECT_EQ(Localization::original("nothing of the kind"), "nothing of the kind");
  EXPECT_EQ(Localization::original(""), "");
}

TEST_F(LocalizationTest, SwitchesFromAnyLanguageToAnyOther) {
  const std::string toFrench = Localization::text(Localization::original("Select All"), french);
  EXPECT_EQ(toFrench, "Tout sélectionner");
  EXPECT_EQ(Localization::text(Localization::original(toFrench), chinese), "全选");
}

TEST_F(LocalizationTest, FollowsThePreferenceAtOnce) {
  AppPreferences::shared().setLanguage(french);
  EXPECT_EQ(Localization::language(), french);
  EXPECT_EQ(L("Cancel"), "Annuler");
  AppPreferences::shared().setLanguage(chinese);
  EXPECT_EQ(L("Cancel"), "取消");
  EXPECT_EQ(LF("Found %d DNG files in the input folder.", {12}), "在输入文件夹中找到 12 个 DNG 文件。");
}

TEST_F(LocalizationTest, PrefersTheLanguageOfThisRun) {
  AppPreferences::shared().setLanguage(french);
  Localization::setLanguageOverride(chinese);
  EXPECT_EQ(L("Cancel"), "取消");
  Localization::setLanguageOverride(std::nullopt);
  EXPECT_EQ(L("Cancel"), "Annuler");
}

TEST_F(LocalizationTest, IsNeverInTheLanguageCalledSystem) {
  EXPECT_NE(Localization::language(), AppLanguage::system);
  EXPECT_EQ(Localization::text("Cancel", resolved(AppLanguage::system, {"de-CH", "fr-FR"})), "Annuler");
}

TEST_F(LocalizationTest, PutsTheArgumentsIntoTheTranslatedFormat) {
  AppPreferences::shared().setLanguage(french);
  EXPECT_EQ(LF("%d/%d  Success %d  Failed %d  Skipped %d  %@", {3, 10, 1, 2, 0, "L1000123.DNG"}),
            "3/10  Réussis 1  Échecs 2  Ignorés 0  L1000123.DNG");
  EXPECT_EQ(LF("Log writing failed: %@", {"No space left on device"}),
            "Échec de l’écriture du journal : No space left on device");
}

TEST_F(LocalizationTest, DescribesAnErrorOfAFileForTheUser) {
  const DNGError error = DNGError::file("a.DNG", DNGError::unsupported("JPEG XL DNG is not supported"));
  EXPECT_EQ(errorDescription(error, english),
            "a.DNG: This DNG uses JPEG XL compression, which Tessaly doesn't support yet. Choose uncompressed DNG in "
            "your camera if available. For help, email support@tessaly.example with your camera model and we'll look "
            "at adding support.");
  EXPECT_EQ(errorDescription(error, chinese),
            "a.DNG: 此 DNG 使用暂不支持的 JPEG XL 压缩。如相机提供未压缩 DNG，请选择该选项。 如需帮助，请发送邮件至 "
            "support@tessaly.example，注明相机型号，我们会评估添加支持。");
  EXPECT_EQ(errorDescription(error, french),
            "a.DNG: Ce DNG utilise la compression JPEG XL, pas encore prise en charge. Choisissez un DNG non compressé "
            "dans l’appareil si possible. Pour obtenir de l’aide, écrivez à support@tessaly.example avec le modèle de "
            "votre appareil ; nous étudierons sa prise en charge.");
}

TEST_F(LocalizationTest, DescribesAnErrorByItsOuterFileAndItsInnermostCase) {
  const DNGError inner = DNGError::file("inner.dng", DNGError::truncated("TIFF header"));
  const std::string description = errorDescription(DNGError::file("outer.dng", inner), english);
  EXPECT_THAT(description, testing::StartsWith("outer.dng: This DNG appears incomplete"));
  EXPECT_THAT(description, testing::Not(HasSubstr("inner.dng")));
}

TEST_F(LocalizationTest, DescribesEveryOtherErrorTechnically) {
  const std::pair<DNGError, const char*> rows[] = {
      {DNGError::unreadable("x"), "Unable to read: x"},
      {DNGError::truncated("x"), "Incomplete DNG file: x"},
      {DNGError::unsupported("x"), "Unsupported DNG: x"},
      {DNGError::invalid("x"), "Invalid DNG structure: x"},
      {DNGError::profileMismatch("x"), "Camera profile mismatch: x"},
  };
  for (const auto& [error, description] : rows)
    EXPECT_EQ(errorDescription(error, french), description);
  EXPECT_EQ(errorDescription(std::runtime_error("words"), french), "words");
  const std::system_error missing(ENOENT, std::generic_category(), "open");
  EXPECT_EQ(errorDescription(missing, english), "No such file or directory");
  EXPECT_EQ(errorDescription(missing, french), "Fichier ou dossier introuvable");
  EXPECT_EQ(errorDescription(missing, chinese), "没有该文件或文件夹");
}

TEST_F(LocalizationTest, ShowsACandidatesReasonInTheLanguageOfTheInterface) {
  const std::pair<const char*, const char*> rows[] = {
      {"Manually added by user", "Ajouté manuellement par l’utilisateur"},
      {"Repeated in 3 independent exposure groups", "Répété dans 3 groupes d’exposition indépendants"},
      {"Fixed column anomaly 12.5σ; same sign in 97% of frames; repeated across 2 exposure groups",
       "Anomalie de colonne fixe 12.5σ ; même signe dans 97 % des images ; répétée dans 2 groupes d’exposition"},
      {"Partial defective column below a fixed pixel; column offset -6.3; repeated across 4 exposure groups",
       "Colonne partiellement défectueuse sous un pixel fixe ; décalage de colonne -6.3 ; répétée dans 4 groupes "
       "d’exposition"},
      {"Partial defective column below a fixed pixel; column offset +6.0; repeated across 4 exposure groups",
       "Colonne partiellement défectueuse sous un pixel fixe ; décalage de colonne +6.0 ; répétée dans 4 groupes "
       "d’exposition"},
      {"Reading %d %@ “x”.dng", "Lecture de %d %@ “x”.dng"},
      {"Repeated in many independent exposure groups", "Repeated in many independent exposure groups"},
  };
  for (const auto& [reason, shown] : rows) {
    EXPECT_EQ(Localization::composedText(reason, french), shown);
    EXPECT_EQ(Localization::composedText(reason, english), reason);
  }
}

}  // namespace
}  // namespace tessaly
