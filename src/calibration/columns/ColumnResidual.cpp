#include "calibration/columns/ColumnResidual.h"

#include "calibration/ActiveSamples.h"
#include "calibration/MosaicSteps.h"
#include "calibration/VectorClones.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace tessaly {
namespace {

constexpr double agreementFraction = 0.01;  // of the signal range

double agreementTolerance(const DNGMetadata& metadata) {
  return static_cast<double>(signalRange(metadata)) * agreementFraction;
}

// The means of the pairs that exist, ascending.
std::vector<double> pairMeans(std::span<const std::uint16_t> raw, std::int64_t index, const DNGMetadata& metadata) {
  const std::int64_t column = index % metadata.rawWidth;
  std::vector<double> means;
  for (const std::int32_t offset : ResidualScale(metadata).offsets) {
    if (column < offset || column + offset >= metadata.rawWidth) continue;
    const double left = raw[static_cast<std::size_t>(index - offset)];
    const double right = raw[static_cast<std::size_t>(index + offset)];
    means.push_back((left + right) / 2);
  }
  std::sort(means.begin(), means.end());
  return means;
}

double reference(const std::vector<double>& means, double tolerance) {
  const double middle = means[means.size() / 2];
  double sum = 0;
  std::size_t agreeing = 0;
  for (const double mean : means) {
    if (std::abs(mean - middle) > tolerance) continue;
    sum += mean;
    ++agreeing;
  }
  return agreeing == 3 ? middle : sum / static_cast<double>(agreeing);
}

TESSALY_VECTOR_CLONES
void addResidualRow(const std::uint16_t* __restrict samples, const ResidualScale& scale, std::int64_t count,
                    double* __restrict sums) {
  const std::int64_t first = scale.offsets[0];
  const std::int64_t second = scale.offsets[1];
  const std::int64_t third = scale.offsets[2];
  const std::int32_t tolerance = scale.tolerance;
  const double range = scale.signalRange;
  for (std::int64_t x = 0; x < count; ++x) {
    const std::int32_t fourfold =
        fourfoldDifference(samples[x],
                           {samples[x - first] + samples[x + first], samples[x - second] + samples[x + second],
                            samples[x - third] + samples[x + third]},
                           tolerance);
    sums[x] += residual(fourfold, range);
  }
}

}  // namespace

ResidualScale::ResidualScale(const DNGMetadata& metadata)
    : offsets(stepsOf(metadata).columnPairs),
      tolerance(static_cast<std::int32_t>(std::floor(2 * agreementTolerance(metadata)))),
      signalRange(static_cast<double>(tessaly::signalRange(metadata))) {}

void addResiduals(const std::uint16_t* samples, const ResidualScale& scale, std::span<double> sums) {
  addResidualRow(samples, scale, static_cast<std::int64_t>(sums.size()), sums.data());
}

double CalibrationEngine::normalizedColumnResidual(std::span<const std::uint16_t> raw, std::int64_t index,
                                                   const DNGMetadata& metadata) {
  const std::vector<double> means = pairMeans(raw, index, metadata);
  if (means.size() < 2) return 0;
  const double difference = raw[static_cast<std::size_t>(index)] - reference(means, agreementTolerance(metadata));
  const double scaled = difference * DNGMetadata::referenceSignalRange / static_cast<double>(signalRange(metadata));
  return std::clamp(scaled, -maximumResidual, maximumResidual);
}

}  // namespace tessaly
