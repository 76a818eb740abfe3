// What is wrong with a simulated body, as records, and its planting: strengths over decades, from invisible to obvious,
// so that what a detector finds can be told by strength.
//
// Coordinates are active ones. u is a raw unit of a 14-bit range of 15,871, whatever the depth of the body.
#pragma once

#include <cstdint>
#include <vector>

namespace tessaly::tools {

/// Adjacent columns from row yStart to row yEnd that read `offset` u too high, or whose light counts 1 + gain times.
struct BodyLine {
  std::int64_t x = 0;
  std::int64_t yStart = 0;
  std::int64_t yEnd = 0;  ///< inclusive
  std::int64_t width = 1;
  double offset = 0;
  double gain = 0;
  bool isPartial = false;
  double strength = 0;  ///< of either, in u at 0.4 of the range, without sign
};

struct BodyPixel {
  enum class Kind {
    hot,       ///< electrons a second
    offset,    ///< u
    dim,       ///< share of the light that is lost
    stuck,     ///< share of the range that it always reads
    telegraph  ///< electrons, in `share` of the frames
  };

  std::int64_t x = 0;
  std::int64_t y = 0;
  Kind kind = Kind::hot;
  double strength = 0;
  double share = 0;
};

/// A grain on the photosites themselves, an ellipse whose edge is one sample soft.
struct BodySpeck {
  double x = 0;
  double y = 0;
  double radiusX = 1;
  double radiusY = 1;
  double depth = 0;
};

/// A grain on the cover glass: it hides a share of the lens's pupil from each photosite below, so that the aperture
/// decides how wide and how deep its shadow is.
struct BodyDust {
  static constexpr double distance = 1500;  ///< µm above the photosites
  static constexpr double pitch = 5;        ///< µm from photosite to photosite

  double x = 0;
  double y = 0;
  double radius = 1;  ///< samples
  double opacity = 1;

  /// The radius of the pupil seen from a photosite, in samples.
  [[nodiscard]] static double pupil(double fNumber) { return distance / (2 * fNumber * pitch); }
  /// What the light at `separation` samples from the centre is multiplied with.
  [[nodiscard]] double transmission(double separation, double fNumber) const;
  [[nodiscard]] double shadowRadius(double fNumber) const { return radius + pupil(fNumber); }
  [[nodiscard]] double depth(double fNumber) const { return 1 - transmission(0, fNumber); }
};

struct BodyDefects {
  std::vector<BodyPixel> pixels;
  std::vector<BodyLine> lines;
  std::vector<BodySpeck> specks;
  std::vector<BodyDust> dust;
};

/// How many of each.
struct BodyDefectCounts {
  std::int64_t columns = 0;
  std::int64_t partialColumns = 0;
  std::int64_t dust = 0;
  std::int64_t specks = 0;
  std::int64_t hot = 0;
  std::int64_t offset = 0;
  std::int64_t dim = 0;
  std::int64_t stuck = 0;
  std::int64_t telegraph = 0;

  /// What suits an active area of this size.
  [[nodiscard]] static BodyDefectCounts of(std::int64_t width, std::int64_t height);
};

/// Least and most of each kind; every decade between them is alike.
struct BodyStrengths {
  struct Range {
    double least = 0;
    double most = 0;
  };

  Range column{0.5, 60};       ///< u
  Range partialColumn{1, 60};  ///< u
  Range dust{4, 40};           ///< µm
  Range speck{0.05, 0.9};
  Range hot{30, 30000};
  Range offset{4, 2000};
  Range dim{0.03, 1};
  Range stuck{0.3, 1};
  Range telegraph{5, 1000};

  /// The middle of these: neither invisible nor absurd.
  [[nodiscard]] static BodyStrengths moderate();
};

/// Plants them at places that follow from the seed, apart from each other as far as there is room.
[[nodiscard]] BodyDefects plantBodyDefects(std::int64_t width, std::int64_t height, const BodyDefectCounts& counts,
                                           std::uint64_t seed, const BodyStrengths& strengths = {});

}  // namespace tessaly::tools
