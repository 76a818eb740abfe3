// Bell-shaped and Poisson numbers with honest tails, each a function of its key: a defect detector is judged by what it
// does far out, where a sum of a few uniform numbers ends.
//
// They use the logarithm and the sine of the mathematical library; whoever tests on them holds counts, not samples.
#pragma once

#include "tools/Deterministic.h"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace tessaly::tools {

/// Two independent numbers with mean 0 and standard deviation 1 (Box and Muller).
struct NormalPair {
  double first = 0;
  double second = 0;

  explicit NormalPair(std::uint64_t key) {
    const std::uint64_t bits = scrambled(key);
    const double u = (static_cast<double>(bits >> 32) + 0.5) * 0x1p-32;
    const double angle = 2 * std::numbers::pi * static_cast<double>(bits & 0xFFFFFFFFU) * 0x1p-32;
    const double radius = std::sqrt(-2 * std::log(u));
    first = radius * std::cos(angle);
    second = radius * std::sin(angle);
  }
};

[[nodiscard]] inline double normal(std::uint64_t key) {
  return NormalPair(key).first;
}

/// How many of something that happens `mean` times on average; for small means.
[[nodiscard]] inline int poisson(std::uint64_t key, double mean) {
  const double limit = std::exp(-mean);
  int count = 0;
  for (double product = uniform(key); product > limit;
       product *= uniform(combinedKey(key, static_cast<std::uint64_t>(count))))
    ++count;
  return count;
}

/// From `low` to `high` with every decade alike.
[[nodiscard]] inline double logarithmic(Sequence& random, double low, double high) {
  return low * std::exp(random.between(0, std::log(high / low)));
}

}  // namespace tessaly::tools
