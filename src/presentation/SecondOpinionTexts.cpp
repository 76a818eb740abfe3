#include "presentation/SecondOpinionTexts.h"

#include "calibration/review/Proposals.h"
#include "calibration/review/SensorFigures.h"
#include "localization/Localization.h"
#include "presentation/NumberTexts.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaly::SecondOpinionTexts {
namespace {

std::string gap() {
  return std::string(spoken(Localization::language()).sentenceGap);
}

/// Apertures as lenses have them, in thirds of a stop.
std::string stop(double fNumber) {
  constexpr std::array stops{1.0, 1.1, 1.2, 1.4, 1.6,  1.8,  2.0,  2.2,  2.5,  2.8,  3.2,  3.5,  4.0,  4.5,  5.0, 5.6,
                             6.3, 7.1, 8.0, 9.0, 10.0, 11.0, 13.0, 14.0, 16.0, 18.0, 20.0, 22.0, 25.0, 29.0, 32.0};
  const auto next = std::lower_bound(stops.begin(), stops.end(), fNumber * 0.95);
  const double shown = next == stops.end() ? std::round(fNumber) : *next;
  return NumberTexts::decimal(shown, shown < 10 && shown != std::floor(shown) ? 1 : 0);
}

std::string visibility(const SecondOpinionFinding& shadow, std::optional<double> fNumber) {
  if (!fNumber || shadow.effect <= 0) return {};
  return LF("It can be seen from about f/%@ on.", {stop(CandidateSelection::visibleFrom(shadow.effect, *fNumber))}) +
         gap();
}

}  // namespace

std::optional<std::string> mark(bool isProposed, std::optional<bool> confirmed) {
  if (isProposed) return L("second opinion");
  if (!confirmed) return std::nullopt;
  return *confirmed ? L("confirmed") : L("not confirmed");
}

std::string meaning(bool confirmed) {
  return confirmed ? L("Confirmed: a second, independent measurement of the same frames finds this defect here too.")
                   : L("Not confirmed: a second, independent measurement of the same frames finds no such defect here. "
                       "Look at it closely before you include it.");
}

std::string advice(const SecondOpinionFinding& finding, std::optional<double> fNumber) {
  if (finding.finder != SecondOpinionFinding::Finder::shadow)
    return L("Found by the second opinion alone; it is included only when you include it.");
  if (CandidateSelection::isIncludable(finding))
    return L("A small, deep shadow: it can be included as a spot. Over fine detail rebuilding costs some texture.");
  if (!CandidateSelection::isWideShadow(finding))
    return L("Too faint to be included: rebuilding would cost more than the shadow does.");
  return visibility(finding, fNumber) +
         L("Clean the sensor. It cannot be included: rebuilding so wide a place from its surroundings destroys the "
           "texture of a photograph. A spot can still be added by hand.");
}

std::optional<double> fNumberOf(const SecondOpinion& opinion) {
  std::optional<double> fNumber;
  double level = -1;
  for (const SettingFigures& setting : opinion.settings) {
    if (setting.isDark || !setting.fNumber || setting.level <= level) continue;
    level = setting.level;
    fNumber = setting.fNumber;
  }
  return fNumber;
}

std::string summary(const CalibrationResult& result) {
  const SecondOpinion& opinion = *result.secondOpinion;
  const auto denied = std::count(opinion.confirmed.begin(), opinion.confirmed.end(), std::optional(false));
  const auto more = static_cast<std::int64_t>(CandidateSelection::proposals(result).size());
  std::string text = LF("Second opinion: %d more findings; %d candidates not confirmed.", {more, std::int64_t{denied}});
  const std::string lack = lackText(opinion.settings);
  return lack.empty() ? text : text + gap() + lack;
}

std::string lackText(std::span<const SettingFigures> settings) {
  switch (sessionLack(settings)) {
    case SessionLack::nothing:
      return {};
    case SessionLack::unclippedFlats:
      return L("Flats with less light would show more: these are too bright to measure.");
    case SessionLack::darkFrames:
      return L("Frames with the lens cap on would show warm pixels and weak columns.");
    case SessionLack::lowerISO: {
      const double noise = sensorFigures(settings).lightNoise.value_or(0) * 100;
      return LF("Flats at a lower ISO would show weaker columns: the noise of these is %@%% of the light.",
                {NumberTexts::decimal(noise, 1)});
    }
    case SessionLack::smallerAperture:
      return L("Flats at f/16 would show more dust.");
    case SessionLack::moreFrames:
      return L("Six frames at each setting would show weaker defects.");
    case SessionLack::moreSettings:
      break;
  }
  return L("A second exposure setting, of bright and of dark frames, would tell defects from chance.");
}

std::string unconfirmedExcluded(std::int64_t count) {
  return LF("Excluded because the second opinion does not confirm them: %d", {count});
}

}  // namespace tessaly::SecondOpinionTexts
