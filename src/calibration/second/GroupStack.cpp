#include "calibration/second/GroupStack.h"

#include "calibration/ActiveSamples.h"
#include "calibration/second/RowKernels.h"
#include "platform/ParallelBands.h"

#include <algorithm>

namespace tessaly::second {
namespace {

constexpr std::size_t mostFrames = 6;
constexpr double clippedLevel = 0.9;  // of the range, for the large-scale model

}  // namespace

std::vector<ExposureGroup> exposureGroups(std::span<const CalibrationGroup> groups) {
  std::vector<ExposureGroup> result;
  for (const CalibrationGroup& group : groups) {
    if (!group.isMeasured()) continue;
    const std::size_t frames = group.urls.size();
    SettingFigures setting;
    setting.iso = group.metadata.iso;
    setting.exposureSeconds = group.metadata.exposureSeconds;
    setting.frames = static_cast<std::int64_t>(frames);
    const std::size_t parts = (frames + mostFrames - 1) / mostFrames;
    for (std::size_t part = 0; part < parts; ++part) {
      const auto first = group.urls.begin() + static_cast<std::ptrdiff_t>(frames * part / parts);
      const auto last = group.urls.begin() + static_cast<std::ptrdiff_t>(frames * (part + 1) / parts);
      result.push_back({group.isDark, {first, last}, setting, part == 0});
    }
  }
  std::stable_partition(result.begin(), result.end(), [](const ExposureGroup& group) { return group.isDark; });
  return result;
}

bool GroupModel::votesAt(const BlockGrid& grid, std::int64_t x, std::int64_t y) const {
  const std::span<const ColumnRange> ranges = votingColumns(grid, y);
  return std::any_of(ranges.begin(), ranges.end(),
                     [x](const ColumnRange& range) { return x >= range.first && x < range.last; });
}

void GroupStack::begin(bool isDark, std::size_t frames, const Places& places) {
  isDark_ = isDark;
  count_ = frames;
  added_ = 0;
  places_ = &places;
  frames_.resize(std::max(frames_.size(), frames));
  for (std::size_t i = 0; i < frames; ++i)
    frames_[i].resize(grid_.shape().count());
}

BlockValues GroupStack::levelsOf(std::span<const std::uint16_t> raw) const {
  const ActiveSamples samples = activeSamples(raw, metadata_);
  BlockValues levels = blockMedians({samples.origin, samples.rawWidth}, grid_, threads_);
  if (isDark_) return levels;
  for (float& level : levels)
    level -= static_cast<float>(metadata_.blackLevel);
  return levels;
}

void GroupStack::add(std::span<const std::uint16_t> raw, std::span<const float> levels) {
  forEachBand(grid_.shape().height, threads_, [&](const RowBand& band) {
    ModelRows models(grid_, levels);
    for (std::int64_t y = band.first; y < band.last; ++y)
      if (!places_->row(y).empty()) addRow(raw, models.row(y), y);
  });
  ++added_;
}

void GroupStack::addRow(std::span<const std::uint16_t> raw, const float* model, std::int64_t y) {
  const std::uint16_t* source = activeSamples(raw, metadata_).row(y);
  std::int16_t* target = frames_[added_].data() + y * grid_.shape().width;
  const auto black = static_cast<float>(metadata_.blackLevel);
  const auto scale = static_cast<float>(unitQuanta * unitsOfRange / static_cast<double>(signalRange(metadata_)));
  for (const ColumnRange& range : places_->row(y)) {
    const std::int64_t x = range.first;
    const std::int64_t count = range.last - x;
    if (isDark_) {
      normalizeDarkness(source + x, model + x, scale, count, target + x);
    } else {
      normalizeLight(source + x, model + x, black, count, target + x);
    }
  }
}

void GroupStack::reduce() {
  forEachBand(grid_.shape().height, threads_, [&](const RowBand& band) {
    std::vector<std::int16_t*> frames(count_);
    for (std::int64_t y = band.first; y < band.last; ++y) {
      for (const ColumnRange& range : places_->row(y)) {
        for (std::size_t i = 0; i < count_; ++i)
          frames[i] = frames_[i].data() + y * grid_.shape().width + range.first;
        reduceFrames(frames, range.last - range.first);
      }
    }
  });
}

std::vector<std::vector<ColumnRange>> GroupStack::votingBlocks(const std::vector<BlockValues>& levels) const {
  const double most = clippedLevel * static_cast<double>(signalRange(metadata_));
  const auto isClipped = [&](std::size_t block) {
    for (const BlockValues& values : levels) {
      for (std::size_t i = block; i < values.size(); i += grid_.blocks())
        if (values[i] > most) return true;
    }
    return false;
  };
  std::vector<std::vector<ColumnRange>> voting(static_cast<std::size_t>(grid_.rows()));
  for (std::size_t block = 0; block < grid_.blocks(); ++block) {
    if (!isDark_ && isClipped(block)) continue;
    const auto column = static_cast<std::int64_t>(block) % grid_.columns();
    voting[block / static_cast<std::size_t>(grid_.columns())].push_back(grid_.blockColumns(column));
  }
  return voting;
}

}  // namespace tessaly::second
