#include "repair/DefectMap.h"

#include <algorithm>

namespace tessaly {
namespace {

struct PlaneSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

void addLine(SampleMask& mask, const DefectLine& line, PlaneSize plane) {
  const std::int64_t first = std::max<std::int64_t>(line.x, 0);
  const std::int64_t last = std::min(line.x + line.width, plane.width) - 1;
  const std::int64_t bottom = std::min(line.yEnd, plane.height - 1);
  for (std::int64_t row = std::max<std::int64_t>(line.yStart, 0); row <= bottom; ++row) {
    mask.add(row, first, last);
  }
}

/// Adds the columns x ± reach of a row, as far as they lie in the plane.
void addSpotRow(SampleMask& mask, std::int64_t row, std::int64_t x, std::int64_t reach, PlaneSize plane) {
  if (row < 0 || row >= plane.height) return;
  mask.add(row, std::max<std::int64_t>(x - reach, 0), std::min(x + reach, plane.width - 1));
}

/// Row by row from the centre outwards, where the ellipse only narrows: a sample at (dx, dy) from the centre is inside
/// when dx² · ry² + dy² · rx² ≤ rx² · ry². Radii are below 50,000, so no product leaves 64 bits.
void addSpot(SampleMask& mask, const DefectSpot& spot, PlaneSize plane) {
  const std::int64_t rx2 = std::max<std::int64_t>(spot.radiusX * spot.radiusX, 1);
  const std::int64_t ry2 = std::max<std::int64_t>(spot.radiusY * spot.radiusY, 1);
  std::int64_t reach = spot.radiusX;
  for (std::int64_t dy = 0; dy <= spot.radiusY; ++dy) {
    while (reach * reach * ry2 > rx2 * ry2 - dy * dy * rx2)
      --reach;
    addSpotRow(mask, spot.y - dy, spot.x, reach, plane);
    addSpotRow(mask, spot.y + dy, spot.x, reach, plane);
  }
}

void addAll(DefectMap& map, const CameraProfile& profile, PlaneSize plane) {
  for (const DefectLine& line : profile.lines)
    addLine(map.lines, line, plane);
  for (const DefectPixel& pixel : profile.pixels)
    map.points.add(pixel.y, pixel.x, pixel.x);
  if (!profile.spots) return;
  for (const DefectSpot& spot : *profile.spots)
    addSpot(map.spots, spot, plane);
}

}  // namespace

DefectMap::DefectMap(const CameraProfile& profile, std::int64_t rawWidth, std::int64_t rawHeight)
    : lines(rawWidth, rawHeight), spots(rawWidth, rawHeight), points(rawWidth, rawHeight), all(rawWidth, rawHeight) {
  addAll(*this, profile, {rawWidth, rawHeight});
  spots.subtract(lines);
  points.subtract(lines);
  points.subtract(spots);
  all.unite(lines);
  all.unite(spots);
  all.unite(points);
}

}  // namespace tessaly
