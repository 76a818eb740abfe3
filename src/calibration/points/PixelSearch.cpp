#include "calibration/points/PixelSearch.h"

#include "calibration/MosaicSteps.h"
#include "calibration/points/Anomalies.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tessaly {
namespace {

constexpr double strongNeighbour = 0.45;  // of the own deviation
constexpr double isolatedRatio = 1.45;    // own deviation : strongest neighbour
constexpr double outstandingScale = 2.5;  // times the noise scale, with fewer than two strong neighbours
constexpr std::int64_t fewNeighbours = 2;
constexpr double leastConfidence = 0.62;
constexpr double surestPixel = 0.99;

struct Offset {
  std::int64_t dx = 0;
  std::int64_t dy = 0;
};

/// The neighbours that a photosite is compared with; which ones depends on its place in the colour cell.
class Neighbourhoods {
 public:
  explicit Neighbourhoods(const DNGMetadata& metadata);

  [[nodiscard]] const std::vector<Offset>& at(std::int64_t x, std::int64_t y) const {
    return offsets_[static_cast<std::size_t>((y % cellHeight_) * cellWidth_ + x % cellWidth_)];
  }

 private:
  std::int64_t cellWidth_ = 1;
  std::int64_t cellHeight_ = 1;
  std::vector<std::vector<Offset>> offsets_;
};

// Those of the same colour, no farther than the nearest one to the left.
std::vector<Offset> neighboursAt(const CFALayout& layout, std::int64_t x, std::int64_t y, std::int64_t reach) {
  std::vector<Offset> offsets;
  for (std::int64_t dy = -reach; dy <= reach; ++dy) {
    for (std::int64_t dx = -reach; dx <= reach; ++dx) {
      const bool isItself = dx == 0 && dy == 0;
      if (!isItself && layout.matches(x, y, x + dx, y + dy)) offsets.push_back({dx, dy});
    }
  }
  return offsets;
}

Neighbourhoods::Neighbourhoods(const DNGMetadata& metadata) {
  const CFALayout layout = metadata.cfaLayout.value_or(CFALayout{1, 1, {0}});
  cellWidth_ = layout.width;
  cellHeight_ = layout.height;
  for (std::int64_t y = 0; y < cellHeight_; ++y) {
    for (std::int64_t x = 0; x < cellWidth_; ++x)
      offsets_.push_back(neighboursAt(layout, x, y, stepsOf(metadata).sameColour));
  }
}

struct Surroundings {
  double strength = 1.0;    // largest |mean| of a neighbour, at least 1
  std::int64_t strong = 0;  // neighbours almost as deviant as the photosite itself
};

// Measured photosites lie two samples inside the active area, so all their neighbours exist; the outermost of these
// are not measured and have mean 0.
Surroundings surroundings(const DeviationMap& map, const std::vector<Offset>& offsets, std::int64_t index) {
  const double own = std::abs(map.mean(index));
  Surroundings result;
  for (const Offset& offset : offsets) {
    const double mean = std::abs(map.mean(index + offset.dy * map.width() + offset.dx));
    result.strength = std::max(result.strength, mean);
    if (mean >= strongNeighbour * own) ++result.strong;
  }
  return result;
}

double confidence(double ratio, double agreement, double strength) {
  return std::min(std::min(ratio / 3, 1.0) * 0.2 + agreement * 0.45 + std::min(strength, 1.0) * 0.35, surestPixel);
}

class PixelSearch {
 public:
  explicit PixelSearch(const DeviationMap& map)
      : map_(map), thresholds_(anomalyThresholds(map)), neighbourhoods_(map.metadata()) {}

  void search(const RowBand& band, PointFindings& findings) const {
    forEachAnomaly(map_, thresholds_, band, [&](std::int64_t index) { test(index, findings); });
  }

 private:
  void test(std::int64_t index, PointFindings& findings) const {
    const std::int64_t x = index % map_.width();
    const std::int64_t y = index / map_.width();
    const double own = std::abs(map_.mean(index));
    const Surroundings around = surroundings(map_, neighbourhoods_.at(x, y), index);
    const double ratio = own / around.strength;
    const bool isOutstanding = around.strong < fewNeighbours && own >= outstandingScale * thresholds_.scale;
    if (ratio < isolatedRatio && !isOutstanding) return;
    const double agreement = static_cast<double>(map_.agreeingFrames(index)) / static_cast<double>(map_.frameCount());
    const double found = confidence(ratio, agreement, own / (5 * thresholds_.scale));
    if (found >= leastConfidence) findings.add({CalibrationCandidate::Kind::pixel, found, index, x, y, 0, 0});
  }

  const DeviationMap& map_;
  AnomalyThresholds thresholds_;
  Neighbourhoods neighbourhoods_;
};

}  // namespace

PointFindings findPixels(const DeviationMap& map) {
  const PixelSearch search(map);
  const std::int64_t rows = measuredRows(map);
  std::vector<PointFindings> bands(static_cast<std::size_t>(bandCount(rows, map.threads())));
  forEachBand(rows, map.threads(),
              [&](const RowBand& band) { search.search(band, bands[static_cast<std::size_t>(band.index)]); });
  PointFindings all;
  for (const PointFindings& band : bands)
    all.add(band);
  return all;
}

}  // namespace tessaly
