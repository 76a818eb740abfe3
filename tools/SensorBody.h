// A camera body as physics makes it: a full well, photon noise, photosites whose response, dark current and read noise
// differ, noise of rows, columns and banding, shading by colour, dust above the sensor, unsteady photosites and cosmic
// rays.
//
//   electrons = light · response · transmission · full well · 100 / ISO + dark rate · time, then photon noise,
//               telegraph and cosmic rays, at most 1.1 full wells
//   raw       = round(black + gain · electrons + read noise + offset + rows + columns + banding), clipped
//
// Everything follows from the seed and the number of a frame. Immutable after construction; safe from several threads.
#pragma once

#include "tools/BodyDefects.h"
#include "tools/DNGBuilder.h"
#include "tools/Scenes.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tools {

struct BodyDescription {
  std::string model = "Tessaly Simulated Body";
  std::string serial = "BODY-0001";
  std::int64_t activeWidth = 1200;
  std::int64_t activeHeight = 1000;
  std::int64_t left = 48;  ///< masked columns
  std::int64_t top = 24;   ///< masked rows
  std::int64_t right = 16;
  std::int64_t bottom = 8;
  std::string cfa = "RGGB";  ///< anchored at the active area; empty: no mosaic
  std::int64_t black = 512;
  std::int64_t white = 16383;
  double fullWell = 45000;  ///< electrons at ISO 100
  double responseSpread = 0.006;
  double columnResponseSpread = 0.0002;
  double readNoise = 1.7;        ///< electrons
  double converterNoise = 1;     ///< u
  double columnOffset = 0.12;    ///< u
  double photositeOffset = 0.3;  ///< u
  std::uint64_t seed = 1;

  [[nodiscard]] std::int64_t width() const { return left + activeWidth + right; }
  [[nodiscard]] std::int64_t height() const { return top + activeHeight + bottom; }
  [[nodiscard]] double span() const { return static_cast<double>(white - black); }
  /// The raw amount of one u.
  [[nodiscard]] double unit() const { return span() / 15871; }
};

/// How a frame is taken.
struct BodyExposure {
  std::int64_t iso = 100;
  std::pair<std::int64_t, std::int64_t> seconds{1, 60};  ///< numerator, denominator
  double level = 0;                                      ///< of the range; 0: lens cap
  double fNumber = 16;
  double wallPattern = 0;  ///< the share of the light that a faint pattern of the wall changes; it moves between frames
  Scene scene = {};        ///< what is photographed instead of the wall, in front of a lens without shading

  [[nodiscard]] double time() const { return static_cast<double>(seconds.first) / static_cast<double>(seconds.second); }
};

class SensorBody {
 public:
  /// Of red, green and blue photosites.
  static constexpr std::array<double, 3> sensitivity{0.55, 1.00, 0.70};

  SensorBody(BodyDescription description, BodyDefects defects);

  [[nodiscard]] const BodyDescription& description() const { return description_; }
  [[nodiscard]] const BodyDefects& defects() const { return defects_; }

  /// Electrons a second that this photosite (active coordinates) gathers in the dark.
  [[nodiscard]] double darkRate(std::int64_t x, std::int64_t y) const { return darkRate_[activeIndex(x, y)]; }
  /// Its read noise as a multiple of the usual one.
  [[nodiscard]] double noisiness(std::int64_t x, std::int64_t y) const { return noisiness_[activeIndex(x, y)]; }

  /// The raw plane of one frame.
  [[nodiscard]] std::vector<std::uint16_t> render(const BodyExposure& exposure, std::uint64_t frame) const;

  /// A DNG of this body; storage can still be chosen.
  [[nodiscard]] DNGBuilder file(const BodyExposure& exposure, std::vector<std::uint16_t> samples) const;

 private:
  struct Shot;

  [[nodiscard]] std::size_t activeIndex(std::int64_t x, std::int64_t y) const {
    return static_cast<std::size_t>(y * description_.activeWidth + x);
  }
  [[nodiscard]] int colourAt(std::int64_t x, std::int64_t y) const;
  void makePhotosites();
  void plantPixels();
  void plantLines();
  void plantSpecks();
  [[nodiscard]] std::vector<float> transmissions(double fNumber) const;
  [[nodiscard]] Shot shot(const BodyExposure& exposure, std::uint64_t frame) const;
  void addTelegraph(Shot& shot) const;
  void addCosmicRays(Shot& shot) const;
  [[nodiscard]] double lightAt(const Shot& shot, std::int64_t x, std::int64_t y) const;
  void renderRow(const Shot& shot, std::int64_t rawY, std::uint16_t* row) const;

  BodyDescription description_;
  BodyDefects defects_;
  // By active photosite.
  std::vector<float> response_;
  std::vector<float> darkRate_;
  std::vector<float> noisiness_;
  std::vector<float> offset_;   ///< raw units
  std::vector<float> stuckAt_;  ///< share of the range; negative: not stuck
};

}  // namespace tessaly::tools
