#include "tools/Deterministic.h"

namespace tessaly::tools {
namespace {

double smoothStep(double part) {
  return part * part * (3 - 2 * part);
}

double latticeValue(std::uint64_t key, std::int64_t column, std::int64_t row) {
  return uniform(combinedKey(combinedKey(key, static_cast<std::uint64_t>(row)), static_cast<std::uint64_t>(column)));
}

double mixed(double first, double second, double weight) {
  return first + (second - first) * weight;
}

}  // namespace

double smoothNoise(std::uint64_t key, double x, double y) {
  const auto column = static_cast<std::int64_t>(x);
  const auto row = static_cast<std::int64_t>(y);
  const double across = smoothStep(x - static_cast<double>(column));
  const double down = smoothStep(y - static_cast<double>(row));
  const double top = mixed(latticeValue(key, column, row), latticeValue(key, column + 1, row), across);
  const double bottom = mixed(latticeValue(key, column, row + 1), latticeValue(key, column + 1, row + 1), across);
  return mixed(top, bottom, down);
}

}  // namespace tessaly::tools
