#include "localization/Localization.h"
#include "presentation/CalibrationStart.h"
#include "presentation/CalibrationTexts.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

using Kind = CalibrationCandidate::Kind;

class CalibrationTextsTest : public testing::Test {
 protected:
  void SetUp() override {
    speak(AppLanguage::english);
    result.brightFrameCount = 18;
    result.darkFrameCount = 12;
    result.lineEvidenceFrameCount = 18;
    result.lineExposureGroupCount = 3;
    result.metadata.activeX = 8;
    result.metadata.activeY = 10;
    result.metadata.activeWidth = 300;
    result.metadata.activeHeight = 200;
  }

  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static void speak(AppLanguage language) { Localization::setLanguageOverride(language); }

  static CalibrationCandidate candidate(Kind kind) {
    CalibrationCandidate made;
    made.kind = kind;
    made.confidence = 0.99;
    made.yEnd = 209;
    made.yStart = 10;
    if (kind == Kind::spot) made.radiusX = made.radiusY = 6;
    return made;
  }

  CalibrationResult result;
};

TEST_F(CalibrationTextsTest, SayWhatAnAnalysisFound) {
  result.candidates = {candidate(Kind::line), candidate(Kind::pixel)};
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{0}),
            "Complete: 18 bright-field, 12 dark, 2 candidates. Review at high zoom before saving.");
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{2}),
            "Complete: 18 bright-field, 12 dark, 2 candidates; 2 strong fixed spots preselected. Review at high zoom "
            "before saving.");
}

TEST_F(CalibrationTextsTest, CountTheSpotsThatStartIncluded) {
  CalibrationCandidate small = candidate(Kind::spot);
  small.radiusY = 5;
  result.candidates = {candidate(Kind::spot), small, candidate(Kind::pixel)};
  EXPECT_EQ(CalibrationTexts::completion(result, 0.98),
            "Complete: 18 bright-field, 12 dark, 3 candidates; 1 strong fixed spots preselected. Review at high zoom "
            "before saving.");
}

TEST_F(CalibrationTextsTest, WarnOfTooFewFramesBeforeTooFewSettings) {
  result.lineEvidenceFrameCount = 5;
  result.lineExposureGroupCount = 1;
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{0}),
            "Complete: 18 bright-field, 12 dark, 0 candidates; fewer than six valid bright-field frames, so columns "
            "were not classified automatically. Review at high zoom before saving.");
  result.lineEvidenceFrameCount = 6;
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{0}),
            "Complete: 18 bright-field, 12 dark, 0 candidates; column evidence comes from one exposure setting "
            "only—review carefully. Review at high zoom before saving.");
  result.lineExposureGroupCount = 2;
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{0}),
            "Complete: 18 bright-field, 12 dark, 0 candidates. Review at high zoom before saving.");
}

TEST_F(CalibrationTextsTest, SayWhatAnAnalysisFoundInChineseAndFrench) {
  result.lineEvidenceFrameCount = 3;
  speak(AppLanguage::chinese);
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{1}),
            "完成：亮场 18 帧，暗场 12 帧，候选项 0 个；已预选 1 "
            "个明显的固定斑点；有效亮场帧少于六帧，因此未自动判定列缺陷。保存前请放大仔细检查。");
  speak(AppLanguage::french);
  EXPECT_EQ(CalibrationTexts::completion(result, std::int64_t{1}),
            "Terminé : 18 images claires, 12 images noires, 0 candidats ; 1 taches fixes marquées présélectionnées ; "
            "moins de six images claires valides, les colonnes n’ont donc pas été classées automatiquement. Vérifiez "
            "à fort grossissement avant d’enregistrer.");
}

TEST_F(CalibrationTextsTest, TranslateTheEnginesProgress) {
  speak(AppLanguage::french);
  EXPECT_EQ(CalibrationTexts::progress({1, 3, "Analyzing a %d.dng"}), "Analyse de a %d.dng");
  speak(AppLanguage::chinese);
  EXPECT_EQ(CalibrationTexts::progress({1, 3, "Checking partial defective column in a.dng"}),
            "正在检查 a.dng 中的部分缺陷列");
}

TEST_F(CalibrationTextsTest, ConfirmASavedProfileWithAnAndInEnglishOnly) {
  CameraProfile profile;
  profile.name = "Body %d";
  profile.pixels.resize(3);
  profile.lines.resize(2);
  profile.spots.emplace(1);
  EXPECT_EQ(CalibrationTexts::saved(profile, "/store/x.json"),
            "Saved “Body %d”: 3 pixels, 2 columns, and 1 fixed spots.\n\n/store/x.json");
  speak(AppLanguage::chinese);
  EXPECT_EQ(CalibrationTexts::saved(profile, "/store/x.json"),
            "已保存“Body %d”：3 个像素、2 列、1 个固定斑点。\n\n/store/x.json");
  speak(AppLanguage::french);
  profile.spots.reset();
  EXPECT_EQ(CalibrationTexts::saved(profile, "/store/x.json"),
            "« Body %d » enregistré : 3 pixels, 2 colonnes, 0 taches fixes.\n\n/store/x.json");
}

TEST_F(CalibrationTextsTest, RefuseAFolderWithFewerThanThreeFiles) {
  EXPECT_EQ(CalibrationStart::tooFewFiles({"a", "b"}), "The folder contains fewer than three DNG files");
  EXPECT_EQ(CalibrationStart::tooFewFiles({"a", "b", "c"}), std::nullopt);
}

}  // namespace
}  // namespace tessaly
