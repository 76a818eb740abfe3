#include "calibration/ReferenceCalibration.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace tessaly::reference {
namespace {

using Kind = CalibrationCandidate::Kind;

struct Group {
  std::string key;
  std::vector<const Frame*> frames;
  bool isDark = false;
};

template <typename T>
T upperMedian(std::vector<T> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

std::int64_t rawAt(const Frame& frame, std::int64_t x, std::int64_t y) {
  return frame.samples[static_cast<std::size_t>(y * frame.metadata.rawWidth + x)];
}

std::int64_t activeAt(const Frame& frame, const DNGMetadata& metadata, std::int64_t x, std::int64_t y) {
  return rawAt(frame, metadata.activeX + x, metadata.activeY + y);
}

std::string exposureKey(const DNGMetadata& metadata) {
  const double micros = std::round(metadata.exposureSeconds.value_or(0) * 1000000);
  return fmt::format("{}-{}", metadata.iso.value_or(0), static_cast<std::int64_t>(micros));
}

bool isDarkFrame(const Frame& frame) {
  const DNGMetadata& m = frame.metadata;
  const std::int64_t stride = m.cfaLayout ? 31 : 32;
  std::vector<std::int64_t> values;
  for (std::int64_t y = 0; y < m.activeHeight; y += stride) {
    for (std::int64_t x = 0; x < m.activeWidth; x += stride)
      values.push_back(activeAt(frame, m, x, y));
  }
  const std::int64_t level = values.empty() ? 0 : upperMedian(values);
  return level < m.blackLevel + std::max<std::int64_t>((m.whiteLevel - m.blackLevel) * 400 / 16163, 1);
}

std::vector<Group> makeGroups(const std::vector<Frame>& frames) {
  std::map<std::string, std::vector<const Frame*>> byKey;
  for (const Frame& frame : frames)
    byKey[exposureKey(frame.metadata)].push_back(&frame);
  std::vector<Group> groups;
  for (const auto& [key, members] : byKey)
    groups.push_back({key, members, isDarkFrame(*members.front())});
  return groups;
}

// Points and spots.

struct PointMap {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t frameCount = 0;
  std::vector<std::int64_t> sum;
  std::vector<std::int64_t> positives;

  double mean(std::int64_t x, std::int64_t y) const {
    return static_cast<double>(sum[static_cast<std::size_t>(y * width + x)]) / static_cast<double>(frameCount);
  }
};

std::int64_t deviationAt(const Frame& frame, const DNGMetadata& m, bool isDark, std::int64_t x, std::int64_t y) {
  const std::int64_t d = m.cfaLayout ? 2 : 1;
  std::vector<std::int64_t> four = {activeAt(frame, m, x - d, y), activeAt(frame, m, x + d, y),
                                    activeAt(frame, m, x, y - d), activeAt(frame, m, x, y + d)};
  std::sort(four.begin(), four.end());
  const std::int64_t median = (four[1] + four[2] + 1) / 2;
  std::int64_t deviation = activeAt(frame, m, x, y) - median;
  if (!isDark) {
    std::int64_t divisor = std::max((m.whiteLevel - m.blackLevel) * 64 / 16163, median - m.blackLevel);
    divisor = std::max<std::int64_t>(divisor, 1);
    deviation = deviation * 1000 / divisor;
  }
  return std::clamp<std::int64_t>(deviation, -32767, 32767);
}

PointMap measurePoints(const Group& group, const DNGMetadata& m) {
  PointMap map{m.activeWidth, m.activeHeight, static_cast<std::int64_t>(group.frames.size()), {}, {}};
  map.sum.assign(static_cast<std::size_t>(m.activeWidth * m.activeHeight), 0);
  map.positives = map.sum;
  if (m.activeWidth < 5 || m.activeHeight < 5) return map;
  for (const Frame* frame : group.frames) {
    for (std::int64_t y = 2; y < m.activeHeight - 2; ++y) {
      for (std::int64_t x = 2; x < m.activeWidth - 2; ++x) {
        const std::int64_t deviation = deviationAt(*frame, m, group.isDark, x, y);
        const auto i = static_cast<std::size_t>(y * m.activeWidth + x);
        map.sum[i] += deviation;
        if (deviation > 0) map.positives[i] = std::min<std::int64_t>(map.positives[i] + 1, 255);
      }
    }
  }
  return map;
}

struct Anomaly {
  std::int64_t x = 0;
  std::int64_t y = 0;
  double mean = 0;
  double agreement = 0;
};

std::vector<Anomaly> findAnomalies(const PointMap& map, double scale) {
  std::vector<Anomaly> anomalies;
  const std::int64_t n = map.frameCount;
  const auto minimum = static_cast<std::int64_t>(static_cast<double>(n) * 0.8);
  for (std::int64_t y = 2; y < map.height - 2; ++y) {
    for (std::int64_t x = 2; x < map.width - 2; ++x) {
      const std::int64_t p = map.positives[static_cast<std::size_t>(y * map.width + x)];
      const std::int64_t agreeing = std::max(p, n - p);
      const double mean = map.mean(x, y);
      if (agreeing < minimum || !(std::abs(mean) >= scale)) continue;
      anomalies.push_back({x, y, mean, static_cast<double>(agreeing) / static_cast<double>(n)});
    }
  }
  return anomalies;
}

std::optional<double> pixelConfidence(const PointMap& map, const DNGMetadata& m, const Anomaly& own, double scale) {
  const std::int64_t r = m.cfaLayout ? 2 : 1;
  double strength = 1.0;
  int strong = 0;
  const double magnitude = std::abs(own.mean);
  for (std::int64_t y = own.y - r; y <= own.y + r; ++y) {
    for (std::int64_t x = own.x - r; x <= own.x + r; ++x) {
      if (x == own.x && y == own.y) continue;
      if (x < 0 || y < 0 || x >= map.width || y >= map.height) continue;
      if (m.cfaLayout && !m.cfaLayout->matches(x, y, own.x, own.y)) continue;
      const double neighbour = std::abs(map.mean(x, y));
      strength = std::max(strength, neighbour);
      if (neighbour >= 0.45 * magnitude) ++strong;
    }
  }
  const double ratio = magnitude / strength;
  if (!(ratio >= 1.45) && !(strong < 2 && magnitude >= 2.5 * scale)) return std::nullopt;
  const double confidence = std::min(
      std::min(ratio / 3, 1.0) * 0.2 + own.agreement * 0.45 + std::min(magnitude / (5 * scale), 1.0) * 0.35, 0.99);
  if (!(confidence >= 0.62)) return std::nullopt;
  return confidence;
}

CalibrationCandidate pixelCandidate(const DNGMetadata& m, const Anomaly& own, double confidence, bool isDark) {
  CalibrationCandidate c;
  c.kind = Kind::pixel;
  c.x = m.activeX + own.x;
  c.yStart = c.yEnd = m.activeY + own.y;
  c.width = 1;
  c.confidence = confidence;
  c.reason =
      isDark ? "Abnormal pixel repeated in dark frames" : "Isolated response anomaly repeated in bright-field frames";
  return c;
}

std::vector<std::vector<Anomaly>> darkClusters(const std::vector<Anomaly>& anomalies, std::int64_t reach) {
  std::map<std::pair<std::int64_t, std::int64_t>, Anomaly> waiting;  // by row, then column
  for (const Anomaly& a : anomalies) {
    if (a.mean < 0) waiting[{a.y, a.x}] = a;
  }
  std::vector<std::vector<Anomaly>> clusters;
  while (!waiting.empty()) {
    std::vector<Anomaly> cluster = {waiting.begin()->second};
    waiting.erase(waiting.begin());
    for (std::size_t i = 0; i < cluster.size(); ++i) {
      for (std::int64_t y = cluster[i].y - reach; y <= cluster[i].y + reach; ++y) {
        for (std::int64_t x = cluster[i].x - reach; x <= cluster[i].x + reach; ++x) {
          const auto found = waiting.find({y, x});
          if (found == waiting.end()) continue;
          cluster.push_back(found->second);
          waiting.erase(found);
        }
      }
    }
    std::sort(cluster.begin(), cluster.end(),
              [](const Anomaly& a, const Anomaly& b) { return std::pair(a.y, a.x) < std::pair(b.y, b.x); });
    clusters.push_back(cluster);
  }
  return clusters;
}

std::optional<CalibrationCandidate> spotCandidate(const DNGMetadata& m, const std::vector<Anomaly>& cluster,
                                                  double scale) {
  if (cluster.size() < 4 || cluster.size() > 600) return std::nullopt;
  std::int64_t minX = cluster[0].x, maxX = minX, minY = cluster[0].y, maxY = minY;
  double weight = 0, weightedX = 0, weightedY = 0, agreements = 0, peak = 0;
  for (const Anomaly& a : cluster) {
    minX = std::min(minX, a.x);
    maxX = std::max(maxX, a.x);
    minY = std::min(minY, a.y);
    maxY = std::max(maxY, a.y);
    weight += std::abs(a.mean);
    weightedX += static_cast<double>(a.x) * std::abs(a.mean);
    weightedY += static_cast<double>(a.y) * std::abs(a.mean);
    agreements += a.agreement;
    peak = std::min(peak, a.mean);
  }
  if (maxX - minX + 1 > 40 || maxY - minY + 1 > 40) return std::nullopt;
  CalibrationCandidate c;
  c.kind = Kind::spot;
  c.x = m.activeX + static_cast<std::int64_t>(weightedX / weight);
  c.yStart = c.yEnd = m.activeY + static_cast<std::int64_t>(weightedY / weight);
  c.width = 1;
  c.radiusX = std::max<std::int64_t>((maxX - minX + 6) / 2, 4);
  c.radiusY = std::max<std::int64_t>((maxY - minY + 6) / 2, 4);
  c.confidence = std::min(
      (agreements / static_cast<double>(cluster.size())) * 0.55 + std::min(std::abs(peak) / (5 * scale), 1.0) * 0.4,
      0.95);
  c.reason = "Compact fixed shadow repeated in bright-field frames";
  return c;
}

std::vector<CalibrationCandidate> detectPointGroup(const Group& group, const DNGMetadata& m) {
  const double scale =
      group.isDark ? static_cast<double>(std::max<std::int64_t>(m.whiteLevel - m.blackLevel, 1)) * 24 / 16163 : 110.0;
  const PointMap map = measurePoints(group, m);
  const std::vector<Anomaly> anomalies = findAnomalies(map, scale);
  std::vector<CalibrationCandidate> found;
  if (!group.isDark) {
    for (const auto& cluster : darkClusters(anomalies, m.cfaLayout ? 1 : 2)) {
      if (const auto spot = spotCandidate(m, cluster, scale)) found.push_back(*spot);
    }
  }
  for (const Anomaly& own : anomalies) {
    const auto confidence = pixelConfidence(map, m, own, scale);
    if (confidence) found.push_back(pixelCandidate(m, own, *confidence, group.isDark));
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.confidence > b.confidence; });
  if (found.size() > 3000) found.resize(3000);
  return found;
}

bool isClose(const CalibrationCandidate& a, const CalibrationCandidate& first) {
  return std::abs(a.x - first.x) <= std::max<std::int64_t>(a.radiusX + first.radiusX, 6) &&
         std::abs(a.yStart - first.yStart) <= std::max<std::int64_t>(a.radiusY + first.radiusY, 6);
}

CalibrationCandidate mergedSpot(const std::vector<CalibrationCandidate>& members) {
  double sumX = 0, sumY = 0, confidence = 0;
  for (const auto& s : members) {
    sumX += static_cast<double>(s.x);
    sumY += static_cast<double>(s.yStart);
    confidence += s.confidence;
  }
  const auto n = static_cast<double>(members.size());
  CalibrationCandidate c;
  c.kind = Kind::spot;
  c.x = static_cast<std::int64_t>(std::round(sumX / n));
  c.yStart = c.yEnd = static_cast<std::int64_t>(std::round(sumY / n));
  c.width = 1;
  for (const auto& s : members) {
    c.radiusX = std::max(c.radiusX, std::abs(s.x - c.x) + s.radiusX);
    c.radiusY = std::max(c.radiusY, std::abs(s.yStart - c.yStart) + s.radiusY);
  }
  c.confidence = std::min(confidence / n + 0.04, 0.98);
  c.reason = fmt::format("Fixed sensor spot repeated in {} bright-field exposure groups", members.size());
  return c;
}

std::vector<CalibrationCandidate> mergeSpots(const std::vector<CalibrationCandidate>& spots) {
  std::vector<std::vector<CalibrationCandidate>> clusters;
  for (const auto& spot : spots) {
    const auto home = std::find_if(clusters.begin(), clusters.end(),
                                   [&](const auto& cluster) { return isClose(spot, cluster.front()); });
    if (home == clusters.end()) {
      clusters.push_back({spot});
    } else {
      home->push_back(spot);
    }
  }
  std::vector<CalibrationCandidate> merged;
  for (const auto& cluster : clusters) {
    if (cluster.size() >= 2) merged.push_back(mergedSpot(cluster));
  }
  return merged;
}

// Columns.

double residual(const Frame& frame, const DNGMetadata& m, std::int64_t x, std::int64_t y) {
  std::vector<double> pairs;
  for (const std::int64_t k : m.cfaLayout ? std::vector<std::int64_t>{2, 4, 6} : std::vector<std::int64_t>{3, 5, 7}) {
    if (x - k < 0 || x + k >= m.rawWidth) continue;
    pairs.push_back(static_cast<double>(rawAt(frame, x - k, y) + rawAt(frame, x + k, y)) / 2);
  }
  if (pairs.size() < 2) return 0;
  std::sort(pairs.begin(), pairs.end());
  double reference = pairs[pairs.size() / 2];
  const auto range = static_cast<double>(std::max<std::int64_t>(m.whiteLevel - m.blackLevel, 1));
  double sum = 0;
  int kept = 0;
  for (const double pair : pairs) {
    if (!(std::abs(pair - reference) <= range * 0.01)) continue;
    sum += pair;
    ++kept;
  }
  if (kept < 3) reference = sum / kept;
  return std::clamp((static_cast<double>(rawAt(frame, x, y)) - reference) * 16163 / range, -256.0, 256.0);
}

std::vector<std::int64_t> evidenceRows(const DNGMetadata& m) {
  std::vector<std::int64_t> rows;
  for (std::int64_t y = 32; y < m.activeHeight - 32; y += 8) {
    rows.push_back(y);
    if (m.cfaLayout && y + 1 < m.activeHeight - 32) rows.push_back(y + 1);
  }
  return rows;
}

double columnResidual(const std::vector<double>& values) {
  std::vector<double> bands;
  for (std::size_t i = 0; i < 8; ++i) {
    const std::size_t from = values.size() * i / 8, to = values.size() * (i + 1) / 8;
    double sum = 0;
    for (std::size_t j = from; j < to; ++j)
      sum += values[j];
    bands.push_back(from == to ? 0 : sum / static_cast<double>(to - from));
  }
  std::sort(bands.begin(), bands.end());
  double sum = 0;
  for (const double band : bands)
    sum += band;
  const double mean = sum / 8;
  for (const double band : bands) {
    if ((band > 0) != (mean > 0) || (band < 0) != (mean < 0) || !(std::abs(band) >= 0.2 * std::abs(mean))) return 0;
  }
  return mean;
}

struct FrameEvidence {
  std::string key;
  std::vector<double> residuals;
};

FrameEvidence columnEvidence(const Frame& frame, const DNGMetadata& m, const std::string& key) {
  FrameEvidence evidence{key, std::vector<double>(static_cast<std::size_t>(m.activeWidth), 0.0)};
  if (m.activeWidth < 16) return evidence;
  const auto rows = evidenceRows(m);
  for (std::int64_t x = 8; x <= m.activeWidth - 9; ++x) {
    std::vector<double> values;
    for (const std::int64_t y : rows)
      values.push_back(residual(frame, m, m.activeX + x, m.activeY + y));
    evidence.residuals[static_cast<std::size_t>(x)] = columnResidual(values);
  }
  return evidence;
}

std::vector<double> detrended(const std::vector<double>& residuals) {
  std::vector<double> result(residuals.size(), 0.0);
  if (residuals.size() <= 64) return result;
  for (std::size_t c = 32; c + 33 <= residuals.size(); ++c) {
    std::vector<double> around;
    for (std::size_t i = c - 24; i <= c + 24; ++i) {
      if (i + 3 < c || i > c + 3) around.push_back(residuals[i]);
    }
    result[c] = residuals[c] - upperMedian(around);
  }
  return result;
}

struct Detection {
  std::int64_t x = 0;
  std::int64_t width = 1;
  double effect = 0;
  double sigma = 0;
  double agreement = 0;
  std::int64_t groups = 0;
};

std::vector<double> valuesAt(const std::vector<FrameEvidence>& frames, std::size_t column, const std::string* key) {
  std::vector<double> values;
  for (const auto& frame : frames) {
    if (!key || frame.key == *key) values.push_back(frame.residuals[column]);
  }
  return values;
}

double signAgreement(const std::vector<double>& values) {
  const auto positives = std::count_if(values.begin(), values.end(), [](double v) { return v > 0; });
  const auto n = static_cast<std::ptrdiff_t>(values.size());
  return static_cast<double>(std::max(positives, n - positives)) / static_cast<double>(n);
}

/// The number of exposure groups that agree with `effect` at this column; nothing when one that counts disagrees.
std::optional<std::int64_t> agreeingGroups(const std::vector<FrameEvidence>& frames, std::size_t column,
                                           double effect) {
  std::set<std::string> keys;
  for (const auto& frame : frames)
    keys.insert(frame.key);
  std::int64_t counted = 0;
  for (const auto& key : keys) {
    const auto values = valuesAt(frames, column, &key);
    if (values.size() <= 2) continue;
    const double median = upperMedian(values);
    if ((median < 0) != (effect < 0) || !(std::abs(median) >= std::max(0.35 * std::abs(effect), 1.0))) return {};
    ++counted;
  }
  if (counted == 0) return std::nullopt;
  return counted;
}

std::vector<Detection> detectColumns(std::vector<FrameEvidence> frames, std::int64_t width) {
  if (frames.size() < 6 || width <= 256) return {};
  for (auto& frame : frames)
    frame.residuals = detrended(frame.residuals);
  std::vector<double> effects, distances;
  for (std::int64_t c = 128; c <= width - 129; ++c) {
    effects.push_back(upperMedian(valuesAt(frames, static_cast<std::size_t>(c), nullptr)));
  }
  const double m = upperMedian(effects);
  for (const double effect : effects)
    distances.push_back(std::abs(effect - m));
  const double sigma0 = std::max(upperMedian(distances) * 1.4826, 0.001);
  std::vector<Detection> runs;
  std::optional<Detection> previous;
  for (std::int64_t c = 128; c <= width - 129; ++c) {
    const double effect = effects[static_cast<std::size_t>(c - 128)] - m;
    const double sigma = std::abs(effect) / sigma0;
    const double agreement = signAgreement(valuesAt(frames, static_cast<std::size_t>(c), nullptr));
    if (!(sigma >= 4.0) || !(agreement >= 0.9)) continue;
    const auto groups = agreeingGroups(frames, static_cast<std::size_t>(c), effect);
    if (!groups) continue;
    const Detection own{c, 1, effect, sigma, agreement, *groups};
    if (!runs.empty() && previous->x == c - 1 && (previous->effect < 0) == (effect < 0)) {
      Detection& run = runs.back();
      ++run.width;
      run.agreement = std::min(run.agreement, agreement);
      if (sigma > run.sigma) {
        run.sigma = sigma;
        run.effect = effect;
      }
    } else {
      runs.push_back(own);
    }
    previous = own;
  }
  std::sort(runs.begin(), runs.end(),
            [](const Detection& a, const Detection& b) { return std::pair(-a.sigma, a.x) < std::pair(-b.sigma, b.x); });
  return runs;
}

CalibrationCandidate columnCandidate(const Detection& d, const DNGMetadata& m) {
  CalibrationCandidate c;
  c.kind = Kind::line;
  c.x = m.activeX + d.x;
  c.yStart = m.activeY;
  c.yEnd = m.activeY + m.activeHeight - 1;
  c.width = d.width;
  c.confidence = std::min(d.sigma / 20 + 0.5, 0.99);
  c.evidenceSigma = d.sigma;
  c.frameAgreement = d.agreement;
  c.exposureGroupCount = d.groups;
  c.reason =
      fmt::format("Fixed column anomaly {:.1f}σ; same sign in {:.0f}% of frames; repeated across {} exposure groups",
                  d.sigma, d.agreement * 100, d.groups);
  return c;
}

// Partial columns below a fixed pixel.

struct Seed {
  std::int64_t x = 0;
  std::int64_t y = 0;
};

std::vector<Seed> trailSeeds(const std::vector<CalibrationCandidate>& pixels, const DNGMetadata& m) {
  std::map<std::int64_t, std::int64_t> topmost;
  for (const auto& pixel : pixels) {
    const auto [place, isNew] = topmost.emplace(pixel.x, pixel.yStart);
    if (!isNew) place->second = std::min(place->second, pixel.yStart);
  }
  std::vector<Seed> seeds;
  for (const auto& [x, y] : topmost) {
    if (x < m.activeX + 32 || x >= m.activeX + m.activeWidth - 32) continue;
    if (y + 128 >= m.activeY + m.activeHeight) continue;
    seeds.push_back({x, y});
  }
  return seeds;
}

double trailMean(const Frame& frame, const DNGMetadata& m, std::int64_t x, std::int64_t firstRow) {
  double sum = 0;
  std::int64_t count = 0;
  for (std::int64_t y = firstRow; y < m.activeY + m.activeHeight - 8; y += m.cfaLayout ? 7 : 8) {
    sum += residual(frame, m, x, y);
    ++count;
  }
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

double trailValue(const Frame& frame, const DNGMetadata& m, const Seed& seed) {
  const std::int64_t firstRow = seed.y + 16;
  if (firstRow >= m.activeY + m.activeHeight - 8) return 0;
  std::vector<double> neighbours;
  for (const std::int64_t offset : {-24, -18, -12, -6, 6, 12, 18, 24}) {
    const std::int64_t x = seed.x + offset;
    if (x < m.activeX || x >= m.activeX + m.activeWidth) continue;
    neighbours.push_back(trailMean(frame, m, x, firstRow));
  }
  return trailMean(frame, m, seed.x, firstRow) - upperMedian(neighbours);
}

struct Trail {
  Seed seed;
  double effect = 0;
  double agreement = 0;
  std::int64_t groups = 0;
};

std::optional<Trail> trailOf(const Seed& seed, const std::vector<std::vector<double>>& valuesByGroup) {
  std::vector<double> effects[2];  // not positive, positive
  std::vector<double> agreements[2];
  for (const auto& values : valuesByGroup) {
    const double effect = upperMedian(values);
    const double agreement = signAgreement(values);
    if (!(std::abs(effect) >= 2.5) || !(agreement >= 0.8)) continue;
    effects[effect > 0].push_back(effect);
    agreements[effect > 0].push_back(agreement);
  }
  const int majority = effects[1].size() > effects[0].size() ? 1 : 0;
  const auto share = static_cast<double>(effects[majority].size());
  const auto all = static_cast<double>(effects[0].size() + effects[1].size());
  if (share < 2 || !(share >= 0.8 * all)) return std::nullopt;
  return Trail{seed, upperMedian(effects[majority]),
               *std::min_element(agreements[majority].begin(), agreements[majority].end()),
               static_cast<std::int64_t>(effects[majority].size())};
}

std::vector<Trail> detectTrails(const std::vector<CalibrationCandidate>& pixels, const std::vector<Group>& groups,
                                const DNGMetadata& m) {
  std::vector<Trail> trails;
  for (const Seed& seed : trailSeeds(pixels, m)) {
    std::vector<std::vector<double>> valuesByGroup;
    for (const Group& group : groups) {
      if (group.frames.size() <= 2) continue;
      std::vector<double> values;
      for (const Frame* frame : group.frames)
        values.push_back(trailValue(*frame, m, seed));
      valuesByGroup.push_back(values);
    }
    if (valuesByGroup.size() < 2) continue;
    if (const auto trail = trailOf(seed, valuesByGroup)) trails.push_back(*trail);
  }
  return trails;
}

CalibrationCandidate trailCandidate(const Trail& trail, const DNGMetadata& m) {
  CalibrationCandidate c;
  c.kind = Kind::line;
  c.x = trail.seed.x;
  c.yStart = trail.seed.y;
  c.yEnd = m.activeY + m.activeHeight - 1;
  c.width = 1;
  c.confidence = std::min(std::abs(trail.effect) / 30 + 0.62, 0.99);
  c.frameAgreement = trail.agreement;
  c.exposureGroupCount = trail.groups;
  c.reason = fmt::format(
      "Partial defective column below a fixed pixel; column offset {:+.1f}; repeated across {} exposure "
      "groups",
      trail.effect, trail.groups);
  return c;
}

// The whole.

std::vector<CalibrationCandidate> mergePixels(
    const std::map<std::pair<std::int64_t, std::int64_t>, std::vector<CalibrationCandidate>>& byPosition) {
  std::vector<CalibrationCandidate> merged;
  for (const auto& [position, entries] : byPosition) {
    if (entries.size() < 2) continue;
    CalibrationCandidate c = *std::max_element(
        entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.confidence < b.confidence; });
    c.confidence = std::min(c.confidence + 0.03 * static_cast<double>(entries.size() - 1), 0.99);
    c.reason = fmt::format("Repeated in {} independent exposure groups", entries.size());
    merged.push_back(c);
  }
  return merged;
}

int kindRank(Kind kind) {
  return kind == Kind::line ? 0 : kind == Kind::spot ? 1 : 2;
}

bool ordersBefore(const CalibrationCandidate& a, const CalibrationCandidate& b) {
  if (a.kind != b.kind) return kindRank(a.kind) < kindRank(b.kind);
  if (a.confidence != b.confidence) return a.confidence > b.confidence;
  return std::pair(a.x, a.yStart) < std::pair(b.x, b.yStart);
}

std::vector<std::int64_t> previewValues(const Frame& frame, std::int64_t step) {
  const DNGMetadata& m = frame.metadata;
  std::vector<std::int64_t> values;
  for (std::int64_t py = 0; py < m.activeHeight / step; ++py) {
    for (std::int64_t px = 0; px < m.activeWidth / step; ++px) {
      const std::int64_t x0 = px * step, y0 = py * step;
      if (!m.cfaLayout) {
        values.push_back(activeAt(frame, m, x0, y0));
        continue;
      }
      const std::int64_t x1 = std::min(x0 + 1, m.activeWidth - 1), y1 = std::min(y0 + 1, m.activeHeight - 1);
      values.push_back((activeAt(frame, m, x0, y0) + activeAt(frame, m, x1, y0) + activeAt(frame, m, x0, y1) +
                        activeAt(frame, m, x1, y1) + 2) /
                       4);
    }
  }
  return values;
}

}  // namespace

