#include "calibration/CalibrationSentences.h"
#include "localization/Localization.h"
#include "presentation/CandidateTexts.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

/// Candidates of a sensor whose active area begins at column 8, row 10.
class CandidateTextsTest : public testing::Test {
 protected:
  void SetUp() override {
    Localization::setLanguageOverride(AppLanguage::english);
    metadata.activeX = 8;
    metadata.activeY = 10;
    metadata.activeHeight = 200;
  }

  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static CalibrationCandidate pixel() {
    CalibrationCandidate made;
    made.x = 25;
    made.yStart = made.yEnd = 943;
    return made;
  }

  static CalibrationCandidate line(std::int64_t yStart, std::int64_t width) {
    CalibrationCandidate made;
    made.kind = CalibrationCandidate::Kind::line;
    made.x = 48;
    made.yStart = yStart;
    made.yEnd = 209;
    made.width = width;
    return made;
  }

  static CalibrationCandidate spot(std::int64_t radiusX, std::int64_t radiusY) {
    CalibrationCandidate made = pixel();
    made.kind = CalibrationCandidate::Kind::spot;
    made.radiusX = radiusX;
    made.radiusY = radiusY;
    return made;
  }

  DNGMetadata metadata;
};

TEST_F(CandidateTextsTest, TellAPartialColumnFromAFullOne) {
  EXPECT_EQ(CandidateTexts::kindOf(pixel(), metadata), CandidateTexts::Kind::pixel);
  EXPECT_EQ(CandidateTexts::kindOf(spot(3, 3), metadata), CandidateTexts::Kind::fixedSpot);
  EXPECT_EQ(CandidateTexts::kindOf(line(10, 1), metadata), CandidateTexts::Kind::column);
  EXPECT_EQ(CandidateTexts::kindOf(line(11, 1), metadata), CandidateTexts::Kind::partialColumn);
}

TEST_F(CandidateTextsTest, NameTheKindInTheLanguageOfTheInterface) {
  EXPECT_EQ(CandidateTexts::kind(pixel(), metadata), "Pixel");
  EXPECT_EQ(CandidateTexts::kind(line(10, 1), metadata), "Column");
  Localization::setLanguageOverride(AppLanguage::chinese);
  EXPECT_EQ(CandidateTexts::kind(line(11, 1), metadata), "部分列");
  EXPECT_EQ(CandidateTexts::kind(spot(3, 3), metadata), "固定斑点");
}

TEST_F(CandidateTextsTest, HaveATranslatedNameForEachKind) {
  for (const CandidateTexts::Kind kind : CandidateTexts::kinds) {
    const std::string_view name = CandidateTexts::name(kind);
    EXPECT_TRUE(Localization::findEntry([&](const auto& entry) { return entry.english() == name; })) << name;
  }
}

TEST_F(CandidateTextsTest, GivePositionsInActiveCoordinates) {
  EXPECT_EQ(CandidateTexts::position(pixel(), metadata), "17, 933");
  EXPECT_EQ(CandidateTexts::position(line(10, 1), metadata), "x 40");
  EXPECT_EQ(CandidateTexts::position(line(20, 2), metadata), "x 40–41, y 10–199");
  EXPECT_EQ(CandidateTexts::position(spot(6, 6), metadata), "17, 933  r 6");
  EXPECT_EQ(CandidateTexts::position(spot(6, 4), metadata), "17, 933  r 6 × 4");
}

TEST_F(CandidateTextsTest, ShowConfidenceInWholePercent) {
  CalibrationCandidate candidate = pixel();
  candidate.confidence = 0.976;
  EXPECT_EQ(CandidateTexts::confidence(candidate), "98 %");
}

TEST_F(CandidateTextsTest, TranslateTheReason) {
  Localization::setLanguageOverride(AppLanguage::french);
  CalibrationCandidate candidate = pixel();
  candidate.reason = "Repeated in 3 independent exposure groups";
  EXPECT_EQ(CandidateTexts::reason(candidate), "Répété dans 3 groupes d’exposition indépendants");
}

TEST_F(CandidateTextsTest, KnowEveryReasonThatCalibrationGives) {
  namespace Reasons = CandidateReasons;
  CalibrationCandidate candidate = pixel();
  for (const std::string& reason :
       {Reasons::pixelInBrightFrames(), Reasons::pixelInDarkFrames(), Reasons::repeatedPixel(2),
        Reasons::shadowInBrightFrames(), Reasons::repeatedSpot(3), Reasons::fixedColumn(6.3, 0.97, 3),
        Reasons::partialColumn(-3.4, 2), Reasons::manuallyAdded(), Reasons::confirmedSpot()}) {
    candidate.reason = reason;
    Localization::setLanguageOverride(AppLanguage::english);
    EXPECT_EQ(CandidateTexts::reason(candidate), reason);
    Localization::setLanguageOverride(AppLanguage::chinese);
    EXPECT_NE(CandidateTexts::reason(candidate), reason);
  }
}

}  // namespace
}  // namespace tessaly
