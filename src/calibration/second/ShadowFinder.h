// Soft shadows of 1.5 to 37 samples' radius in the mean of all bright groups: discs that are darker than the ring
// around them.
//
// A pyramid of five levels, each half of the one before, with two radii in each. Found where R > 6.5 σ(R), R > 0.4 % of
// the light and R is the largest around. The groups vote afterwards.
#pragma once

#include "calibration/second/GroupSums.h"
#include "calibration/second/LineFinder.h"

#include <cstdint>
#include <vector>

namespace tessaly::second {

inline constexpr double shadowThreshold = 6.5;

struct Shadow {
  double x = 0;
  double y = 0;
  double radius = 0;    ///< ρ of the filter that saw it best, in samples
  double evidence = 0;  ///< R / σ(R)
  double depth = 0;     ///< R as a share of the light
  double radiusX = 0;   ///< of the ellipse
  double radiusY = 0;

  [[nodiscard]] bool contains(double column, double row) const;
};

/// The mean light without what would be mistaken for shadows: found columns are replaced by what is beside them, single
/// samples end at 4 σ of their departure.
[[nodiscard]] Plane cleanedLight(const MeanPlane& light, const PlaneShape& shape, const std::vector<FoundColumn>& lines,
                                 int threads);

/// Strongest first; of shadows on top of each other only the strongest. `counted`: where any group voted.
[[nodiscard]] std::vector<Shadow> findShadows(const Plane& cleaned, const PlaneShape& shape,
                                              const CountedColumns& counted, int threads);

/// Their ellipses, measured in the cleaned light: the centre of the lost light, and where the profile across falls
/// below 12 % of the depth.
void measureEllipses(std::vector<Shadow>& shadows, const Plane& cleaned, const PlaneShape& shape);

/// R of one group at a shadow, as a share of the light; what is far off there is clipped.
[[nodiscard]] double shadowDepth(const Plane& plane, const PlaneShape& shape, const Shadow& shadow);

}  // namespace tessaly::second
