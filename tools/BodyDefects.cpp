#include "tools/BodyDefects.h"

#include "tools/NormalNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace tessaly::tools {
namespace {

constexpr std::uint64_t plantingKey = 0x504C4E54;
constexpr double gainLevel = 0.4;  // of the range, where a gain fault is as large as an offset
constexpr double unitsOfRange = 15871;

double squared(double value) {
  return value * value;
}

/// The share of a disc of radius `pupil` that one of radius `grain` hides whose centre is `separation` away.
double hiddenShare(double grain, double pupil, double separation) {
  const double a = std::min(grain, pupil);
  const double b = std::max(grain, pupil);
  if (separation >= a + b) return 0;
  if (separation <= b - a) return squared(a / pupil);
  const double alpha = std::acos((squared(separation) + squared(a) - squared(b)) / (2 * separation * a));
  const double beta = std::acos((squared(separation) + squared(b) - squared(a)) / (2 * separation * b));
  const double lens = squared(a) * (alpha - std::sin(2 * alpha) / 2) + squared(b) * (beta - std::sin(2 * beta) / 2);
  return lens / (std::numbers::pi * squared(pupil));
}

/// Finds places; each tries to keep its distance from the earlier ones.
class Planter {
 public:
  Planter(std::int64_t width, std::int64_t height, std::uint64_t seed)
      : width_(width), height_(height), random_(combinedKey(plantingKey, seed)) {}

  BodyDefects plant(const BodyDefectCounts& counts) {
    for (std::int64_t i = 0; i < counts.columns; ++i)
      plantColumn();
    for (std::int64_t i = 0; i < counts.partialColumns; ++i)
      plantPartialColumn();
    for (std::int64_t i = 0; i < counts.dust; ++i)
      plantDust();
    for (std::int64_t i = 0; i < counts.specks; ++i)
      plantSpeck();
    plantPixels(BodyPixel::Kind::hot, counts.hot, 30, 30000);
    plantPixels(BodyPixel::Kind::offset, counts.offset, 4, 2000);
    plantPixels(BodyPixel::Kind::dim, counts.dim, 0.03, 1);
    plantPixels(BodyPixel::Kind::stuck, counts.stuck, 0.3, 1);
    plantPixels(BodyPixel::Kind::telegraph, counts.telegraph, 5, 1000);
    return std::move(defects_);
  }

 private:
  struct Place {
    double x = 0;
    double y = 0;
    double radius = 0;
  };

  [[nodiscard]] bool isFree(const Place& place) const {
    return std::none_of(taken_.begin(), taken_.end(), [&](const Place& other) {
      return squared(place.x - other.x) + squared(place.y - other.y) < squared(place.radius + other.radius);
    });
  }

  Place freePlace(double radius, double margin) {
    Place place;
    for (int attempt = 0; attempt < 200; ++attempt) {
      place = {random_.between(margin, static_cast<double>(width_) - margin),
               random_.between(margin, static_cast<double>(height_) - margin), radius};
      if (isFree(place)) break;
    }
    taken_.push_back(place);
    return place;
  }

  std::int64_t freeColumn() {
    std::int64_t x = 0;
    for (int attempt = 0; attempt < 200; ++attempt) {
      x = random_.wholeBetween(2, width_ - 4);
      const bool isApart = std::none_of(defects_.lines.begin(), defects_.lines.end(),
                                        [x](const BodyLine& line) { return std::abs(line.x - x) < 12; });
      if (isApart) break;
    }
    return x;
  }

  void plantColumn() {
    BodyLine line{freeColumn(), 0, height_ - 1, random_.wholeBetween(1, 2)};
    line.strength = logarithmic(random_, 0.5, 60);
    const double amount = line.strength * random_.sign();
    const bool isGain = random_.between(0, 1) < 0.4;
    (isGain ? line.gain : line.offset) = isGain ? amount / (gainLevel * unitsOfRange) : amount;
    defects_.lines.push_back(line);
  }

  void plantPartialColumn() {
    BodyLine line{freeColumn(), 0, height_ - 1};
    line.isPartial = true;
    line.strength = logarithmic(random_, 1, 60);
    line.offset = line.strength * random_.sign();
    const bool goesUp = random_.between(0, 1) < 0.25;
    const std::int64_t end = random_.wholeBetween(height_ / 8, height_ * 7 / 8);
    (goesUp ? line.yEnd : line.yStart) = end;
    if (random_.between(0, 1) < 0.7)
      defects_.pixels.push_back({line.x, end, BodyPixel::Kind::hot, logarithmic(random_, 300, 30000), 0});
    defects_.lines.push_back(line);
  }

  void plantDust() {
    const double radius = logarithmic(random_, 4, 40) / BodyDust::pitch;
    const Place place = freePlace(radius + 12, radius + 24);
    defects_.dust.push_back({place.x, place.y, radius, random_.between(0.6, 1)});
  }

  void plantSpeck() {
    const double radius = random_.between(1, 3.5);
    const double oval = random_.between(1, 1.25);
    const Place place = freePlace(radius + 8, radius + 12);
    const double depth = logarithmic(random_, 0.05, 0.9);
    defects_.specks.push_back({place.x, place.y, radius * oval, radius, depth});
  }

  void plantPixels(BodyPixel::Kind kind, std::int64_t count, double least, double most) {
    for (std::int64_t i = 0; i < count; ++i) {
      const Place place = freePlace(3, 3);
      defects_.pixels.push_back({static_cast<std::int64_t>(place.x), static_cast<std::int64_t>(place.y), kind,
                                 logarithmic(random_, least, most), random_.between(0.2, 0.8)});
    }
  }

  std::int64_t width_;
  std::int64_t height_;
  Sequence random_;
  std::vector<Place> taken_;
  BodyDefects defects_;
};

}  // namespace

double BodyDust::transmission(double separation, double fNumber) const {
  return 1 - opacity * hiddenShare(radius, pupil(fNumber), separation);
}

BodyDefectCounts BodyDefectCounts::of(std::int64_t width, std::int64_t height) {
  const double millions = static_cast<double>(width * height) * 1e-6;
  const auto count = [](double amount) { return std::max<std::int64_t>(std::llround(amount), 1); };
  const double across = static_cast<double>(width) / 1000;
  return {count(10 * across),   count(10 * across),   count(16 * millions), count(12 * millions), count(40 * millions),
          count(30 * millions), count(40 * millions), count(4 * millions),  count(60 * millions)};
}

BodyDefects plantBodyDefects(std::int64_t width, std::int64_t height, const BodyDefectCounts& counts,
                             std::uint64_t seed) {
  return Planter(width, height, seed).plant(counts);
}

}  // namespace tessaly::tools
