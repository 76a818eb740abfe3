#include "calibration/second/ShadowFinder.h"

#include "calibration/second/RowKernels.h"
#include "calibration/second/ShadowFilter.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaly::second {
namespace {

constexpr int levels = 5;
constexpr double leastDepth = 0.004;
constexpr double farthestSigma = 4;
constexpr double leastBlock = 24;  // of R's own large-scale model
constexpr double blockRadii = 12;
constexpr double sameRadii = 1.5;  // two shadows nearer than this × radius + sameMargin are one
constexpr double sameMargin = 2;
constexpr int leastDarkSamples = 4;
constexpr double darkSample = 0.25;  // of R
constexpr double centroidRadii = 1.6;
constexpr double rim = 0.12;  // of the depth
constexpr double leastAxis = 2;
constexpr double mostAxis = 64;

/// R of one level, with its large-scale model taken off.
struct LevelMap {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::vector<float> values;
  double sigma = 0;
};

/// 16-bit steps, fine enough for the noise of a level; what is beyond is far from every median.
Plane quantized(const std::vector<float>& values, float scale, int offset) {
  Plane result(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    result[i] = static_cast<std::int16_t>(
        static_cast<std::int32_t>(std::clamp(values[i] * scale, -16000.0F, 16000.0F) + 32768.5F) - 32768 + offset);
  }
  return result;
}

void detrend(LevelMap& map, double radius, float scale, int threads) {
  const auto side = static_cast<std::int64_t>(std::max(leastBlock, blockRadii * radius));
  const BlockGrid grid(PlaneShape(map.width, map.height, 1), side);
  constexpr int middle = 16384;
  const Plane steps = quantized(map.values, scale, middle);  // 0 … 32767: unsigned as they are
  BlockValues model = blockMedians({reinterpret_cast<const std::uint16_t*>(steps.data()), map.width}, grid, threads);
  for (float& value : model)
    value = (value - middle) / scale;
  forEachBand(map.height, threads, [&](const RowBand& band) {
    ModelRows rows(grid, model);
    for (std::int64_t y = band.first; y < band.last; ++y) {
      const float* row = rows.row(y);
      float* values = map.values.data() + y * map.width;
      for (std::int64_t x = 0; x < map.width; ++x)
        values[x] -= row[x];
    }
  });
}

/// A plane that was halved some times: its size, and how many samples of the sensor one of its own spans.
struct Level {
  PlaneShape size;
  std::int64_t factor = 1;
};

LevelMap levelMap(const Plane& plane, const Level& level, double radius, const CountedColumns& counted, int threads) {
  const PlaneShape& size = level.size;
  const std::int64_t factor = level.factor;
  LevelMap map{size.width, size.height, ringLessDisc(plane, size.width, size.height, ShadowStencil(radius), threads),
               0};
  const auto scale = static_cast<float>(factor);
  detrend(map, radius, scale, threads);
  std::vector<ColumnRange> ranges;
  const CountedColumns ofLevel = [&](std::int64_t y) {
    ranges.clear();
    for (const ColumnRange& range : counted(y * factor))
      ranges.push_back({range.first / factor, std::min(range.last / factor, size.width)});
    return std::span<const ColumnRange>(ranges);
  };
  map.sigma = spreadOfPlane(quantized(map.values, scale, 0), PlaneShape(size.width, size.height, 1), ofLevel, 1).sigma /
              static_cast<double>(scale);
  return map;
}

// Of equal neighbours the first one is the largest.
bool isLargest(const LevelMap& map, std::int64_t x, std::int64_t y) {
  const float own = map.values[static_cast<std::size_t>(y * map.width + x)];
  for (std::int64_t dy = -1; dy <= 1; ++dy) {
    for (std::int64_t dx = -1; dx <= 1; ++dx) {
      const float other = map.values[static_cast<std::size_t>((y + dy) * map.width + x + dx)];
      const bool isBefore = dy < 0 || (dy == 0 && dx < 0);
      if (isBefore ? other >= own : other > own) return false;
    }
  }
  return true;
}

void collect(const LevelMap& map, double radius, std::int64_t factor, std::vector<Shadow>& shadows) {
  const double least = std::max(shadowThreshold * map.sigma, leastDepth * lightQuanta);
  const auto reach = static_cast<std::int64_t>(std::ceil(radius));
  for (std::int64_t y = reach; y < map.height - reach; ++y) {
    for (std::int64_t x = reach; x < map.width - reach; ++x) {
      const double value = map.values[static_cast<std::size_t>(y * map.width + x)];
      if (value <= least || map.sigma <= 0 || !isLargest(map, x, y)) continue;
      const auto scale = static_cast<double>(factor);
      shadows.push_back({(static_cast<double>(x) + 0.5) * scale - 0.5, (static_cast<double>(y) + 0.5) * scale - 0.5,
                         radius * scale, value / map.sigma, value / lightQuanta, 0, 0});
    }
  }
}

/// The samples around a place, with their distance.
template <typename Visit>
void forEachAround(const PlaneShape& shape, double x, double y, double radius, Visit visit) {
  const auto top = static_cast<std::int64_t>(std::ceil(std::max(y - radius, 0.0)));
  const auto left = static_cast<std::int64_t>(std::ceil(std::max(x - radius, 0.0)));
  for (std::int64_t row = top; row <= std::min(static_cast<std::int64_t>(y + radius), shape.height - 1); ++row) {
    for (std::int64_t column = left; column <= std::min(static_cast<std::int64_t>(x + radius), shape.width - 1);
         ++column) {
      const double distance = std::hypot(static_cast<double>(column) - x, static_cast<double>(row) - y);
      if (distance <= radius) visit(column, row, distance);
    }
  }
}

std::vector<float> ringOf(const Plane& plane, const PlaneShape& shape, const Shadow& shadow) {
  std::vector<float> ring;
  forEachAround(shape, shadow.x, shadow.y, ShadowStencil::outerRing * shadow.radius,
                [&](std::int64_t x, std::int64_t y, double distance) {
                  if (distance < ShadowStencil::innerRing * shadow.radius) return;
                  ring.push_back(plane[static_cast<std::size_t>(y * shape.width + x)]);
                });
  return ring;
}

bool hasDarkSamples(const Plane& plane, const PlaneShape& shape, const Shadow& shadow) {
  const Spread ring = spreadOf(ringOf(plane, shape, shadow));
  const double bound = ring.median - darkSample * shadow.depth * lightQuanta;
  int count = 0;
  forEachAround(shape, shadow.x, shadow.y, shadow.radius, [&](std::int64_t x, std::int64_t y, double) {
    if (plane[static_cast<std::size_t>(y * shape.width + x)] < bound) ++count;
  });
  return count >= leastDarkSamples;
}

std::vector<Shadow> withoutRepetitions(std::vector<Shadow> shadows) {
  std::stable_sort(shadows.begin(), shadows.end(),
                   [](const Shadow& left, const Shadow& right) { return left.evidence > right.evidence; });
  std::vector<Shadow> kept;
  for (const Shadow& shadow : shadows) {
    const bool isNew = std::none_of(kept.begin(), kept.end(), [&](const Shadow& other) {
      const double reach = sameRadii * std::max(shadow.radius, other.radius) + sameMargin;
      return std::hypot(shadow.x - other.x, shadow.y - other.y) < reach;
    });
    if (isNew) kept.push_back(shadow);
  }
  return kept;
}

/// Lost light around a shadow, in quanta, against the level of its ring.
class LostLight {
 public:
  LostLight(const Plane& plane, const PlaneShape& shape, const Shadow& shadow)
      : plane_(plane), shape_(shape), level_(spreadOf(ringOf(plane, shape, shadow)).median) {}