RawPreviewImage brightFieldPreview(const Frame& frame) {
  const DNGMetadata& m = frame.metadata;
  const std::int64_t step = std::max<std::int64_t>((m.activeWidth + 1499) / 1500, 1);
  RawPreviewImage image{m.activeWidth / step, m.activeHeight / step, {}};
  const auto values = previewValues(frame, step);
  if (values.empty()) return image;
  auto sorted = values;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t n = sorted.size();
  const std::int64_t low = sorted[n / 1000], high = sorted[std::min(n * 999 / 1000, n - 1)];
  for (const std::int64_t value : values) {
    const std::int64_t grey = (value - low) * 255 / std::max<std::int64_t>(high - low, 1);
    image.pixels.push_back(static_cast<std::uint8_t>(std::clamp<std::int64_t>(grey, 0, 255)));
  }
  return image;
}

RawPreviewImage inspectionPreview(const Frame& frame) {
  const DNGMetadata& m = frame.metadata;
  const std::int64_t step = std::max<std::int64_t>((m.activeWidth + 7999) / 8000, 1);
  RawPreviewImage image{m.activeWidth / step, m.activeHeight / step, {}};
  const auto values = previewValues(frame, step);
  if (values.empty()) return image;
  auto sorted = values;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t n = sorted.size();
  const std::int64_t low = std::max(m.blackLevel, sorted[n / 200]), high = sorted[std::min(n * 995 / 1000, n - 1)];
  for (const std::int64_t value : values) {
    const double share = static_cast<double>(value - low) / static_cast<double>(std::max<std::int64_t>(high - low, 1));
    image.pixels.push_back(static_cast<std::uint8_t>(std::round(std::pow(std::clamp(share, 0.0, 1.0), 0.45) * 255)));
  }
  return image;
}

