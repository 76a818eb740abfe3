// A folder of calibration frames of one small sensor, written as real files.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tests {

/// How a frame was exposed.
struct FrameExposure {
  std::optional<std::int64_t> iso;
  std::optional<std::pair<std::int64_t, std::int64_t>> seconds;
};

class FrameFolder {
 public:
  static constexpr std::uint16_t brightLevel = 8000;
  static constexpr std::uint16_t darkLevel = 10;

  /// The size of the active area; a masked border of 4 columns and 2 rows lies at its left and top.
  explicit FrameFolder(std::int64_t width = 257, std::int64_t height = 65) : width_(width), height_(height) {}

  /// A frame without noise. `change` may alter its samples, which it gets by active coordinates.
  using Sample = std::function<std::uint16_t&(std::int64_t x, std::int64_t y)>;
  using Change = std::function<void(const Sample&)>;

  FrameFolder& add(const std::string& name, std::uint16_t level, const FrameExposure& exposure,
                   const Change& change = nullptr) {
    return addAs(name, builder(level, exposure, change));
  }

  /// Several frames "<name>-1.dng" ….
  FrameFolder& addSeries(const std::string& name, int count, std::uint16_t level, const FrameExposure& exposure,
                         const Change& change = nullptr) {
    for (int frame = 1; frame <= count; ++frame)
      add(name + "-" + std::to_string(frame) + ".dng", level, exposure, change);
    return *this;
  }

  FrameFolder& addAs(const std::string& name, const tools::DNGBuilder& file) {
    file.write(*folder_ / name);
    urls_.push_back(*folder_ / name);
    return *this;
  }

  [[nodiscard]] tools::DNGBuilder builder(std::uint16_t level, const FrameExposure& exposure,
                                          const Change& change = nullptr) const {
    const std::int64_t rawWidth = width_ + 4;
    const std::int64_t rawHeight = height_ + 2;
    std::vector<std::uint16_t> samples(static_cast<std::size_t>(rawWidth * rawHeight), level);
    const Sample sample = [&](std::int64_t x, std::int64_t y) -> std::uint16_t& {
      return samples.at(static_cast<std::size_t>((y + 2) * rawWidth + x + 4));
    };
    if (change) change(sample);
    tools::DNGBuilder file;
    file.size(rawWidth, rawHeight).activeArea(2, 4, rawHeight, rawWidth).white(16163).serial("S1").linear();
    if (exposure.iso || exposure.seconds) file.exif(exposure.iso, exposure.seconds);
    return std::move(file.samples(std::move(samples)));
  }

  [[nodiscard]] const std::vector<std::filesystem::path>& urls() const { return urls_; }
  [[nodiscard]] std::filesystem::path path(const std::string& name) const { return *folder_ / name; }

 private:
  std::int64_t width_;
  std::int64_t height_;
  std::unique_ptr<TemporaryFolder> folder_ = std::make_unique<TemporaryFolder>();
  std::vector<std::filesystem::path> urls_;
};

}  // namespace tessaly::tests
