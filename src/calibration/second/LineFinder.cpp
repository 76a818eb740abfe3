#include "calibration/second/LineFinder.h"

#include "calibration/second/RowKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace tessaly::second {
namespace {

constexpr int mostRounds = 5;
constexpr std::int64_t echoReach = 8;  // columns
constexpr double echoRatio = 3;

std::vector<std::int64_t> columnsOf(const std::vector<FoundColumn>& found) {
  std::vector<std::int64_t> columns;
  columns.reserve(found.size());
  for (const FoundColumn& column : found)
    columns.push_back(column.x);
  return columns;
}

std::vector<std::int64_t> allColumns(std::int64_t width) {
  std::vector<std::int64_t> columns(static_cast<std::size_t>(width));
  std::iota(columns.begin(), columns.end(), std::int64_t{0});
  return columns;
}

// A deep shadow lifts the best run of the columns through it, but its ends soon close in on the shadow.
bool isLongEnough(const ColumnProfiles& profiles, const FoundColumn& column) {
  const std::int64_t blocks = std::min(leastBlocks, profiles.blocks()) - 1;
  return column.lastRow - column.firstRow + 1 >= profiles.firstRow(blocks);
}

std::vector<FoundColumn> foundOf(const ColumnProfiles& profiles, const std::vector<ColumnRun>& runs,
                                 const ColumnNoise& noise) {
  std::vector<FoundColumn> found;
  for (std::size_t x = 0; x < runs.size(); ++x) {
    if (runs[x].score <= lineThreshold) continue;
    const FoundColumn column = foundColumn(profiles, static_cast<std::int64_t>(x), runs[x], noise);
    if (isLongEnough(profiles, column)) found.push_back(column);
  }
  return found;
}

bool isEcho(const FoundColumn& column, const FoundColumn& other, std::int64_t step) {
  const std::int64_t distance = std::abs(column.x - other.x);
  return distance > 0 && distance <= echoReach && distance % step == 0 && column.mean * other.mean < 0 &&
         std::abs(other.mean) > echoRatio * std::abs(column.mean);
}

void dropEchoes(std::vector<FoundColumn>& found, std::int64_t step) {
  const std::vector<FoundColumn> all = found;
  std::erase_if(found, [&](const FoundColumn& column) {
    return std::any_of(all.begin(), all.end(), [&](const auto& other) { return isEcho(column, other, step); });
  });
}

}  // namespace

std::vector<FoundColumn> findLines(const Plane& plane, const PlaneShape& shape, const IgnoredSamples& ignored,
                                   int threads) {
  ColumnProfiles profiles(plane, shape, ignored, threads);
  const ColumnNoise noise = columnNoise(profiles);
  if (noise.block <= 0) return {};
  const std::vector<ColumnRun> first = bestRuns(profiles, allColumns(shape.width), noise, threads);
  std::vector<FoundColumn> found = foundOf(profiles, first, noise);
  std::vector<std::int64_t> excluded;
  for (int round = 0; round < mostRounds && columnsOf(found) != excluded; ++round) {
    excluded = columnsOf(found);
    const std::vector<std::int64_t> changed = profiles.exclude(excluded);
    const std::vector<ColumnRun> again = bestRuns(profiles, changed, noise, threads);
    std::vector<ColumnRun> runs = first;
    for (std::size_t i = 0; i < changed.size(); ++i)
      runs[static_cast<std::size_t>(changed[i])] = again[i];
    found = foundOf(profiles, runs, noise);
  }
  dropEchoes(found, shape.step);
  return found;
}

double meanResidual(const Plane& plane, const PlaneShape& shape, const FoundColumn& column,
                    const std::vector<FoundColumn>& all) {
  std::vector<std::int64_t> references;
  for (const std::int64_t side : {-shape.step, shape.step}) {
    int count = 0;
    for (std::int64_t k = 1; k <= lineReach && count < 3; ++k) {
      const std::int64_t x = mirrored(column.x + k * side, shape.width, shape.step);
      const bool isFound = std::any_of(all.begin(), all.end(), [x](const auto& other) { return other.x == x; });
      if (isFound) continue;
      references.push_back(x);
      ++count;
    }
  }
  if (references.size() < 6) return 0;
  std::vector<float> residuals;
  for (std::int64_t y = column.firstRow; y <= column.lastRow; ++y) {
    const std::int16_t* row = plane.data() + y * shape.width;
    int values[6];
    for (std::size_t i = 0; i < 6; ++i)
      values[i] = row[references[i]];
    residuals.push_back(static_cast<float>(row[column.x] - medianOfSix(values)));
  }
  const Spread spread = spreadOf(residuals);
  double sum = 0;
  for (const float residual : residuals)
    sum += std::clamp<double>(residual, spread.median - 4 * spread.sigma, spread.median + 4 * spread.sigma);
  return sum / static_cast<double>(residuals.size());
}

}  // namespace tessaly::second
