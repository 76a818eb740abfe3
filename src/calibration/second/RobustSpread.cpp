#include "calibration/second/RobustSpread.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace tessaly::second {
namespace {

constexpr double sigmaOfDeviation = 1.4826;

/// The count of everything below a place on the line of values.
class Distribution {
 public:
  explicit Distribution(std::span<const std::uint32_t> counts) : below_(counts.size() + 1, 0) {
    for (std::size_t i = 0; i < counts.size(); ++i)
      below_[i + 1] = below_[i] + counts[i];
  }

  [[nodiscard]] double total() const { return static_cast<double>(below_.back()); }

  /// `place` counts bins from the lower end of the first.
  [[nodiscard]] double below(double place) const {
    const double inside = std::clamp(place, 0.0, static_cast<double>(below_.size() - 1));
    const auto bin = std::min(static_cast<std::size_t>(inside), below_.size() - 2);
    const auto count = static_cast<double>(below_[bin + 1] - below_[bin]);
    return static_cast<double>(below_[bin]) + count * (inside - static_cast<double>(bin));
  }

  /// Where `count(place)`, which grows, reaches the half.
  template <typename Count>
  [[nodiscard]] double half(Count count) const {
    double low = 0;
    auto high = static_cast<double>(below_.size() - 1);
    for (int step = 0; step < 40; ++step) {
      const double middle = (low + high) / 2;
      (2 * count(middle) < total() ? low : high) = middle;
    }
    return (low + high) / 2;
  }

 private:
  std::vector<std::uint64_t> below_;
};

}  // namespace

// By value into a local pointer: the compiler cannot know that counts are not the values.
void Histogram::add(std::span<const std::int16_t> all) {
  std::uint32_t* counts = counts_.data() + offset;
  for (const std::int16_t value : all)
    ++counts[value];
}

void Histogram::join(const Histogram& other) {
  for (std::size_t i = 0; i < counts_.size(); ++i)
    counts_[i] += other.counts_[i];
}

std::uint64_t Histogram::count() const {
  return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
}

std::uint64_t Histogram::countFrom(int distance) const {
  const auto zero = counts_.begin() + offset;
  const auto below = std::accumulate(counts_.begin(), zero - std::min(distance, offset) + 1, std::uint64_t{0});
  return below + std::accumulate(zero + std::min(distance, offset), counts_.end(), std::uint64_t{0});
}

Spread Histogram::spread() const {
  const Distribution distribution(counts_);
  if (distribution.total() == 0) return {};
  const double median = distribution.half([&](double place) { return distribution.below(place); });
  const double deviation = distribution.half(
      [&](double distance) { return distribution.below(median + distance) - distribution.below(median - distance); });
  return {median - offset - 0.5, deviation * sigmaOfDeviation};
}

float medianOf(std::vector<float>& numbers) {
  if (numbers.empty()) return 0;
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  if (numbers.size() % 2 == 1) return *middle;
  return (*middle + *std::max_element(numbers.begin(), middle)) / 2;
}

Spread spreadOf(std::vector<float> numbers) {
  const float median = medianOf(numbers);
  for (float& number : numbers)
    number = std::abs(number - median);
  return {median, medianOf(numbers) * sigmaOfDeviation};
}

}  // namespace tessaly::second
