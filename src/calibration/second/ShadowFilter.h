// How much darker a disc is than the ring around it, for every sample of a plane: R = mean over the ring from 1.5 ρ to
// 2.2 ρ − mean over the disc of radius ρ. Sums are whole numbers, so they are exact.
#pragma once

#include "calibration/second/Planes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaly::second {

/// One row of a round stencil: columns −half … half, in row `dy`.
struct StencilRow {
  std::int64_t dy = 0;
  std::int64_t half = 0;
};

/// A disc of radius ρ and its ring.
class ShadowStencil {
 public:
  static constexpr double innerRing = 1.5;  // times ρ
  static constexpr double outerRing = 2.2;

  explicit ShadowStencil(double radius);

  [[nodiscard]] double radius() const { return radius_; }
  [[nodiscard]] std::span<const StencilRow> disc() const { return disc_; }
  /// The ring is what `outer` has and `inner` has not.
  [[nodiscard]] std::span<const StencilRow> outer() const { return outer_; }
  [[nodiscard]] std::span<const StencilRow> inner() const { return inner_; }
  [[nodiscard]] std::int64_t discCount() const;
  [[nodiscard]] std::int64_t ringCount() const;

 private:
  double radius_;
  std::vector<StencilRow> disc_;
  std::vector<StencilRow> outer_;
  std::vector<StencilRow> inner_;
};

/// R of every sample, in the plane's quanta. The borders are mirrors.
[[nodiscard]] std::vector<float> ringLessDisc(const Plane& plane, std::int64_t width, std::int64_t height,
                                              const ShadowStencil& stencil, int threads);

/// A plane of half the size: means of 2 × 2 samples, rounded.
[[nodiscard]] Plane halved(const Plane& plane, std::int64_t width, std::int64_t height, int threads);

}  // namespace tessaly::second
