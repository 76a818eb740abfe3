#include "repair/ReferenceRepair.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <utility>

namespace tessaly::reference {
namespace {

using Set = std::set<std::int64_t>;

struct Work {
  const std::vector<std::uint16_t>& v;
  const DNGMetadata& m;
  Set defects;

  std::int64_t width() const { return m.rawWidth; }
  std::int64_t at(std::int64_t c, std::int64_t r) const { return v[static_cast<std::size_t>(r * width() + c)]; }
  bool bad(std::int64_t c, std::int64_t r) const { return defects.count(r * width() + c) != 0; }
  bool inside(std::int64_t c, std::int64_t r) const { return c >= 0 && c < m.rawWidth && r >= 0 && r < m.rawHeight; }

  int colour(std::int64_t c, std::int64_t r) const {
    // Both coordinates are moved by a multiple of the 2 × 2 cell, so that the remainder is never negative.
    const std::int64_t x = (c - m.activeX + 200000) % 2, y = (r - m.activeY + 200000) % 2;
    return m.cfaLayout->pattern[static_cast<std::size_t>(y * 2 + x)];
  }
  bool same(std::int64_t c, std::int64_t r, std::int64_t c2, std::int64_t r2) const {
    return !m.cfaLayout || colour(c, r) == colour(c2, r2);
  }
};

struct Row {
  std::int64_t value = 0;
  std::optional<std::int64_t> left, right;
};

Row rowSearch(const Work& w, std::int64_t c, std::int64_t r) {
  Row row;
  for (std::int64_t d = 15; d >= 1; --d) {
    if (w.inside(c - d, r) && !w.bad(c - d, r) && w.same(c - d, r, c, r)) row.left = c - d;
    if (w.inside(c + d, r) && !w.bad(c + d, r) && w.same(c + d, r, c, r)) row.right = c + d;
  }
  row.value = w.at(c, r);
  if (row.left) row.value = w.at(*row.left, r);
  if (row.right && !row.left) row.value = w.at(*row.right, r);
  if (row.left && row.right) {
    const std::int64_t L = *row.left, R = *row.right;
    row.value = (w.at(L, r) * (R - c) + w.at(R, r) * (c - L) + (R - L) / 2) / (R - L);
  }
  return row;
}

std::optional<std::int64_t> detail(const Work& w, std::int64_t o, std::int64_t c, std::int64_t r) {
  const std::int64_t p = w.m.cfaLayout ? 2 : 1;
  if (o - p < 0 || o + p >= w.width() || !w.same(o, r, c, r)) return std::nullopt;
  if (w.bad(o - p, r) || w.bad(o, r) || w.bad(o + p, r)) return std::nullopt;
  return w.at(o, r) - ((w.at(o + p, r) + w.at(o - p, r) + 1) >> 1);
}

std::int64_t columnRule(const Work& w, std::int64_t c, std::int64_t r) {
  const Row row = rowSearch(w, c, r);
  if (!row.left || !row.right) return row.value;
  const std::int64_t step = w.m.cfaLayout ? 2 : 1;
  const auto left = detail(w, *row.left - step, c, r);
  const auto right = detail(w, *row.right + step, c, r);
  std::int64_t correction = 0;
  if (left) correction = *left;
  if (right && (!left || c % 2 != r % 2)) correction = *right;
  return row.value + correction;
}

constexpr std::pair<int, int> directions[] = {{1, 0}, {0, 1}, {1, 1}, {1, -1}};

std::int64_t spotRule(const Work& w, std::int64_t c, std::int64_t r) {
  struct Candidate {
    std::int64_t gradient, value;
  };
  std::vector<Candidate> candidates;
  std::vector<std::int64_t> boundary;
  for (const auto& [dx, dy] : directions) {
    std::int64_t kb = 0, kf = 0, a = 0, b = 0;
    for (std::int64_t k = 63; k >= 1; --k) {
      const std::int64_t bx = c - k * dx, by = r - k * dy, fx = c + k * dx, fy = r + k * dy;
      if (w.inside(bx, by) && !w.bad(bx, by) && w.same(bx, by, c, r)) kb = k, a = w.at(bx, by);
      if (w.inside(fx, fy) && !w.bad(fx, fy) && w.same(fx, fy, c, r)) kf = k, b = w.at(fx, fy);
    }
    if (kb == 0 || kf == 0) continue;
    candidates.push_back({std::abs(a - b) * 1024 / (kb + kf), (a * kf + b * kb + (kb + kf) / 2) / (kb + kf)});
    boundary.push_back(a);
    boundary.push_back(b);
  }
  if (candidates.empty()) return rowSearch(w, c, r).value;
  const auto best = std::min_element(candidates.begin(), candidates.end(),
                                     [](const Candidate& x, const Candidate& y) { return x.gradient < y.gradient; });
  const auto [lowest, highest] = std::minmax_element(boundary.begin(), boundary.end());
  return std::max(*lowest, std::min(*highest, best->value));
}

std::optional<std::pair<std::int64_t, std::int64_t>> firstOfColour(const Work& w, std::int64_t c, std::int64_t r,
                                                                   std::int64_t dx, std::int64_t dy) {
  for (std::int64_t k = 1; k <= 4; ++k) {
    if (w.inside(c + k * dx, r + k * dy) && w.same(c + k * dx, r + k * dy, c, r)) {
      return std::pair(c + k * dx, r + k * dy);
    }
  }
  return std::nullopt;
}

std::int64_t pixelRule(const Work& w, std::int64_t c, std::int64_t r) {
  std::optional<std::int64_t> gradient;
  std::int64_t value = 0;
  for (const auto& [dx, dy] : directions) {
    const auto back = firstOfColour(w, c, r, -dx, -dy);
    const auto ahead = firstOfColour(w, c, r, dx, dy);
    if (!back || !ahead) continue;
    if (w.bad(back->first, back->second) || w.bad(ahead->first, ahead->second)) continue;
    const std::int64_t a = w.at(back->first, back->second), b = w.at(ahead->first, ahead->second);
    if (gradient && std::abs(a - b) >= *gradient) continue;
    gradient = std::abs(a - b);
    value = (a + b + 1) >> 1;
  }
  return gradient ? value : rowSearch(w, c, r).value;
}

Set lineSet(const CameraProfile& p) {
  Set set;
  for (const DefectLine& l : p.lines) {
    for (std::int64_t y = l.yStart; y <= l.yEnd; ++y) {
      for (std::int64_t x = l.x; x < l.x + l.width; ++x)
        set.insert(y * p.rawWidth + x);
    }
  }
  return set;
}

Set spotSet(const CameraProfile& p) {
  Set set;
  if (!p.spots) return set;
  for (const DefectSpot& s : *p.spots) {
    const std::int64_t rx2 = s.radiusX * s.radiusX, ry2 = s.radiusY * s.radiusY;
    for (std::int64_t y = 0; y < p.rawHeight; ++y) {
      for (std::int64_t x = 0; x < p.rawWidth; ++x) {
        if ((x - s.x) * (x - s.x) * ry2 + (y - s.y) * (y - s.y) * rx2 <= rx2 * ry2) set.insert(y * p.rawWidth + x);
      }
    }
  }
  return set;
}

Set without(const Set& from, const Set& taken) {
  Set rest;
  std::set_difference(from.begin(), from.end(), taken.begin(), taken.end(), std::inserter(rest, rest.end()));
  return rest;
}

}  // namespace

RepairedPlane repair(const std::vector<std::uint16_t>& samples, const DNGMetadata& metadata,
                     const CameraProfile& profile) {
  Set points;
  for (const DefectPixel& pixel : profile.pixels)
    points.insert(pixel.y * profile.rawWidth + pixel.x);
  const Set lines = lineSet(profile);
  const Set allSpots = spotSet(profile);
  const Set spots = without(allSpots, lines);
  const Set alone = without(without(points, lines), allSpots);
  Work work{samples, metadata, lines};
  work.defects.insert(allSpots.begin(), allSpots.end());
  work.defects.insert(points.begin(), points.end());

  RepairedPlane result{samples, {}};
  const std::int64_t white = std::min<std::int64_t>(std::max<std::int64_t>(metadata.whiteLevel, 0), 65535);
  const auto rebuild = [&](const Set& set, auto rule) {
    for (const std::int64_t i : set) {
      std::int64_t value = rule(work, i % metadata.rawWidth, i / metadata.rawWidth);
      value = std::min<std::int64_t>(std::max<std::int64_t>(value, 0), 65535);
      result.samples[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(std::min(value, white));
    }
  };
  rebuild(lines, columnRule);
  rebuild(spots, spotRule);
  rebuild(alone, pixelRule);
  const auto size = [](const Set& set) { return static_cast<std::int64_t>(set.size()); };
  result.report = {size(work.defects), size(alone), size(lines), size(spots)};
  return result;
}

}  // namespace tessaly::reference