  [[nodiscard]] double at(std::int64_t x, std::int64_t y) const {
    if (!shape_.contains(x, y)) return 0;
    return level_ - plane_[static_cast<std::size_t>(y * shape_.width + x)];
  }

  /// The mean over a rectangle of both sides at distance `t` along an axis.
  [[nodiscard]] double profile(double x, double y, std::int64_t t, std::int64_t half, bool isAcross) const {
    double sum = 0;
    const auto column = static_cast<std::int64_t>(std::lround(x));
    const auto row = static_cast<std::int64_t>(std::lround(y));
    for (std::int64_t i = -half; i <= half; ++i) {
      for (const std::int64_t side : {-t, t})
        sum += isAcross ? at(column + side, row + i) : at(column + i, row + side);
    }
    return sum / static_cast<double>(2 * (2 * half + 1));
  }

 private:
  const Plane& plane_;
  const PlaneShape& shape_;
  double level_;
};

double halfAxis(const LostLight& lost, const Shadow& shadow, bool isAcross) {
  const auto half = static_cast<std::int64_t>(std::max(shadow.radius / 3, 1.0));
  const double depth = std::max(lost.profile(shadow.x, shadow.y, 0, half, isAcross), shadow.depth * lightQuanta);
  for (std::int64_t t = 1; t < static_cast<std::int64_t>(mostAxis); ++t) {
    const double value =
        (lost.profile(shadow.x, shadow.y, t - 1, half, isAcross) + lost.profile(shadow.x, shadow.y, t, half, isAcross) +
         lost.profile(shadow.x, shadow.y, t + 1, half, isAcross)) /
        3;
    if (value < rim * depth) return std::clamp(static_cast<double>(t), leastAxis, mostAxis);
  }
  return mostAxis;
}

}  // namespace

