#include "localization/Localization.h"
#include "presentation/SecondOpinionTexts.h"
#include "presentation/SensorReport.h"

#include <gmock/gmock.h>

namespace tessaly {
namespace {

using Finder = SecondOpinionFinding::Finder;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class SecondOpinionWords : public testing::Test {
 protected:
  SecondOpinionWords() { Localization::setLanguageOverride(AppLanguage::english); }
  ~SecondOpinionWords() override { Localization::setLanguageOverride(std::nullopt); }

  static SecondOpinionFinding shadow(std::int64_t radius, double depth) {
    SecondOpinionFinding finding;
    finding.finder = Finder::shadow;
    finding.candidate.kind = CandidateKind::spot;
    finding.candidate.radiusX = finding.candidate.radiusY = radius;
    finding.effect = depth;
    return finding;
  }

  static SettingFigures setting(bool isDark, double noise) {
    SettingFigures figures;
    figures.isDark = isDark;
    figures.iso = isDark ? 400 : 1600;
    figures.exposureSeconds = isDark ? 2.0 : 0.008;
    figures.frames = 6;
    figures.noise = noise;
    figures.level = isDark ? 0 : 5000;
    figures.photonSlope = isDark ? 0 : 5.6;
    figures.departing = {{0.01, 900}, {1, 3}};
    if (!isDark) figures.fNumber = 5.6;
    return figures;
  }

  static CalibrationResult result() {
    CalibrationResult result;
    result.metadata.model = "Body <1>";
    result.candidates.resize(3);
    result.secondOpinion =
        SecondOpinion{{shadow(14, 0.02)}, {true, false, std::nullopt}, {setting(true, 3), setting(false, 0.03)}};
    return result;
  }
};

TEST_F(SecondOpinionWords, MarkWhatIsProposedAndWhatIsConfirmed) {
  EXPECT_EQ(SecondOpinionTexts::mark(true, std::nullopt), "second opinion");
  EXPECT_EQ(SecondOpinionTexts::mark(false, true), "confirmed");
  EXPECT_EQ(SecondOpinionTexts::mark(false, false), "not confirmed");
  EXPECT_EQ(SecondOpinionTexts::mark(false, std::nullopt), std::nullopt);
  EXPECT_THAT(SecondOpinionTexts::meaning(true), StartsWith("Confirmed: "));
  EXPECT_THAT(SecondOpinionTexts::meaning(false), StartsWith("Not confirmed: "));
}

TEST_F(SecondOpinionWords, AreHonestAboutDust) {
  EXPECT_THAT(SecondOpinionTexts::advice(shadow(14, 0.02), 16.0),
              StartsWith("It can be seen from about f/11 on. Clean the sensor. It cannot be included: "));
  EXPECT_THAT(SecondOpinionTexts::advice(shadow(14, 0.02), std::nullopt), StartsWith("Clean the sensor."));
  EXPECT_THAT(SecondOpinionTexts::advice(shadow(3, 0.2), 16.0), HasSubstr("can be included as a spot"));
  EXPECT_THAT(SecondOpinionTexts::advice(shadow(3, 0.01), 16.0), StartsWith("Too faint"));
}

TEST_F(SecondOpinionWords, TellApertureInFrenchWithAComma) {
  Localization::setLanguageOverride(AppLanguage::french);
  EXPECT_THAT(SecondOpinionTexts::advice(shadow(14, 0.08), 16.0), HasSubstr("f/5,6"));
}

TEST_F(SecondOpinionWords, SumUpAndSayWhatTheSessionLacks) {
  EXPECT_EQ(SecondOpinionTexts::summary(result()),
            "Second opinion: 1 more findings; 1 candidates not confirmed. Flats at a lower ISO would show weaker "
            "columns: the noise of these is 3.0% of the light.");
  EXPECT_EQ(SecondOpinionTexts::lackText({}),
            "Flats with less light would show more: these are too bright to measure.");
}

TEST_F(SecondOpinionWords, TakeTheApertureOfTheBrightestFlats) {
  CalibrationResult two = result();
  two.secondOpinion->settings.push_back(setting(false, 0.02));
  two.secondOpinion->settings.back().level = 7000;
  two.secondOpinion->settings.back().fNumber = 16;
  EXPECT_EQ(SecondOpinionTexts::fNumberOf(*two.secondOpinion), 16);
  EXPECT_EQ(SecondOpinionTexts::fNumberOf(SecondOpinion()), std::nullopt);
}

TEST_F(SecondOpinionWords, FillTheSensorReport) {
  const std::string page = SensorReport::page(result());
  EXPECT_THAT(page, HasSubstr("<p>Body &lt;1&gt;</p>"));
  EXPECT_THAT(page, HasSubstr("<td>Bright, ISO 1600, 1/125 s, f/5.6</td><td>6</td><td>5000 u</td>"
                              "<td>3.00% of the light</td>"));
  EXPECT_THAT(page, HasSubstr("<td>Dark, ISO 400, 2.00 s</td><td>6</td><td></td><td>3.00 u</td>"));
  EXPECT_THAT(page, HasSubstr("<td>Pixel (documented)</td><td>3</td><td>1</td>"));
  EXPECT_THAT(page, HasSubstr("<td>Soft shadows</td><td>1</td>"));
  EXPECT_THAT(page, HasSubstr("<h2>Departures in light</h2>\n<figure>\n<svg "));
  EXPECT_THAT(page, Not(HasSubstr("%@")));
}

TEST_F(SecondOpinionWords, ReportInEveryLanguageWithoutALeftOverEnglishHeading) {
  for (const AppLanguage language : {AppLanguage::chinese, AppLanguage::french}) {
    Localization::setLanguageOverride(language);
    const std::string page = SensorReport::page(result());
    for (const char* english :
         {"Sensor Report", "Read noise", "Departures", "confirmed", "Soft shadows", "not measured"})
      EXPECT_THAT(page, Not(HasSubstr(english)));
  }
}

}  // namespace
}  // namespace tessaly
