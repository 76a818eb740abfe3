#include "calibration/second/Neighbourhood.h"

#include "calibration/second/RowKernels.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <utility>

namespace tessaly::second {
namespace {

/// Counts the values that `values(y, row)` puts into a row.
template <typename MakeSource>
Histogram histogramOfRows(const PlaneShape& shape, const CountedColumns& counted, int threads, MakeSource makeSource) {
  std::vector<Histogram> histograms(static_cast<std::size_t>(bandCount(shape.height, threads)));
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    Histogram& histogram = histograms[static_cast<std::size_t>(band.index)];
    auto source = makeSource();
    for (std::int64_t y = band.first; y < band.last; ++y) {
      const std::span<const ColumnRange> ranges = counted(y);
      if (ranges.empty()) continue;
      const std::int16_t* row = source(y);
      for (const ColumnRange& range : ranges)
        histogram.add({row + range.first, static_cast<std::size_t>(range.last - range.first)});
    }
  });
  for (std::size_t i = 1; i < histograms.size(); ++i)
    histograms[0].join(histograms[i]);
  return histograms.empty() ? Histogram() : std::move(histograms[0]);
}

}  // namespace

std::int64_t mirrored(std::int64_t index, std::int64_t length, std::int64_t step) {
  std::int64_t mirror = index;
  while (mirror < 0 || mirror >= length) {
    if (mirror < 0) {
      const std::int64_t phase = (mirror % step + step) % step;
      mirror = 2 * phase - mirror;
    }
    if (mirror >= length) {
      const std::int64_t last = length - 1 - ((length - 1 - mirror) % step + step) % step;
      mirror = 2 * last - mirror;
    }
  }
  return mirror;
}

MirroredRows::MirroredRows(const Plane& plane, const PlaneShape& shape) : plane_(plane), shape_(shape) {
  for (std::vector<std::int16_t>& row : rows_)
    row.resize(static_cast<std::size_t>(shape.width + 2 * steps * shape.step));
}

const std::int16_t* MirroredRows::row(std::int64_t y, std::size_t slot) {
  const std::int64_t margin = steps * shape_.step;
  const std::int16_t* source = plane_.data() + mirrored(y, shape_.height, shape_.step) * shape_.width;
  std::int16_t* target = rows_[slot].data() + margin;
  std::copy_n(source, shape_.width, target);
  for (std::int64_t i = 1; i <= margin; ++i) {
    target[-i] = source[mirrored(-i, shape_.width, shape_.step)];
    target[shape_.width - 1 + i] = source[mirrored(shape_.width - 1 + i, shape_.width, shape_.step)];
  }
  return target;
}

void MirroredRows::departures(std::int64_t y, std::int16_t* target) {
  const PhaseRows rows{row(y - shape_.step, 0), row(y, 1), row(y + shape_.step, 2)};
  second::departures(rows, shape_.step, shape_.width, target);
}

void MirroredRows::lineResiduals(std::int64_t y, std::int16_t* target) {
  second::lineResiduals(row(y, 0), shape_.step, shape_.width, target);
}

int departureAt(const Plane& plane, const PlaneShape& shape, std::int64_t x, std::int64_t y) {
  int neighbours[8];
  std::size_t count = 0;
  for (std::int64_t dy = -1; dy <= 1; ++dy) {
    for (std::int64_t dx = -1; dx <= 1; ++dx) {
      if (dx == 0 && dy == 0) continue;
      const std::int64_t row = mirrored(y + dy * shape.step, shape.height, shape.step);
      const std::int64_t column = mirrored(x + dx * shape.step, shape.width, shape.step);
      neighbours[count++] = plane[static_cast<std::size_t>(row * shape.width + column)];
    }
  }
  return plane[static_cast<std::size_t>(y * shape.width + x)] - medianOfEight(neighbours);
}

Spread spreadOfPlane(const Plane& plane, const PlaneShape& shape, const CountedColumns& counted, int threads) {
  return histogramOfRows(shape, counted, threads,
                         [&] { return [&](std::int64_t y) { return plane.data() + y * shape.width; }; })
      .spread();
}

Histogram histogramOfDepartures(const Plane& plane, const PlaneShape& shape, const CountedColumns& counted,
                                int threads) {
  return histogramOfRows(shape, counted, threads, [&] {
    return [rows = MirroredRows(plane, shape),
            row = std::vector<std::int16_t>(static_cast<std::size_t>(shape.width))](std::int64_t y) mutable {
      rows.departures(y, row.data());
      return static_cast<const std::int16_t*>(row.data());
    };
  });
}

Spread spreadOfDepartures(const Plane& plane, const PlaneShape& shape, const CountedColumns& counted, int threads) {
  return histogramOfDepartures(plane, shape, counted, threads).spread();
}

}  // namespace tessaly::second