bool Shadow::contains(double column, double row) const {
  const double across = (column - x) / std::max(radiusX, 0.5);
  const double down = (row - y) / std::max(radiusY, 0.5);
  return across * across + down * down <= 1;
}

Plane cleanedLight(const MeanPlane& light, const PlaneShape& shape, const std::vector<FoundColumn>& lines,
                   int threads) {
  Plane replaced = light.values();
  std::vector<bool> isFound(static_cast<std::size_t>(shape.width), false);
  for (const FoundColumn& line : lines)
    isFound[static_cast<std::size_t>(line.x)] = true;
  const auto beside = [&](std::int64_t x, std::int64_t step) {
    std::int64_t column = x + step;
    while (column >= 0 && column < shape.width && isFound[static_cast<std::size_t>(column)])
      column += step;
    return mirrored(column, shape.width, shape.step);
  };
  for (const FoundColumn& line : lines) {
    const std::int64_t left = beside(line.x, -shape.step);
    const std::int64_t right = beside(line.x, shape.step);
    for (std::int64_t y = line.firstRow; y <= line.lastRow; ++y) {
      std::int16_t* row = replaced.data() + y * shape.width;
      row[line.x] = static_cast<std::int16_t>((row[left] + row[right]) / 2);
    }
  }
  const Spread spread = spreadOfDepartures(
      replaced, shape, [&](std::int64_t y) { return light.known(y); }, threads);
  const int bound = static_cast<int>(farthestSigma * spread.sigma);
  Plane cleaned(shape.count());
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    MirroredRows rows(replaced, shape);
    std::vector<std::int16_t> departures(static_cast<std::size_t>(shape.width));
    for (std::int64_t y = band.first; y < band.last; ++y) {
      rows.departures(y, departures.data());
      for (std::int64_t x = 0; x < shape.width; ++x) {
        const int departure = departures[static_cast<std::size_t>(x)];
        const auto i = static_cast<std::size_t>(y * shape.width + x);
        cleaned[i] = static_cast<std::int16_t>(replaced[i] - departure + std::clamp(departure, -bound, bound));
      }
    }
  });
  return cleaned;
}

std::vector<Shadow> findShadows(const Plane& cleaned, const PlaneShape& shape, const CountedColumns& counted,
                                int threads) {
  std::vector<Shadow> shadows;
  Plane smaller;
  const Plane* plane = &cleaned;
  Level level{PlaneShape(shape.width, shape.height, 1)};
  constexpr std::int64_t leastSize = 16;
  for (int i = 0; i < levels && std::min(level.size.width, level.size.height) >= leastSize; ++i) {
    for (const double radius : {i == 0 ? 1.5 : 1.6, 2.3})
      collect(levelMap(*plane, level, radius, counted, threads), radius, level.factor, shadows);
    smaller = halved(*plane, level.size.width, level.size.height, threads);
    plane = &smaller;
    level = {PlaneShape(level.size.width / 2, level.size.height / 2, 1), level.factor * 2};
  }
  std::erase_if(shadows, [&](const Shadow& shadow) { return !hasDarkSamples(cleaned, shape, shadow); });
  return withoutRepetitions(std::move(shadows));
}

void measureEllipses(std::vector<Shadow>& shadows, const Plane& cleaned, const PlaneShape& shape) {
  for (Shadow& shadow : shadows) {
    const LostLight lost(cleaned, shape, shadow);
    double total = 0;
    double sumX = 0;
    double sumY = 0;
    forEachAround(shape, shadow.x, shadow.y, centroidRadii * shadow.radius,
                  [&](std::int64_t x, std::int64_t y, double) {
                    const double light = std::max(lost.at(x, y), 0.0);
                    total += light;
                    sumX += light * static_cast<double>(x);
                    sumY += light * static_cast<double>(y);
                  });
    if (total > 0) {
      shadow.x = sumX / total;
      shadow.y = sumY / total;
    }
    shadow.radiusX = halfAxis(lost, shadow, true);
    shadow.radiusY = halfAxis(lost, shadow, false);
  }
}

double shadowDepth(const Plane& plane, const PlaneShape& shape, const Shadow& shadow) {
  const Spread ring = spreadOf(ringOf(plane, shape, shadow));
  std::vector<float> disc;
  forEachAround(shape, shadow.x, shadow.y, shadow.radius, [&](std::int64_t x, std::int64_t y, double) {
    disc.push_back(plane[static_cast<std::size_t>(y * shape.width + x)]);
  });
  const Spread inside = spreadOf(disc);
  const double reach = farthestSigma * std::max(ring.sigma, inside.sigma);
  double sum = 0;
  for (const float value : disc)
    sum += std::clamp<double>(value, inside.median - reach, inside.median + reach);
  return disc.empty() ? 0 : (ring.median - sum / static_cast<double>(disc.size())) / lightQuanta;
}

}  // namespace tessaly::second
