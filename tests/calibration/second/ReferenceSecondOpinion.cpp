#include "calibration/second/ReferenceSecondOpinion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaly::tests {
namespace {

double variance(const std::vector<double>& numbers) {
  double mean = 0;
  for (const double number : numbers)
    mean += number / static_cast<double>(numbers.size());
  double sum = 0;
  for (const double number : numbers)
    sum += (number - mean) * (number - mean);
  return sum / static_cast<double>(numbers.size() - 1);
}

// Walks from phase sample to phase sample and turns round at the ends.
std::int64_t reflected(std::int64_t index, std::int64_t length, std::int64_t step) {
  std::vector<std::int64_t> phase;
  for (std::int64_t i = ((index % step) + step) % step; i < length; i += step)
    phase.push_back(i);
  const auto count = static_cast<std::int64_t>(phase.size());
  std::int64_t place = (index - phase.front()) / step;
  if (place < 0) place = -place;
  if (place >= count) place = 2 * (count - 1) - place;
  return phase[static_cast<std::size_t>(place)];
}

int flooredMedian(std::vector<int> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return static_cast<int>(std::floor((values[half - 1] + values[half]) / 2.0));
}

}  // namespace

double plainMedian(std::vector<double> numbers) {
  std::sort(numbers.begin(), numbers.end());
  const std::size_t half = numbers.size() / 2;
  return numbers.size() % 2 == 1 ? numbers[half] : (numbers[half - 1] + numbers[half]) / 2;
}

std::pair<double, double> plainSpread(const std::vector<double>& numbers) {
  const double median = plainMedian(numbers);
  std::vector<double> deviations;
  for (const double number : numbers)
    deviations.push_back(std::abs(number - median));
  return {median, 1.4826 * plainMedian(deviations)};
}

PlainReduction plainReduction(const std::vector<int>& frames) {
  std::vector<double> all(frames.begin(), frames.end());
  PlainReduction result{std::floor(plainMedian(all)), variance(all), 0};
  const auto farther = [&](double left, double right) {
    return std::abs(left - result.median) < std::abs(right - result.median);
  };
  std::sort(all.begin(), all.end());  // of two that are equally far the lower one goes
  all.erase(std::max_element(all.begin(), all.end(), farther));
  result.trimmedVariance = variance(all);
  return result;
}

int plainSample(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x, std::int64_t y) {
  const std::int64_t column = reflected(x, shape.width, shape.step);
  const std::int64_t row = reflected(y, shape.height, shape.step);
  return plane[static_cast<std::size_t>(row * shape.width + column)];
}

int plainDeparture(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x, std::int64_t y) {
  std::vector<int> neighbours;
  for (std::int64_t dy = -1; dy <= 1; ++dy)
    for (std::int64_t dx = -1; dx <= 1; ++dx)
      if (dx != 0 || dy != 0) neighbours.push_back(plainSample(plane, shape, x + dx * shape.step, y + dy * shape.step));
  return plainSample(plane, shape, x, y) - flooredMedian(neighbours);
}

int plainLineResidual(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x, std::int64_t y) {
  std::vector<int> beside;
  for (const int steps : {-3, -2, -1, 1, 2, 3})
    beside.push_back(plainSample(plane, shape, x + steps * shape.step, y));
  return plainSample(plane, shape, x, y) - flooredMedian(beside);
}

double plainRingLessDisc(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x, std::int64_t y,
                         double radius) {
  const second::PlaneShape whole(shape.width, shape.height, 1);
  double disc = 0;
  double ring = 0;
  int discCount = 0;
  int ringCount = 0;
  for (std::int64_t dy = -8; dy <= 8; ++dy) {
    for (std::int64_t dx = -8; dx <= 8; ++dx) {
      const double distance = std::sqrt(static_cast<double>(dx * dx + dy * dy));
      const int value = plainSample(plane, whole, x + dx, y + dy);
      if (distance <= radius) {
        disc += value;
        ++discCount;
      } else if (distance >= 1.5 * radius && distance <= 2.2 * radius) {
        ring += value;
        ++ringCount;
      }
    }
  }
  return ring / ringCount - disc / discCount;
}

}  // namespace tessaly::tests
