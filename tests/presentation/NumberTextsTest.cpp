#include "localization/Localization.h"
#include "presentation/NumberTexts.h"

#include <gtest/gtest.h>

namespace tessaly::NumberTexts {
namespace {

TEST(NumberTexts, KeepThreeDigitsThatCount) {
  Localization::setLanguageOverride(AppLanguage::english);
  EXPECT_EQ(significant(0.004217), "0.00422");
  EXPECT_EQ(significant(1.7), "1.70");
  EXPECT_EQ(significant(45012), "45000");
  EXPECT_EQ(significant(-12.34), "-12.3");
  EXPECT_EQ(significant(0), "0");
  EXPECT_EQ(decimal(16, 0), "16");
}

TEST(NumberTexts, HaveAFrenchComma) {
  Localization::setLanguageOverride(AppLanguage::french);
  EXPECT_EQ(significant(1.7), "1,70");
  EXPECT_EQ(decimal(5.6, 1), "5,6");
  Localization::setLanguageOverride(std::nullopt);
}

}  // namespace
}  // namespace tessaly::NumberTexts
