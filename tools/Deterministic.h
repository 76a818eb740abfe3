// Random numbers and waves that are the same on every machine: integer arithmetic and plain IEEE operations only, no
// mathematical library, no hidden state. Each number is a function of its key, so frames can be rendered in any order.
#pragma once

#include <cstdint>

namespace tessaly::tools {

/// Scrambles a key into 64 bits that look random (the finaliser of SplitMix64).
[[nodiscard]] constexpr std::uint64_t scrambled(std::uint64_t key) {
  key += 0x9E3779B97F4A7C15U;
  key = (key ^ (key >> 30)) * 0xBF58476D1CE4E5B9U;
  key = (key ^ (key >> 27)) * 0x94D049BB133111EBU;
  return key ^ (key >> 31);
}

/// A key made of two, for example a frame's key and a sample's index.
[[nodiscard]] constexpr std::uint64_t combinedKey(std::uint64_t first, std::uint64_t second) {
  return scrambled(first) + second;
}

/// Uniform in [0, 1).
[[nodiscard]] constexpr double uniform(std::uint64_t key) {
  return static_cast<double>(scrambled(key) >> 11) * 0x1p-53;
}

/// Bell-shaped with mean 0 and standard deviation 1, never beyond ±3.5: the sum of four uniform 16-bit numbers.
[[nodiscard]] constexpr double bell(std::uint64_t key) {
  const std::uint64_t bits = scrambled(key);
  const std::uint64_t sum = (bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48);
  constexpr double mean = 2.0 * 65535;
  constexpr double deviation = 37837.227;  // 65536 × √(4 / 12)
  return (static_cast<double>(sum) - mean) / deviation;
}

/// A sine-like wave of amplitude 1 and period 1, of two parabolas.
[[nodiscard]] constexpr double wave(double turns) {
  const auto whole = static_cast<double>(static_cast<std::int64_t>(turns));
  const double part = turns < whole ? turns - whole + 1 : turns - whole;
  return part < 0.5 ? 16 * part * (0.5 - part) : -16 * (part - 0.5) * (1 - part);
}

/// Smooth noise in [0, 1) with about one bump for each unit of x and y; neither may be negative.
[[nodiscard]] double smoothNoise(std::uint64_t key, double x, double y);

/// A sequence of numbers, for placing things.
class Sequence {
 public:
  explicit Sequence(std::uint64_t key) : key_(scrambled(key)) {}

  [[nodiscard]] double between(double low, double high) { return low + (high - low) * uniform(key_++); }

  /// Both ends included.
  [[nodiscard]] std::int64_t wholeBetween(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(uniform(key_++) * static_cast<double>(high - low + 1));
  }

  [[nodiscard]] double sign() { return uniform(key_++) < 0.5 ? -1 : 1; }

 private:
  std::uint64_t key_;
};

}  // namespace tessaly::tools