CalibrationResult analyze(const std::vector<Frame>& frames) {
  CalibrationResult result;
  const DNGMetadata& m = result.metadata = frames.front().metadata;
  const std::vector<Group> groups = makeGroups(frames);
  std::vector<CalibrationCandidate> spots;
  std::map<std::pair<std::int64_t, std::int64_t>, std::vector<CalibrationCandidate>> pixels;
  std::vector<FrameEvidence> evidence;
  std::set<std::string> evidenceKeys;
  for (const Group& group : groups) {
    (group.isDark ? result.darkFrameCount : result.brightFrameCount) += static_cast<std::int64_t>(group.frames.size());
    if (!group.isDark && result.preview.width == 0) result.preview = brightFieldPreview(*group.frames.front());
    if (group.frames.size() < 3) continue;
    for (const auto& c : detectPointGroup(group, m)) {
      if (c.kind == Kind::spot) spots.push_back(c);
      if (c.kind == Kind::pixel) pixels[{c.yStart, c.x}].push_back(c);
    }
    if (group.isDark) continue;
    for (const Frame* frame : group.frames)
      evidence.push_back(columnEvidence(*frame, m, group.key));
    evidenceKeys.insert(group.key);
  }
  result.lineEvidenceFrameCount = static_cast<std::int64_t>(evidence.size());
  result.lineExposureGroupCount = static_cast<std::int64_t>(evidenceKeys.size());
  for (const auto& column : detectColumns(evidence, m.activeWidth)) {
    result.candidates.push_back(columnCandidate(column, m));
  }
  const auto merged = mergePixels(pixels);
  result.candidates.insert(result.candidates.end(), merged.begin(), merged.end());
  for (const Trail& trail : detectTrails(merged, groups, m))
    result.candidates.push_back(trailCandidate(trail, m));
  for (const auto& spot : mergeSpots(spots))
    result.candidates.push_back(spot);
  std::stable_sort(result.candidates.begin(), result.candidates.end(), ordersBefore);
  return result;
}

}  // namespace tessaly::reference
