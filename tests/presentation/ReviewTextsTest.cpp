#include "localization/Localization.h"
#include "presentation/ReviewTexts.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

using Kind = CalibrationCandidate::Kind;

class ReviewTextsTest : public testing::Test {
 protected:
  void SetUp() override {
    Localization::setLanguageOverride(AppLanguage::english);
    metadata.activeX = 8;
    metadata.activeY = 10;
  }

  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static CalibrationCandidate candidate(Kind kind) {
    CalibrationCandidate made;
    made.kind = kind;
    made.yStart = 10;
    made.yEnd = 209;
    return made;
  }

  DNGMetadata metadata;
};

TEST_F(ReviewTextsTest, ShowTheThresholdInWholePercent) {
  EXPECT_EQ(ReviewTexts::matchingPixelsIncluded(0.98),
            "Included pixels with confidence ≥ 98%. Columns and fixed spots still require manual review.");
  EXPECT_EQ(ReviewTexts::matchingPixelsIncluded(0.956),
            "Included pixels with confidence ≥ 96%. Columns and fixed spots still require manual review.");
}

TEST_F(ReviewTextsTest, ExplainWhatAClickFilledIn) {
  EXPECT_EQ(ReviewTexts::candidateClicked(candidate(Kind::spot), metadata),
            "Spot coordinates and radius filled. Confirm them, then click Add Fixed Spot.");
  EXPECT_EQ(ReviewTexts::candidateClicked(candidate(Kind::pixel), metadata),
            "Pixel coordinates filled. Confirm them, then click Add Pixel.");
  EXPECT_EQ(ReviewTexts::candidateClicked(candidate(Kind::line), metadata),
            "Column X coordinate filled. Confirm it, then click Add Full Column.");
  EXPECT_EQ(ReviewTexts::columnClicked(17),
            "Active-area coordinate x=17. If the cyan guide matches the defect, click Add Full Column.");
}

TEST_F(ReviewTextsTest, TellWhereAPartialColumnStarts) {
  CalibrationCandidate partial = candidate(Kind::line);
  partial.yStart = 50;
  EXPECT_EQ(ReviewTexts::candidateClicked(partial, metadata),
            "Column X coordinate filled. Confirm it, then click Add Full Column. This partial defective column starts "
            "at y=40. Including it preserves the detected range; the manual button adds a full column.");
}

TEST_F(ReviewTextsTest, NameTheInspectedPhotograph) {
  EXPECT_EQ(ReviewTexts::inspecting("a.dng"), "a.dng. Zoom in, click the vertical defect, then click Add Full Column.");
}

}  // namespace
}  // namespace tessaly
