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
  Planter(std::int64_t width, std::int64_t height, std::uint64_t seed, const BodyStrengths& strengths)
      : width_(width), height_(height), random_(combinedKey(plantingKey, seed)), strengths_(strengths) {}

  BodyDefects plant(const BodyDefectCounts& counts) {
    for (std::int64_t i = 0; i < counts.columns; ++i)
      plantColumn();
    for (std::int64_t i = 0; i < counts.partialColumns; ++i)
      plantPartialColumn();
    for (std::int64_t i = 0; i < counts.dust; ++i)
      plantDust();
    for (std::int64_t i = 0; i < counts.specks; ++i)
      plantSpeck();
    plantPixels(BodyPixel::Kind::hot, counts.hot, strengths_.hot);
    plantPixels(BodyPixel::Kind::offset, counts.offset, strengths_.offset);
    plantPixels(BodyPixel::Kind::dim, counts.dim, strengths_.dim);
    plantPixels(BodyPixel::Kind::stuck, counts.stuck, strengths_.stuck);
    plantPixels(BodyPixel::Kind::telegraph, counts.telegraph, strengths_.telegraph);
    return std::move(defects_);
  }

 private:
  struct Place {
    double x = 0;
    double y = 0;
    double radius = 0;
  };

  double within(const BodyStrengths::Range& range) { return logarithmic(random_, range.least, range.most); }

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
    line.strength = within(strengths_.column);
    const double amount = line.strength * random_.sign();
    const bool isGain = random_.between(0, 1) < 0.4;
    (isGain ? line.gain : line.offset) = isGain ? amount / (gainLevel * unitsOfRange) : amount;
    defects_.lines.push_back(line);
  }

  void plantPartialColumn() {
    BodyLine line{freeColumn(), 0, height_ - 1};
    line.isPartial = true;
    line.strength = within(strengths_.partialColumn);
    line.offset = line.strength * random_.sign();
    const bool goesUp = random_.between(0, 1) < 0.25;
    const std::int64_t end = random_.wholeBetween(height_ / 8, height_ * 7 / 8);
    (goesUp ? line.yEnd : line.yStart) = end;
    if (random_.between(0, 1) < 0.7)
      defects_.pixels.push_back({line.x, end, BodyPixel::Kind::hot, logarithmic(random_, 300, 30000), 0});
    defects_.lines.push_back(line);
  }

  void plantDust() {
    const double radius = within(strengths_.dust) / BodyDust::pitch;
    const Place place = freePlace(radius + 12, radius + 24);
    defects_.dust.push_back({place.x, place.y, radius, random_.between(0.6, 1)});
  }

  void plantSpeck() {
    const double radius = random_.between(1, 3.5);
    const double oval = random_.between(1, 1.25);
    const Place place = freePlace(radius + 8, radius + 12);
    const double depth = within(strengths_.speck);
    defects_.specks.push_back({place.x, place.y, radius * oval, radius, depth});
  }

  void plantPixels(BodyPixel::Kind kind, std::int64_t count, const BodyStrengths::Range& range) {
    for (std::int64_t i = 0; i < count; ++i) {
      const Place place = freePlace(3, 3);
      defects_.pixels.push_back({static_cast<std::int64_t>(place.x), static_cast<std::int64_t>(place.y), kind,
                                 within(range), random_.between(0.2, 0.8)});
    }
  }

  std::int64_t width_;
  std::int64_t height_;
  Sequence random_;
  BodyStrengths strengths_;
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

BodyStrengths BodyStrengths::moderate() {
  BodyStrengths strengths;
  strengths.column = strengths.partialColumn = {4, 40};
  strengths.dust = {6, 20};
  strengths.speck = {0.1, 0.6};
  strengths.hot = {100, 10000};
  strengths.offset = {16, 500};
  strengths.dim = {0.06, 0.6};
  strengths.telegraph = {30, 300};
  return strengths;
}

BodyDefects plantBodyDefects(std::int64_t width, std::int64_t height, const BodyDefectCounts& counts,
                             std::uint64_t seed, const BodyStrengths& strengths) {
  return Planter(width, height, seed, strengths).plant(counts);
}

}  // namespace tessaly::tools
