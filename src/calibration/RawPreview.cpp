#include "calibration/RawPreview.h"

#include "calibration/ActiveSamples.h"
#include "dng/MosaicKind.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace tessaly::CalibrationEngine {
namespace {

constexpr std::int64_t inspectionColumns = 8000;
constexpr double inspectionGamma = 0.45;
constexpr std::size_t levelCount = std::size_t{std::numeric_limits<std::uint16_t>::max()} + 1;

/// The values of the active area on a regular grid.
struct SampledGrid {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::vector<std::uint16_t> values;

  [[nodiscard]] std::size_t count() const { return values.size(); }
};

// The rounded mean of the 2 × 2 block at (x, y); at the right and bottom border its last column or row counts twice.
std::uint16_t blockMean(const ActiveSamples& samples, std::int64_t x, std::int64_t y) {
  const std::int64_t right = std::min(x + 1, samples.width - 1);
  const std::uint16_t* const upper = samples.row(y);
  const std::uint16_t* const lower = samples.row(std::min(y + 1, samples.height - 1));
  return static_cast<std::uint16_t>((upper[x] + upper[right] + lower[x] + lower[right] + 2) / 4);
}

// Adjacent blocks of two rows, except for the one at the right border.
void appendBlockMeans(const ActiveSamples& samples, std::int64_t y, std::vector<std::uint16_t>& values) {
  const std::uint16_t* const upper = samples.row(y);
  const std::uint16_t* const lower = samples.row(std::min(y + 1, samples.height - 1));
  const std::size_t start = values.size();
  values.resize(start + static_cast<std::size_t>(samples.width - 1));
  std::uint16_t* const means = values.data() + start;
  for (std::int64_t x = 0; x < samples.width - 1; ++x)
    means[x] = static_cast<std::uint16_t>((upper[x] + upper[x + 1] + lower[x] + lower[x + 1] + 2) / 4);
}

void appendBayerRow(const ActiveSamples& samples, std::int64_t y, std::int64_t step, SampledGrid& grid) {
  std::int64_t x = 0;
  if (step == 1) {
    appendBlockMeans(samples, y, grid.values);
    x = samples.width - 1;
  }
  for (; x < grid.width * step; x += step)
    grid.values.push_back(blockMean(samples, x, y));
}

void appendLinearRow(const ActiveSamples& samples, std::int64_t y, std::int64_t step, SampledGrid& grid) {
  for (std::int64_t x = 0; x < grid.width * step; x += step)
    grid.values.push_back(samples.row(y)[x]);
}

SampledGrid sampledGrid(std::span<const std::uint16_t> raw, const DNGMetadata& metadata, std::int64_t step) {
  const ActiveSamples samples = activeSamples(raw, metadata);
  SampledGrid grid{metadata.activeWidth / step, metadata.activeHeight / step, {}};
  grid.values.reserve(static_cast<std::size_t>(grid.width * grid.height));
  for (std::int64_t y = 0; y < grid.height * step; y += step) {
    switch (mosaicKindOf(metadata)) {
      case MosaicKind::bayer:
        appendBayerRow(samples, y, step, grid);
        break;
      case MosaicKind::none:
        appendLinearRow(samples, y, step, grid);
        break;
    }
  }
  return grid;
}

/// How often each level occurs, which gives any element of the ascending order without sorting.
class Histogram {
 public:
  explicit Histogram(const std::vector<std::uint16_t>& values) : counts_(levelCount) {
    for (const std::uint16_t value : values)
      ++counts_[value];
  }

  /// The element at `index` of the ascending order.
  [[nodiscard]] std::int64_t sorted(std::size_t index) const {
    std::size_t level = 0;
    for (std::size_t before = counts_[0]; before <= index; before += counts_[level])
      ++level;
    return static_cast<std::int64_t>(level);
  }

 private:
  std::vector<std::uint32_t> counts_;  // an image has at most 250 million samples
};

using ToneTable = std::vector<std::uint8_t>;  // a grey level for every sample level

ToneTable linearTones(std::int64_t low, std::int64_t high) {
  const std::int64_t range = std::max<std::int64_t>(high - low, 1);
  ToneTable tones;
  for (std::int64_t level = 0; level < static_cast<std::int64_t>(levelCount); ++level)
    tones.push_back(static_cast<std::uint8_t>(std::clamp<std::int64_t>((level - low) * 255 / range, 0, 255)));
  return tones;
}

ToneTable gammaTones(std::int64_t low, std::int64_t high) {
  const auto range = static_cast<double>(std::max<std::int64_t>(high - low, 1));
  ToneTable tones;
  for (std::int64_t level = 0; level < static_cast<std::int64_t>(levelCount); ++level) {
    const double fraction = std::clamp(static_cast<double>(level - low) / range, 0.0, 1.0);
    tones.push_back(static_cast<std::uint8_t>(std::round(std::pow(fraction, inspectionGamma) * 255)));
  }
  return tones;
}

RawPreviewImage toned(const SampledGrid& grid, const ToneTable& tones) {
  RawPreviewImage image{grid.width, grid.height, std::vector<std::uint8_t>(grid.count())};
  std::transform(grid.values.begin(), grid.values.end(), image.pixels.begin(),
                 [&tones](std::uint16_t value) { return tones[value]; });
  return image;
}

// The smallest step that gives at most 8000 columns: width / step, rounded down, is at most 8000 when width is less
// than 8001 × step.
std::int64_t inspectionStep(std::int64_t width) {
  return width / (inspectionColumns + 1) + 1;
}

}  // namespace

RawPreviewImage makePreview(std::span<const std::uint16_t> raw, const DNGMetadata& metadata, std::int64_t maxWidth) {
  const std::int64_t step = std::max<std::int64_t>((metadata.activeWidth + maxWidth - 1) / maxWidth, 1);
  const SampledGrid grid = sampledGrid(raw, metadata, step);
  const std::size_t count = grid.count();
  if (count == 0) return {grid.width, grid.height, {}};
  const Histogram histogram(grid.values);
  return toned(grid,
               linearTones(histogram.sorted(count / 1000), histogram.sorted(std::min(count * 999 / 1000, count - 1))));
}

RawPreviewImage inspectionPreview(std::span<const std::uint16_t> raw, const DNGMetadata& metadata) {
  const SampledGrid grid = sampledGrid(raw, metadata, inspectionStep(metadata.activeWidth));
  const std::size_t count = grid.count();
  if (count == 0) return {grid.width, grid.height, {}};
  const Histogram histogram(grid.values);
  const std::int64_t low = std::max(metadata.blackLevel, histogram.sorted(count / 200));
  return toned(grid, gammaTones(low, histogram.sorted(std::min(count * 995 / 1000, count - 1))));
}

}  // namespace tessaly::CalibrationEngine
