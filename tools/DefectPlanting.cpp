#include "tools/DefectPlanting.h"

#include "tools/Deterministic.h"

#include <algorithm>
#include <stdexcept>

namespace tessaly::tools {
namespace {

// A column is compared with its neighbours up to six columns away, and with the columns up to 24 away. What is planted
// keeps out of each other's columns, or the shadow of dust below a hot pixel would pass for a partial column.
constexpr std::int64_t columnMargin = 130;  // nearer to the edges no column is judged
constexpr std::int64_t columnDistance = 40;
constexpr std::int64_t pixelMargin = 40;
constexpr std::int64_t pixelDistance = 4;
constexpr std::int64_t spotMargin = 24;
constexpr std::int64_t spotDistance = 16;

/// Finds places that keep their distance from everything placed before.
class Planter {
 public:
  explicit Planter(const SensorDescription& sensor) : sensor_(sensor), random_(combinedKey(sensor.seed, 0x504C4E54)) {}

  void column(std::int64_t width) {
    const std::int64_t x = freeColumn();
    const double offset = random_.sign() * random_.between(0.0058, 0.0070);
    defects_.lines.push_back({x, sensor_.activeY, lastRow(), width, offset});
  }

  void partialColumn() {
    const std::int64_t x = freeColumn();
    const std::int64_t height = sensor_.activeHeight;
    const std::int64_t y = sensor_.activeY + random_.wholeBetween(height / 4, height * 6 / 10);
    const double offset = random_.sign() * random_.between(0.0058, 0.0070);
    defects_.lines.push_back({x, y, lastRow(), 1, offset});
    defects_.pixels.push_back({x, y, PlantedPixel::Kind::hot, hotRate()});
  }

  void spot(double depth) {
    const std::int64_t radiusX = random_.wholeBetween(5, 7);
    const std::int64_t radiusY = random_.wholeBetween(5, 7);
    const auto [x, y] = freePlace(spotMargin, spotDistance);
    defects_.spots.push_back({x, y, radiusX, radiusY, depth});
  }

  /// A speck that lets hardly any light through, and the thin film of a drop that has dried.
  void opaqueSpot() { spot(random_.between(0.94, 0.98)); }
  void thinSpot() { spot(random_.between(0.5, 0.6)); }

  void hotPixel() { pixel(PlantedPixel::Kind::hot, hotRate()); }
  void deadPixel() { pixel(PlantedPixel::Kind::dead, random_.between(0, 0.3)); }
  void stuckPixel() { pixel(PlantedPixel::Kind::stuck, random_.between(0.9, 1)); }

  [[nodiscard]] PlantedDefects defects() const { return defects_; }

 private:
  static constexpr int attempts = 10000;

  [[nodiscard]] std::int64_t lastRow() const { return sensor_.activeY + sensor_.activeHeight - 1; }

  /// From faint to glaring in even ratios: 0.006 to 0.2 of the range a second.
  double hotRate() {
    const double doublings = random_.between(0, 5);
    double rate = 0.006;
    for (int i = 1; i <= static_cast<int>(doublings); ++i)
      rate *= 2;
    return rate * (1 + doublings - static_cast<double>(static_cast<int>(doublings)));
  }

  void pixel(PlantedPixel::Kind kind, double amount) {
    const auto [x, y] = freePlace(pixelMargin, pixelDistance);
    defects_.pixels.push_back({x, y, kind, amount});
  }

  std::int64_t freeColumn() {
    for (int attempt = 0; attempt < attempts; ++attempt) {
      const std::int64_t x =
          sensor_.activeX + random_.wholeBetween(columnMargin, sensor_.activeWidth - 1 - columnMargin);
      if (isFree(x, columnDistance)) return x;
    }
    throw std::runtime_error("No place for another column");
  }

  std::pair<std::int64_t, std::int64_t> freePlace(std::int64_t margin, std::int64_t distance) {
    for (int attempt = 0; attempt < attempts; ++attempt) {
      const std::int64_t x = sensor_.activeX + random_.wholeBetween(margin, sensor_.activeWidth - 1 - margin);
      const std::int64_t y = sensor_.activeY + random_.wholeBetween(margin, sensor_.activeHeight - 1 - margin);
      if (isFree(x, distance)) return {x, y};
    }
    throw std::runtime_error("No place for another defect");
  }

  /// Whether no other defect has a column within the distance.
  [[nodiscard]] bool isFree(std::int64_t x, std::int64_t distance) const {
    const auto isNear = [x](const auto& defects, std::int64_t limit) {
      return std::any_of(defects.begin(), defects.end(),
                         [x, limit](const auto& defect) { return std::abs(defect.x - x) < limit; });
    };
    return !isNear(defects_.lines, std::max(distance, columnDistance / 3)) && !isNear(defects_.pixels, distance) &&
           !isNear(defects_.spots, std::max(distance, spotDistance));
  }

  const SensorDescription& sensor_;
  Sequence random_;
  PlantedDefects defects_;
};

}  // namespace

PlantedDefects plantDefects(const SensorDescription& sensor, const DefectCounts& counts) {
  Planter planter(sensor);
  for (std::int64_t i = 0; i < counts.columns; ++i)
    planter.column(i % 3 == 2 ? 2 : 1);
  for (std::int64_t i = 0; i < counts.partialColumns; ++i)
    planter.partialColumn();
  for (std::int64_t i = 0; i < counts.spots; ++i)
    i % 5 == 4 ? planter.thinSpot() : planter.opaqueSpot();
  for (std::int64_t i = 0; i < counts.hotPixels; ++i)
    planter.hotPixel();
  for (std::int64_t i = 0; i < counts.deadPixels; ++i)
    planter.deadPixel();
  for (std::int64_t i = 0; i < counts.stuckPixels; ++i)
    planter.stuckPixel();
  return planter.defects();
}

}  // namespace tessaly::tools
