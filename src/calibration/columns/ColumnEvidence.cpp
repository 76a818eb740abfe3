#include "calibration/columns/ColumnEvidence.h"

#include "calibration/ActiveSamples.h"
#include "calibration/MosaicSteps.h"
#include "calibration/columns/ColumnResidual.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

constexpr std::int64_t columnMargin = 8;
constexpr std::int64_t rowMargin = 32;
constexpr std::int64_t rowStep = 8;
constexpr std::int64_t bandTotal = 8;
constexpr double leastBandFraction = 0.2;  // of the column's mean, in every band

using BandMeans = std::array<std::vector<double>, bandTotal>;

std::vector<std::int64_t> sampledRows(const DNGMetadata& metadata) {
  const std::int64_t rowsAtOnce = stepsOf(metadata).rowsAtOnce;
  const std::int64_t end = metadata.activeHeight - rowMargin;
  std::vector<std::int64_t> rows;
  for (std::int64_t y = rowMargin; y < end; y += rowStep) {
    for (std::int64_t row = y; row < std::min(y + rowsAtOnce, end); ++row)
      rows.push_back(row);
  }
  return rows;
}

// The mean residual of each measured column over the given rows; 0 without rows.
std::vector<double> meanResiduals(const ActiveSamples& samples, const ResidualScale& scale,
                                  std::span<const std::int64_t> rows) {
  std::vector<double> sums(static_cast<std::size_t>(samples.width - 2 * columnMargin));
  for (const std::int64_t row : rows)
    addResiduals(samples.row(row) + columnMargin, scale, sums);
  const auto count = static_cast<double>(std::max<std::size_t>(rows.size(), 1));
  for (double& sum : sums)
    sum /= count;
  return sums;
}

// Bands are equal parts of the sampled rows from top to bottom.
BandMeans bandMeans(std::span<const std::uint16_t> raw, const DNGMetadata& metadata, int threads) {
  const std::vector<std::int64_t> rows = sampledRows(metadata);
  const ResidualScale scale(metadata);
  const ActiveSamples samples = activeSamples(raw, metadata);
  BandMeans means;
  forEachBand(bandTotal, threads, [&](const RowBand& share) {
    for (std::int64_t band = share.first; band < share.last; ++band) {
      const auto first = rows.size() * static_cast<std::size_t>(band) / bandTotal;
      const auto last = rows.size() * static_cast<std::size_t>(band + 1) / bandTotal;
      const auto bandRows = std::span(rows).subspan(first, last - first);
      means[static_cast<std::size_t>(band)] = meanResiduals(samples, scale, bandRows);
    }
  });
  return means;
}

// A column defect runs the whole height of the sensor: an offset that is not in every band is none.
double wholeColumnResidual(std::array<double, bandTotal> bands) {
  std::sort(bands.begin(), bands.end());
  double sum = 0;
  for (const double band : bands)
    sum += band;
  const double mean = sum / static_cast<double>(bandTotal);
  const bool isEverywhere = std::all_of(bands.begin(), bands.end(), [mean](double band) {
    const bool hasSameSign = mean > 0 ? band > 0 : band < 0;
    return hasSameSign && std::abs(band) >= leastBandFraction * std::abs(mean);
  });
  return isEverywhere ? mean : 0;
}

}  // namespace

ColumnFrameEvidence columnFrameEvidence(std::span<const std::uint16_t> raw, std::string exposureKey,
                                        const DNGMetadata& metadata, int threads) {
  ColumnFrameEvidence evidence{std::move(exposureKey), {}};
  evidence.residuals.resize(static_cast<std::size_t>(metadata.activeWidth));
  if (metadata.activeWidth < 2 * columnMargin) return evidence;
  const BandMeans means = bandMeans(raw, metadata, threads);
  for (std::size_t column = 0; column < means.front().size(); ++column) {
    std::array<double, bandTotal> bands{};
    for (std::size_t band = 0; band < bands.size(); ++band)
      bands[band] = means[band][column];
    evidence.residuals[column + columnMargin] = wholeColumnResidual(bands);
  }
  return evidence;
}

}  // namespace tessaly::CalibrationEngine
