#include "localization/Localization.h"
#include "presentation/BatchProgressDisplay.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

class BatchProgressDisplayTest : public testing::Test {
 protected:
  void SetUp() override { Localization::setLanguageOverride(AppLanguage::english); }
  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  BatchProgressDisplay display;
};

TEST_F(BatchProgressDisplayTest, BeginsEmptyWithABarThatCanBeDrawn) {
  EXPECT_EQ(display.status(), "Preparing…");
  EXPECT_EQ(display.barValue(), 0);
  EXPECT_EQ(display.barMaximum(), 1);
  display.show({0, 0, 0, 0, 0, ""});
  EXPECT_EQ(display.barMaximum(), 1);
}

TEST_F(BatchProgressDisplayTest, NeverMovesBackForALateSnapshot) {
  EXPECT_TRUE(display.show({5, 2, 2, 0, 0, "b.dng"}));
  EXPECT_FALSE(display.show({5, 1, 1, 0, 0, "a.dng"}));
  EXPECT_EQ(display.status(), "2/5  Success 2  Failed 0  Skipped 0  b.dng");
  EXPECT_EQ(display.barValue(), 2);
  EXPECT_EQ(display.barMaximum(), 5);
}

TEST_F(BatchProgressDisplayTest, KeepsSayingThatItStops) {
  display.show({5, 2, 2, 0, 0, "b.dng"});
  display.stopRequested();
  display.show({5, 3, 3, 0, 0, "c.dng"});
  EXPECT_EQ(display.status(), "Stopping after the current file…");
  EXPECT_EQ(display.barValue(), 3);
}

TEST_F(BatchProgressDisplayTest, ShowsANameThatItDoesNotObey) {
  display.show({5, 1, 1, 0, 0, "a\nb.dng"});
  EXPECT_EQ(display.status(), "1/5  Success 1  Failed 0  Skipped 0  a␊b.dng");
}

}  // namespace
}  // namespace tessaly
