#include "calibration/review/SensorFigures.h"

#include "calibration/second/Planes.h"

#include <algorithm>
#include <vector>

namespace tessaly {
namespace {

constexpr double baseISO = 100;
// Noise of a flat above which its columns and shadows are hidden more by photons than by what differs anyway: half the
// range at the base ISO of a usual sensor has half of it.
constexpr double noisyFlat = 0.015;
constexpr double leastFNumber = 11;
constexpr std::int64_t enoughFrames = 6;

bool isLit(const SettingFigures& setting) {
  return !setting.isDark && !setting.isClipped && setting.level > 0;
}

std::optional<double> middle(std::vector<double> numbers) {
  if (numbers.empty()) return std::nullopt;
  std::sort(numbers.begin(), numbers.end());
  return (numbers[(numbers.size() - 1) / 2] + numbers[numbers.size() / 2]) / 2;
}

/// The read noise of dark frames of this ISO in u; 0 where there are none.
double darkNoise(std::span<const SettingFigures> settings, std::int64_t iso) {
  std::vector<double> noises;
  for (const SettingFigures& setting : settings)
    if (setting.isDark && setting.iso == iso) noises.push_back(setting.noise);
  return middle(std::move(noises)).value_or(0);
}

std::optional<double> electronsPerUnit(std::span<const SettingFigures> settings) {
  std::vector<double> gains;
  for (const SettingFigures& setting : settings) {
    if (!isLit(setting) || setting.iso.value_or(0) <= 0) continue;
    const double readNoise = darkNoise(settings, *setting.iso);
    const double slope = setting.photonSlope - readNoise * readNoise / setting.level;
    if (slope > 0) gains.push_back(static_cast<double>(*setting.iso) / baseISO / slope);
  }
  return middle(std::move(gains));
}

std::optional<double> leastReadNoise(std::span<const SettingFigures> settings, double electronsAtBase) {
  std::optional<double> least;
  for (const SettingFigures& setting : settings) {
    if (!setting.isDark || setting.iso.value_or(0) <= 0) continue;
    const double noise = setting.noise * electronsAtBase * baseISO / static_cast<double>(*setting.iso);
    if (!least || noise < *least) least = noise;
  }
  return least;
}

const SettingFigures* quietestLight(std::span<const SettingFigures> settings) {
  const SettingFigures* quietest = nullptr;
  for (const SettingFigures& setting : settings)
    if (isLit(setting) && (quietest == nullptr || setting.noise < quietest->noise)) quietest = &setting;
  return quietest;
}

template <typename Condition>
std::int64_t countOf(std::span<const SettingFigures> settings, Condition condition) {
  return std::count_if(settings.begin(), settings.end(), condition);
}

bool isDarkSetting(const SettingFigures& setting) {
  return setting.isDark;
}

}  // namespace

SensorFigures sensorFigures(std::span<const SettingFigures> settings) {
  SensorFigures figures;
  figures.electronsPerUnit = electronsPerUnit(settings);
  if (figures.electronsPerUnit) {
    figures.fullRange = *figures.electronsPerUnit * second::unitsOfRange;
    figures.readNoise = leastReadNoise(settings, *figures.electronsPerUnit);
  }
  if (const SettingFigures* quietest = quietestLight(settings)) {
    figures.responseSpread = quietest->spread;
    figures.lightNoise = quietest->noise;
  }
  return figures;
}

SessionLack sessionLack(std::span<const SettingFigures> settings) {
  const SettingFigures* quietest = quietestLight(settings);
  if (quietest == nullptr) return SessionLack::unclippedFlats;
  if (countOf(settings, isDarkSetting) == 0) return SessionLack::darkFrames;
  if (quietest->noise > noisyFlat) return SessionLack::lowerISO;
  const bool isWideOpen = std::any_of(settings.begin(), settings.end(), [](const SettingFigures& setting) {
    return isLit(setting) && setting.fNumber.value_or(leastFNumber) < leastFNumber;
  });
  if (isWideOpen) return SessionLack::smallerAperture;
  const bool hasFew = std::any_of(settings.begin(), settings.end(),
                                  [](const SettingFigures& setting) { return setting.frames < enoughFrames; });
  if (hasFew) return SessionLack::moreFrames;
  if (countOf(settings, isLit) < 2 || countOf(settings, isDarkSetting) < 2) return SessionLack::moreSettings;
  return SessionLack::nothing;
}

}  // namespace tessaly
