#include "calibration/second/LargeScaleModel.h"

#include "calibration/VectorClones.h"
#include "platform/ParallelBands.h"

#include <algorithm>

namespace tessaly::second {
namespace {

std::int64_t blockCount(std::int64_t phaseLength, std::int64_t side) {
  return std::max<std::int64_t>((phaseLength + side / 2) / side, 1);
}

TESSALY_VECTOR_CLONES
std::int64_t countBelow(const std::uint16_t* __restrict values, std::int64_t count, std::uint16_t bound) {
  std::int64_t total = 0;
  while (count > 0) {
    // In 16 bits, as many at a time as cannot overflow them.
    const std::int64_t chunk = std::min<std::int64_t>(count, 32768);
    std::uint16_t below = 0;
    for (std::int64_t i = 0; i < chunk; ++i)
      below = static_cast<std::uint16_t>(below + (values[i] < bound ? 1 : 0));
    total += below;
    values += chunk;
    count -= chunk;
  }
  return total;
}

/// Where a place lies between the centres of blocks; outside of the outer two it continues their line.
struct Between {
  std::int64_t block = 0;
  float weight = 0;  ///< of the next one
};

double centre(std::int64_t length, std::int64_t block, std::int64_t count) {
  return static_cast<double>(BlockGrid::edge(length, block, count) + BlockGrid::edge(length, block + 1, count) - 1) / 2;
}

Between between(std::int64_t place, std::int64_t length, std::int64_t count) {
  if (count < 2) return {};
  std::int64_t block = std::clamp<std::int64_t>(place * count / length, 0, count - 1);
  if (static_cast<double>(place) < centre(length, block, count)) --block;
  block = std::clamp<std::int64_t>(block, 0, count - 2);
  const double first = centre(length, block, count);
  const double distance = centre(length, block + 1, count) - first;
  return {block, static_cast<float>((static_cast<double>(place) - first) / distance)};
}

float mixed(float first, float second, float weight) {
  return first + (second - first) * weight;
}

TESSALY_VECTOR_CLONES
void ramp(float* __restrict target, std::int64_t count, float start, float slope) {
  for (std::int64_t i = 0; i < count; ++i)
    target[i] = start + slope * static_cast<float>(static_cast<std::int32_t>(i));
}

TESSALY_VECTOR_CLONES
void interleave(const float* __restrict even, const float* __restrict odd, std::int64_t pairs,
                float* __restrict target) {
  for (std::int64_t i = 0; i < pairs; ++i) {
    target[2 * i] = even[i];
    target[2 * i + 1] = odd[i];
  }
}

void gather(const SampleView& samples, const BlockGrid& grid, std::int64_t phase, std::int64_t block,
            std::vector<std::uint16_t>& values) {
  const PlaneShape& shape = grid.shape();
  const std::int64_t phaseX = phase % shape.step;
  const std::int64_t phaseY = phase / shape.step;
  const std::int64_t width = grid.phaseLength(shape.width, phaseX);
  const std::int64_t height = grid.phaseLength(shape.height, phaseY);
  const std::int64_t column = block % grid.columns();
  const std::int64_t row = block / grid.columns();
  const std::int64_t first = BlockGrid::edge(width, column, grid.columns());
  const std::int64_t count = BlockGrid::edge(width, column + 1, grid.columns()) - first;
  const std::int64_t top = BlockGrid::edge(height, row, grid.rows());
  const std::int64_t bottom = BlockGrid::edge(height, row + 1, grid.rows());
  values.resize(static_cast<std::size_t>(count * (bottom - top)));
  std::uint16_t* target = values.data();
  for (std::int64_t y = top; y < bottom; ++y) {
    const std::uint16_t* source =
        samples.origin + (y * shape.step + phaseY) * samples.stride + first * shape.step + phaseX;
    for (std::int64_t i = 0; i < count; ++i)
      target[i] = source[i * shape.step];
    target += count;
  }
}

}  // namespace

BlockGrid::BlockGrid(const PlaneShape& shape, std::int64_t side)
    : shape_(shape),
      columns_(blockCount(shape.width / shape.step, side)),
      rows_(blockCount(shape.height / shape.step, side)) {}

std::int64_t BlockGrid::blockRow(std::int64_t y) const {
  const std::int64_t length = phaseLength(shape_.height, 0);
  const std::int64_t place = y / shape_.step;
  std::int64_t row = std::min(place * rows_ / length, rows_ - 1);
  while (row + 1 < rows_ && edge(length, row + 1, rows_) <= place)
    ++row;
  return row;
}

ColumnRange BlockGrid::blockColumns(std::int64_t column) const {
  const std::int64_t length = phaseLength(shape_.width, 0);
  return {edge(length, column, columns_) * shape_.step,
          std::min(edge(length, column + 1, columns_) * shape_.step, shape_.width)};
}

// By halving the range of values: counting what lies below a bound is fast, sorting is not.
float groupedMedian(std::span<const std::uint16_t> values) {
  if (values.empty()) return 0;
  const auto count = static_cast<std::int64_t>(values.size());
  int low = 0;
  int high = 65535;  // the middle value is in low … high
  while (low < high) {
    const int middle = (low + high + 1) / 2;
    const bool isAbove = 2 * countBelow(values.data(), count, static_cast<std::uint16_t>(middle)) <= count;
    low = isAbove ? middle : low;
    high = isAbove ? high : middle - 1;
  }
  const auto below = static_cast<double>(countBelow(values.data(), count, static_cast<std::uint16_t>(low)));
  const double upTo = low == 65535
                          ? static_cast<double>(count)
                          : static_cast<double>(countBelow(values.data(), count, static_cast<std::uint16_t>(low + 1)));
  const double equal = std::max(upTo - below, 1.0);
  return static_cast<float>(low - 0.5 + (static_cast<double>(count) / 2 - below) / equal);
}

BlockValues blockMedians(const SampleView& samples, const BlockGrid& grid, int threads) {
  BlockValues medians(grid.values());
  const auto phases = static_cast<std::int64_t>(grid.values() / grid.blocks());
  forEachBand(grid.rows(), threads, [&](const RowBand& band) {
    std::vector<std::uint16_t> values;
    for (std::int64_t block = band.first * grid.columns(); block < band.last * grid.columns(); ++block) {
      for (std::int64_t phase = 0; phase < phases; ++phase) {
        gather(samples, grid, phase, block, values);
        medians[static_cast<std::size_t>(phase) * grid.blocks() + static_cast<std::size_t>(block)] =
            groupedMedian(values);
      }
    }
  });
  return medians;
}

ModelRows::ModelRows(const BlockGrid& grid, std::span<const float> values)
    : grid_(grid),
      values_(values),
      line_(static_cast<std::size_t>(grid.columns())),
      phases_(static_cast<std::size_t>(grid.shape().step),
              std::vector<float>(static_cast<std::size_t>(grid.phaseLength(grid.shape().width, 0)) + 1)),
      row_(static_cast<std::size_t>(grid.shape().width) + 2) {}

const float* ModelRows::row(std::int64_t y) {
  const std::int64_t step = grid_.shape().step;
  for (std::int64_t phaseX = 0; phaseX < step; ++phaseX)
    expand(phaseX, y % step, y / step);
  if (step == 1) return phases_[0].data();
  interleave(phases_[0].data(), phases_[1].data(), grid_.phaseLength(grid_.shape().width, 0), row_.data());
  return row_.data();
}

void ModelRows::expand(std::int64_t phaseX, std::int64_t phaseY, std::int64_t phaseRow) {
  const PlaneShape& shape = grid_.shape();
  const Between rows = between(phaseRow, grid_.phaseLength(shape.height, phaseY), grid_.rows());
  const float* upper = values_.data() + (phaseY * shape.step + phaseX) * static_cast<std::int64_t>(grid_.blocks()) +
                       rows.block * grid_.columns();
  const float* lower = grid_.rows() < 2 ? upper : upper + grid_.columns();
  for (std::int64_t i = 0; i < grid_.columns(); ++i)
    line_[static_cast<std::size_t>(i)] = mixed(upper[i], lower[i], rows.weight);
  std::vector<float>& target = phases_[static_cast<std::size_t>(phaseX)];
  const std::int64_t length = grid_.phaseLength(shape.width, phaseX);
  if (grid_.columns() < 2) {
    std::fill(target.begin(), target.end(), line_[0]);
    return;
  }
  std::int64_t start = 0;
  for (std::int64_t block = 0; block + 1 < grid_.columns(); ++block) {
    const double first = centre(length, block, grid_.columns());
    const double next = centre(length, block + 1, grid_.columns());
    const bool isLast = block + 2 == grid_.columns();
    const std::int64_t end = isLast ? length : static_cast<std::int64_t>(next) + 1;
    const float value = line_[static_cast<std::size_t>(block)];
    const double slope = (line_[static_cast<std::size_t>(block) + 1] - value) / (next - first);
    const double atStart = value + slope * (static_cast<double>(start) - first);
    ramp(target.data() + start, end - start, static_cast<float>(atStart), static_cast<float>(slope));
    start = end;
  }
}

float modelAt(const BlockGrid& grid, std::span<const float> values, std::int64_t x, std::int64_t y) {
  const PlaneShape& shape = grid.shape();
  const std::int64_t phaseX = x % shape.step;
  const std::int64_t phaseY = y % shape.step;
  const Between rows = between(y / shape.step, grid.phaseLength(shape.height, phaseY), grid.rows());
  const Between columns = between(x / shape.step, grid.phaseLength(shape.width, phaseX), grid.columns());
  const float* corner = values.data() + (phaseY * shape.step + phaseX) * static_cast<std::int64_t>(grid.blocks()) +
                        rows.block * grid.columns() + columns.block;
  const std::int64_t right = grid.columns() < 2 ? 0 : 1;
  const std::int64_t down = grid.rows() < 2 ? 0 : grid.columns();
  return mixed(mixed(corner[0], corner[down], rows.weight), mixed(corner[right], corner[right + down], rows.weight),
               columns.weight);
}

}  // namespace tessaly::second
