#include "calibration/points/DeviationMap.h"

#include "calibration/ActiveSamples.h"
#include "calibration/MosaicSteps.h"
#include "calibration/points/DeviationRows.h"
#include "platform/ParallelBands.h"

namespace tessaly {
namespace {

// Where the local signal of bright frames is weaker than this level of the reference range, this one is used.
constexpr std::int64_t minimumSignalLevel = 64;

LocalSignal localSignal(const DNGMetadata& metadata) {
  const std::int64_t minimum = std::max<std::int64_t>(scaledLevel(metadata, minimumSignalLevel), 1);
  return {static_cast<std::int32_t>(metadata.blackLevel), static_cast<std::int32_t>(minimum)};
}

}  // namespace

DeviationMap::DeviationMap(const DNGMetadata& metadata, int threads) : metadata_(metadata), threads_(threads) {}

void DeviationMap::reset(bool isDark) {
  isDark_ = isDark;
  frameCount_ = 0;
  const auto count = static_cast<std::size_t>(width() * height());
  sums_.resize(count);
  positives_.resize(count);
  forEachBand(height(), threads_, [this](const RowBand& band) {
    std::fill(sums_.begin() + band.first * width(), sums_.begin() + band.last * width(), 0);
    std::fill(positives_.begin() + band.first * width(), positives_.begin() + band.last * width(), std::uint8_t{0});
  });
}

void DeviationMap::add(std::span<const std::uint16_t> raw) {
  ++frameCount_;
  const std::int64_t measuredRows = std::max<std::int64_t>(height() - 2 * margin, 0);
  if (width() <= 2 * margin) return;
  forEachBand(measuredRows, threads_, [&](const RowBand& band) {
    for (std::int64_t y = band.first; y < band.last; ++y)
      addRow(raw, y + margin);
  });
}

void DeviationMap::addRow(std::span<const std::uint16_t> raw, std::int64_t y) {
  const std::int64_t distance = stepsOf(metadata_).sameColour;
  const ActiveSamples samples = activeSamples(raw, metadata_);
  const NeighbourRows rows{samples.row(y - distance) + margin, samples.row(y) + margin,
                           samples.row(y + distance) + margin, distance, width() - 2 * margin};
  const std::int64_t start = y * width() + margin;
  const DeviationRow target{sums_.data() + start, positives_.data() + start};
  if (isDark_) {
    addDarkRow(rows, target);
  } else {
    addBrightRow(rows, localSignal(metadata_), target);
  }
}

}  // namespace tessaly
