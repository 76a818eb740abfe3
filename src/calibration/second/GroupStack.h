// The frames of one exposure group, sample over sample: from their raw planes to what is fixed (the median over frames)
// and what changes (variance, with and without the frame that is farthest off).
//
// Two bytes a sample and frame; a group holds at most six frames (see exposureGroups). Used by one thread; work spreads
// over several itself, with the same result for any number of them.
#pragma once

#include "calibration/CalibrationIntake.h"
#include "calibration/second/LargeScaleModel.h"
#include "calibration/second/Neighbourhood.h"
#include "calibration/second/Places.h"
#include "calibration/second/Planes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace tessaly::second {

/// Frames of one setting: three to six.
struct ExposureGroup {
  bool isDark = false;
  std::vector<std::filesystem::path> urls;
  SettingFigures setting;  ///< how the frames were exposed, and how many there are of them in all parts
  bool isFirstPart = true;
};

/// The groups of three frames or more, dark ones first. One of more than six is divided: its parts decide each for
/// itself, so that memory does not grow with the number of frames.
[[nodiscard]] std::vector<ExposureGroup> exposureGroups(std::span<const CalibrationGroup> groups);

/// What is remembered of a group after its samples are gone.
struct GroupModel {
  ExposureGroup group;
  std::vector<BlockValues> levels;  ///< the large-scale model of each frame, raw units; bright ones above black
  BlockValues noise;                ///< of the root of the trimmed variance
  std::vector<std::vector<ColumnRange>> voting;  ///< by block row: columns that are not clipped
  double noiseSigma = 0;                         ///< the typical noise of a frame, in quanta
  double departureSigma = 0;                     ///< the spread of departures of the median over frames, in quanta
  double weight = 0;                             ///< frames / noise²; 0 where everything is clipped

  [[nodiscard]] bool votesAt(const BlockGrid& grid, std::int64_t x, std::int64_t y) const;
  [[nodiscard]] std::span<const ColumnRange> votingColumns(const BlockGrid& grid, std::int64_t y) const {
    return voting[static_cast<std::size_t>(grid.blockRow(y))];
  }
};

class GroupStack {
 public:
  /// All of them must outlive the stack.
  GroupStack(const DNGMetadata& metadata, const BlockGrid& grid, int threads)
      : metadata_(metadata), grid_(grid), threads_(threads) {}

  /// Begins a group. Places that are not everything leave the other samples unspecified.
  void begin(bool isDark, std::size_t frames, const Places& places);

  /// The large-scale model of a frame, given as its full raw plane.
  [[nodiscard]] BlockValues levelsOf(std::span<const std::uint16_t> raw) const;

  void add(std::span<const std::uint16_t> raw, std::span<const float> levels);

  /// After the last frame: fills the three planes below.
  void reduce();

  /// Gives the memory of all frames back.
  void release() { frames_.clear(); }

  [[nodiscard]] int threads() const { return threads_; }
  [[nodiscard]] Plane& median() { return frames_[0]; }
  [[nodiscard]] Plane& varianceRoots() { return frames_[1]; }
  [[nodiscard]] Plane& trimmedRoots() { return frames_[2]; }

  /// Where the frames with these models are clipped no group votes: the voting columns by block row.
  [[nodiscard]] std::vector<std::vector<ColumnRange>> votingBlocks(const std::vector<BlockValues>& levels) const;

 private:
  void addRow(std::span<const std::uint16_t> raw, const float* model, std::int64_t y);

  const DNGMetadata& metadata_;
  const BlockGrid& grid_;
  int threads_;
  bool isDark_ = false;
  std::size_t count_ = 0;
  std::size_t added_ = 0;
  const Places* places_ = nullptr;
  std::vector<Plane> frames_;
};

}  // namespace tessaly::second
