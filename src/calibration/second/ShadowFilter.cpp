#include "calibration/second/ShadowFilter.h"

#include "calibration/VectorClones.h"
#include "calibration/second/Neighbourhood.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaly::second {
namespace {

// Wide enough for the largest stencil.
constexpr std::int64_t margin = 8;

/// A round stencil of all samples within `radius`, or nearer than it where the rim does not belong to it.
std::vector<StencilRow> round(double radius, bool withRim) {
  std::vector<StencilRow> rows;
  const auto reach = static_cast<std::int64_t>(radius);
  for (std::int64_t dy = -reach; dy <= reach; ++dy) {
    std::int64_t half = -1;
    for (std::int64_t dx = 0; dx <= reach; ++dx) {
      const double distance = std::hypot(static_cast<double>(dx), static_cast<double>(dy));
      if (withRim ? distance <= radius : distance < radius) half = dx;
    }
    if (half >= 0) rows.push_back({dy, half});
  }
  return rows;
}

std::int64_t countOf(std::span<const StencilRow> rows) {
  std::int64_t count = 0;
  for (const StencilRow& row : rows)
    count += 2 * row.half + 1;
  return count;
}

// Sums wrap; their differences do not.
using Sums = std::vector<std::uint32_t, UninitializedAllocator<std::uint32_t>>;

/// Running sums of every row, mirrored beyond both ends.
struct RunningSums {
  std::int64_t stride = 0;
  Sums values;

  [[nodiscard]] const std::uint32_t* row(std::int64_t y) const { return values.data() + y * stride + margin; }
};

RunningSums runningSums(const Plane& plane, std::int64_t width, std::int64_t height, int threads) {
  RunningSums sums{width + 2 * margin + 1, {}};
  sums.values.resize(static_cast<std::size_t>(sums.stride * height));
  forEachBand(height, threads, [&](const RowBand& band) {
    for (std::int64_t y = band.first; y < band.last; ++y) {
      const std::int16_t* row = plane.data() + y * width;
      std::uint32_t* target = sums.values.data() + y * sums.stride;
      std::uint32_t sum = 0;
      const auto add = [&](std::int16_t value) {
        *target++ = sum;
        sum += static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
      };
      for (std::int64_t x = -margin; x < 0; ++x)
        add(row[mirrored(x, width, 1)]);
      for (std::int64_t x = 0; x < width; ++x)
        add(row[x]);
      for (std::int64_t x = width; x < width + margin; ++x)
        add(row[mirrored(x, width, 1)]);
      *target = sum;
    }
  });
  return sums;
}

TESSALY_VECTOR_CLONES
void addRun(const std::uint32_t* __restrict sums, std::int64_t half, std::int64_t count,
            std::uint32_t* __restrict target) {
  const std::uint32_t* first = sums - half;
  const std::uint32_t* end = sums + half + 1;
  for (std::int64_t x = 0; x < count; ++x)
    target[x] += end[x] - first[x];
}

// NOLINTNEXTLINE(readability-function-size): a kernel takes its rows one by one, so that none is taken to overlap
TESSALY_VECTOR_CLONES void ringLessDiscRow(const std::uint32_t* __restrict outer, const std::uint32_t* __restrict inner,
                                           const std::uint32_t* __restrict disc, std::int64_t count, float perRing,
                                           float perDisc, float* __restrict target) {
  for (std::int64_t x = 0; x < count; ++x) {
    const auto ring = static_cast<float>(static_cast<std::int32_t>(outer[x] - inner[x]));
    target[x] = ring * perRing - static_cast<float>(static_cast<std::int32_t>(disc[x])) * perDisc;
  }
}

/// The three sums of one row.
class StencilSums {
 public:
  StencilSums(const RunningSums& sums, std::int64_t width, std::int64_t height)
      : sums_(sums), width_(width), height_(height) {}

  const std::uint32_t* of(std::span<const StencilRow> rows, std::int64_t y, std::vector<std::uint32_t>& target) const {
    target.assign(static_cast<std::size_t>(width_), 0);
    for (const StencilRow& row : rows)
      addRun(sums_.row(mirrored(y + row.dy, height_, 1)), row.half, width_, target.data());
    return target.data();
  }

 private:
  const RunningSums& sums_;
  std::int64_t width_;
  std::int64_t height_;
};

}  // namespace

ShadowStencil::ShadowStencil(double radius)
    : radius_(radius),
      disc_(round(radius, true)),
      outer_(round(outerRing * radius, true)),
      inner_(round(innerRing * radius, false)) {}

std::int64_t ShadowStencil::discCount() const {
  return countOf(disc_);
}

std::int64_t ShadowStencil::ringCount() const {
  return countOf(outer_) - countOf(inner_);
}

std::vector<float> ringLessDisc(const Plane& plane, std::int64_t width, std::int64_t height,
                                const ShadowStencil& stencil, int threads) {
  const RunningSums sums = runningSums(plane, width, height, threads);
  std::vector<float> result(static_cast<std::size_t>(width * height));
  const auto perRing = 1 / static_cast<float>(stencil.ringCount());
  const auto perDisc = 1 / static_cast<float>(stencil.discCount());
  forEachBand(height, threads, [&](const RowBand& band) {
    const StencilSums rows(sums, width, height);
    std::vector<std::uint32_t> outer;
    std::vector<std::uint32_t> inner;
    std::vector<std::uint32_t> disc;
    for (std::int64_t y = band.first; y < band.last; ++y) {
      ringLessDiscRow(rows.of(stencil.outer(), y, outer), rows.of(stencil.inner(), y, inner),
                      rows.of(stencil.disc(), y, disc), width, perRing, perDisc, result.data() + y * width);
    }
  });
  return result;
}

Plane halved(const Plane& plane, std::int64_t width, std::int64_t height, int threads) {
  Plane half(static_cast<std::size_t>((width / 2) * (height / 2)));
  forEachBand(height / 2, threads, [&](const RowBand& band) {
    for (std::int64_t y = band.first; y < band.last; ++y) {
      const std::int16_t* upper = plane.data() + 2 * y * width;
      const std::int16_t* lower = upper + width;
      std::int16_t* target = half.data() + y * (width / 2);
      for (std::int64_t x = 0; x < width / 2; ++x) {
        const int sum = upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1];
        target[x] = static_cast<std::int16_t>((sum + 2) >> 2);
      }
    }
  });
  return half;
}

}  // namespace tessaly::second
