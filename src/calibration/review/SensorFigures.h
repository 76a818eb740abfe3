// The figures of a sensor, in electrons and shares of the light, from what the settings of a calibration tell.
//
// The photon transfer method of EMVA 1288: light that arrives by photons has a variance that grows with it, and the
// slope says how many electrons a raw unit stands for. Stateless; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <optional>
#include <span>

namespace tessaly {

struct SensorFigures {
  std::optional<double> electronsPerUnit;  ///< of a u, at ISO 100
  std::optional<double> fullRange;         ///< electrons that fill the raw range at ISO 100
  std::optional<double> readNoise;         ///< electrons, of the setting where it is least
  std::optional<double> responseSpread;    ///< share of the light, of the setting with the least noise
  std::optional<double> lightNoise;        ///< the least noise of a bright frame, as a share of the light
};

/// What the settings are enough to tell.
[[nodiscard]] SensorFigures sensorFigures(std::span<const SettingFigures> settings);

/// What a session would show more with, the first that applies.
enum class SessionLack {
  nothing,
  unclippedFlats,   ///< every bright setting is clipped
  darkFrames,       ///< there are none
  lowerISO,         ///< the flats are noisier than the sensor's own unevenness needs
  smallerAperture,  ///< dust is seen best at f/11 and above
  moreFrames,       ///< fewer than six a setting
  moreSettings      ///< fewer than two bright or dark ones
};

[[nodiscard]] SessionLack sessionLack(std::span<const SettingFigures> settings);

}  // namespace tessaly
