// A camera body with a sensor that is not perfect, for calibration frames and photographs whose true scene is known.
//
// The model of one sample, in raw units above the black level:
//
//   light × sensitivity of its colour × response of the photosite + dark current + offset of its column + noise
//
// The masked border gets no light. Each frame can be rendered undamaged and damaged with the same noise; the two differ
// only at planted samples. Everything is a function of the seed: the same numbers on every machine, in any order.
// Immutable after construction; safe to use from several threads.
#pragma once

#include "tools/DNGBuilder.h"
#include "tools/Scenes.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tools {

/// A believable small camera: 1200 × 800 samples of 12 bits, 64 columns and 32 rows of border at left and top, 16 and 8
/// at right and bottom.
struct SensorDescription {
  std::string make = "Tessaly";
  std::string model = "Tessaly Simulated Camera";
  std::string serial = "SIM-0001";
  std::int64_t width = 1200;
  std::int64_t height = 800;
  std::int64_t activeX = 64;
  std::int64_t activeY = 32;
  std::int64_t activeWidth = 1120;
  std::int64_t activeHeight = 760;
  std::string cfa = "RGGB";  ///< anchored at the active area; empty: linear, no mosaic
  int bits = 12;
  std::int64_t black = 256;
  std::int64_t white = 4095;
  double readNoise = 1.5;                               ///< standard deviation in raw units
  double electronsPerUnit = 16;                         ///< at ISO 100; photon noise follows from it
  double responseSpread = 0.0003;                       ///< standard deviation of the photosites' response
  std::array<double, 3> sensitivity{0.60, 1.00, 0.75};  ///< red, green, blue
  std::uint64_t seed = 1;

  [[nodiscard]] std::int64_t range() const { return white - black; }
  [[nodiscard]] bool isActive(std::int64_t x, std::int64_t y) const;
  /// The colour of a photosite in raw coordinates; 1 on a linear sensor.
  [[nodiscard]] int colourAt(std::int64_t x, std::int64_t y) const;
};

/// In raw coordinates, as everything that is planted. Amounts are fractions of the range from black to white.
struct PlantedPixel {
  enum class Kind {
    hot,   ///< gains `amount` a second at ISO 100, light or no light
    dead,  ///< sees the fraction `amount` of the light
    stuck  ///< always reads `amount`
  };

  std::int64_t x = 0;
  std::int64_t y = 0;
  Kind kind = Kind::hot;
  double amount = 0;
};

/// Adjacent columns that read `offset` too high from row yStart to row yEnd.
struct PlantedLine {
  std::int64_t x = 0;
  std::int64_t yStart = 0;
  std::int64_t yEnd = 0;  ///< inclusive
  std::int64_t width = 1;
  double offset = 0;
};

/// The shadow of dust: in the centre it takes `depth` of the light, at the rim of its ellipse nothing.
struct PlantedSpot {
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t radiusX = 1;
  std::int64_t radiusY = 1;
  double depth = 0;
};

struct PlantedDefects {
  std::vector<PlantedPixel> pixels;
  std::vector<PlantedLine> lines;
  std::vector<PlantedSpot> spots;
};

struct Exposure {
  std::int64_t iso = 100;
  std::pair<std::int64_t, std::int64_t> seconds{1, 60};  ///< numerator, denominator
};

enum class Condition { undamaged, damaged };

class SensorSimulator {
 public:
  SensorSimulator(SensorDescription description, const PlantedDefects& defects);

  [[nodiscard]] const SensorDescription& description() const { return description_; }

  /// The raw plane of one frame. Frames with different numbers have different noise.
  [[nodiscard]] std::vector<std::uint16_t> render(const Scene& scene, const Exposure& exposure,
                                                  std::uint64_t frameNumber, Condition condition) const;

  /// The linear indices (y × width + x) of all planted samples, ascending.
  [[nodiscard]] std::vector<std::int64_t> plantedSamples() const;

  /// A DNG of this body with the description and the samples set; storage can still be chosen.
  [[nodiscard]] DNGBuilder file(const Exposure& exposure, std::vector<std::uint16_t> samples) const;

 private:
  /// All that is wrong with one photosite.
  struct Damage {
    std::int64_t index = 0;
    double transmission = 1;
    double offset = 0;
    double darkRate = 0;
    double stuckAt = -1;  ///< negative: not stuck
  };

  struct Shot;

  void plant(const PlantedDefects& defects);
  void plantPixel(const PlantedPixel& pixel);
  void plantLine(const PlantedLine& line);
  void plantSpot(const PlantedSpot& spot);
  void mergeDamages();
  [[nodiscard]] double lightAt(const Scene& scene, std::int64_t index) const;
  [[nodiscard]] std::uint16_t sampleAt(const Shot& shot, const Damage& damage) const;

  SensorDescription description_;
  std::vector<Damage> damages_;  ///< ascending by index, one a photosite
};

}  // namespace tessaly::tools
