#include "calibration/second/LineVotes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaly::second {
namespace {

constexpr double agreeingGroups = 0.75;
constexpr double leastOfNoise = 0.1;
constexpr double shadowGroups = 0.6;
constexpr double shadowPart = 0.4;

// A line crosses blocks; where more than half of it is clipped the group has no vote.
bool votesOn(const GroupModel& model, const BlockGrid& grid, const FoundColumn& column) {
  constexpr std::int64_t places = 16;
  std::int64_t count = 0;
  for (std::int64_t i = 0; i < places; ++i) {
    const std::int64_t y = column.firstRow + (column.lastRow - column.firstRow) * i / (places - 1);
    count += model.votesAt(grid, column.x, y) ? 1 : 0;
  }
  return 2 * count > places;
}

template <typename Found>
void keep(std::vector<Found>& all, const std::vector<bool>& isKept) {
  std::vector<Found> kept;
  for (std::size_t i = 0; i < all.size(); ++i)
    if (isKept[i]) kept.push_back(all[i]);
  all = std::move(kept);
}

}  // namespace

void LineVotes::add(const GroupModel& model, const Plane& median, const BlockGrid& grid) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (!votesOn(model, grid, columns_[i])) continue;
    ++voting_[i];
    if (meanResidual(median, grid.shape(), columns_[i], columns_) * columns_[i].mean > 0) ++agreeing_[i];
  }
  if (model.weight > 0) leastNoise_ = leastNoise_ > 0 ? std::min(leastNoise_, model.noiseSigma) : model.noiseSigma;
}

void LineVotes::finish() {
  std::vector<bool> isKept;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    isKept.push_back(voting_[i] > 0 && agreeing_[i] >= agreeingGroups * voting_[i] &&
                     std::abs(columns_[i].mean) >= leastOfNoise * leastNoise_);
  }
  keep(columns_, isKept);
}

void ShadowVotes::add(const GroupModel& model, const Plane& median, const BlockGrid& grid) {
  for (std::size_t i = 0; i < shadows_.size(); ++i) {
    const Shadow& shadow = shadows_[i];
    const auto x = std::clamp<std::int64_t>(std::lround(shadow.x), 0, grid.shape().width - 1);
    const auto y = std::clamp<std::int64_t>(std::lround(shadow.y), 0, grid.shape().height - 1);
    if (!model.votesAt(grid, x, y)) continue;
    ++voting_[i];
    if (shadowDepth(median, grid.shape(), shadow) > shadowPart * shadow.depth) ++agreeing_[i];
  }
}

void ShadowVotes::finish() {
  std::vector<bool> isKept;
  for (std::size_t i = 0; i < shadows_.size(); ++i)
    isKept.push_back(agreeing_[i] > shadowGroups * voting_[i]);
  keep(shadows_, isKept);
}

}  // namespace tessaly::second
