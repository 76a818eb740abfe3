// The samples of a whole raw plane, addressed by raw row and column; a view that owns nothing.
//
// Invariant: samples().size() == width × height of the image, so that a run that lies in the image lies in the plane.
// A value; as safe between threads as the samples themselves.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace tessaly {

/// `Sample` is std::uint16_t, or const std::uint16_t for a plane that is only read.
template <typename Sample>
class BasicPlaneView {
 public:
  /// `samples` holds metadata.pixelCount() samples.
  BasicPlaneView(std::span<Sample> samples, const DNGMetadata& metadata) : BasicPlaneView(samples, metadata.rawWidth) {
    assert(std::ssize(samples) == metadata.pixelCount());
  }

  // NOLINTNEXTLINE(google-explicit-constructor): whoever may write a plane may read it
  operator BasicPlaneView<const Sample>() const requires(!std::is_const_v<Sample>) {
    return BasicPlaneView<const Sample>(samples_, width_);
  }

  [[nodiscard]] std::span<Sample> samples() const { return samples_; }

  [[nodiscard]] Sample& at(std::int64_t column, std::int64_t row) const { return samples_[index(column, row)]; }

  /// The samples of a run, which may go on into the rows below.
  [[nodiscard]] std::span<Sample> run(const SampleRun& run) const {
    return samples_.subspan(index(run.column, run.row), static_cast<std::size_t>(run.count));
  }

 private:
  template <typename>
  friend class BasicPlaneView;

  BasicPlaneView(std::span<Sample> samples, std::int64_t width) : samples_(samples), width_(width) {}

  [[nodiscard]] std::size_t index(std::int64_t column, std::int64_t row) const {
    return static_cast<std::size_t>(row * width_ + column);
  }

  std::span<Sample> samples_;
  std::int64_t width_;
};

using PlaneView = BasicPlaneView<std::uint16_t>;
using ConstPlaneView = BasicPlaneView<const std::uint16_t>;

}  // namespace tessaly
