#include "repair/DefectRows.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace tessaly {
namespace {

std::int64_t slotsFor(std::int64_t rows) {
  return static_cast<std::int64_t>(std::bit_ceil(static_cast<std::uint64_t>(rows)));
}

std::int64_t firstRowOf(const DefectLine& line) {
  return line.yStart;
}

std::int64_t firstRowOf(const DefectSpot& spot) {
  return spot.y - spot.radiusY;
}

template <typename Defect>
std::vector<const Defect*> sortedByFirstRow(const std::vector<Defect>& defects) {
  std::vector<const Defect*> sorted;
  sorted.reserve(defects.size());
  for (const Defect& defect : defects)
    sorted.push_back(&defect);
  std::sort(sorted.begin(), sorted.end(),
            [](const Defect* a, const Defect* b) { return firstRowOf(*a) < firstRowOf(*b); });
  return sorted;
}

/// Whether the sample `dx` columns and `dy` rows from the centre belongs to the ellipse: dx² · ry² + dy² · rx² ≤ rx² ·
/// ry². Radii are below 50,000, so no product leaves 64 bits.
bool isInside(const DefectSpot& spot, std::int64_t dx, std::int64_t dy) {
  const std::int64_t rx2 = spot.radiusX * spot.radiusX, ry2 = spot.radiusY * spot.radiusY;
  return dx * dx * ry2 <= rx2 * ry2 - dy * dy * rx2;
}

}  // namespace

DefectRows::DefectRows(const CameraProfile& profile, const DNGMetadata& metadata, std::int64_t reach,
                       std::int64_t mostRows)
    : rawHeight_(metadata.rawHeight),
      reach_(reach),
      slotMask_(slotsFor(std::min(mostRows + 2 * reach, metadata.rawHeight)) - 1),
      lines_(metadata.rawWidth, slotMask_ + 1),
      spots_(metadata.rawWidth, slotMask_ + 1),
      points_(metadata.rawWidth, slotMask_ + 1),
      all_(metadata.rawWidth, slotMask_ + 1),
      sortedLines_(sortedByFirstRow(profile.lines)) {
  pixels_.reserve(profile.pixels.size());
  for (const DefectPixel& pixel : profile.pixels)
    pixels_.push_back({static_cast<std::uint32_t>(pixel.y), static_cast<std::uint32_t>(pixel.x)});
  std::sort(pixels_.begin(), pixels_.end());
  if (profile.spots) sortedSpots_ = sortedByFirstRow(*profile.spots);
}

void DefectRows::moveTo(const SliceRows& slice) {
  assert(slice.count() + 2 * reach_ <= slotMask_ + 1 || slotMask_ + 1 >= rawHeight_);
  const std::int64_t end = std::min(slice.last + reach_, rawHeight_);
  for (; nextRow_ < end; ++nextRow_)
    addRow(nextRow_);
}

// A sample that several defects cover belongs to the first of: line, spot, point.
void DefectRows::addRow(std::int64_t y) {
  const std::int64_t row = slot(y);
  for (SampleMask* const mask : {&lines_, &spots_, &points_, &all_})
    mask->clearRow(row);
  addLines(y);
  addSpots(y);
  addPoints(y);
  spots_.subtractRow(row, lines_);
  points_.subtractRow(row, lines_);
  points_.subtractRow(row, spots_);
  for (const SampleMask* const mask : {&lines_, &spots_, &points_})
    all_.uniteRow(row, *mask);
  count(row);
}

void DefectRows::addLines(std::int64_t y) {
  for (; nextLine_ < sortedLines_.size() && sortedLines_[nextLine_]->yStart <= y; ++nextLine_)
    cutLines_.push_back(sortedLines_[nextLine_]);
  std::erase_if(cutLines_, [&](const DefectLine* line) { return line->yEnd < y; });
  for (const DefectLine* const line : cutLines_)
    lines_.add(slot(y), line->x, line->x + line->width - 1);
}

// From row to row an ellipse first widens, then narrows.
void DefectRows::addSpots(std::int64_t y) {
  for (; nextSpot_ < sortedSpots_.size() && firstRowOf(*sortedSpots_[nextSpot_]) <= y; ++nextSpot_)
    cutSpots_.push_back({sortedSpots_[nextSpot_], 0});
  std::erase_if(cutSpots_, [&](const CutSpot& cut) { return cut.spot->y + cut.spot->radiusY < y; });
  for (CutSpot& cut : cutSpots_) {
    const DefectSpot& spot = *cut.spot;
    const std::int64_t dy = y - spot.y;
    while (cut.reach < spot.radiusX && isInside(spot, cut.reach + 1, dy))
      ++cut.reach;
    while (!isInside(spot, cut.reach, dy))
      --cut.reach;
    spots_.add(slot(y), spot.x - cut.reach, spot.x + cut.reach);
  }
}

void DefectRows::addPoints(std::int64_t y) {
  for (; nextPixel_ < pixels_.size() && pixels_[nextPixel_].row == y; ++nextPixel_)
    points_.add(slot(y), pixels_[nextPixel_].column, pixels_[nextPixel_].column);
}

void DefectRows::count(std::int64_t row) {
  report_.changedSamples += all_.countInRow(row);
  report_.pointSamples += points_.countInRow(row);
  report_.lineSamples += lines_.countInRow(row);
  report_.spotSamples += spots_.countInRow(row);
}

}  // namespace tessaly
