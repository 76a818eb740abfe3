// Median and robust standard deviation (1.4826 × median absolute deviation) of whole planes, exact by counting.
//
// Values are whole numbers that stand for the half-open interval around them, so that both figures are finer than one.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaly::second {

struct Spread {
  double median = 0;
  double sigma = 0;  ///< 0 without values
};

/// How often each 16-bit value occurs. Those of bands can be joined in any order.
class Histogram {
 public:
  Histogram() : counts_(values, 0) {}

  void add(std::int16_t value) { ++counts_[static_cast<std::size_t>(std::int64_t{value} + offset)]; }
  void add(std::span<const std::int16_t> all);
  void join(const Histogram& other);

  [[nodiscard]] std::uint64_t count() const;
  /// How many values are `distance` or more away from 0.
  [[nodiscard]] std::uint64_t countFrom(int distance) const;
  [[nodiscard]] Spread spread() const;

 private:
  static constexpr int values = 65536;
  static constexpr int offset = 32768;

  std::vector<std::uint32_t> counts_;
};

/// The same of a few numbers.
[[nodiscard]] Spread spreadOf(std::vector<float> numbers);

/// The middle of a few numbers, the mean of the two middle ones of an even count; 0 without any.
[[nodiscard]] float medianOf(std::vector<float>& numbers);

}  // namespace tessaly::second
