#include "calibration/second/NoiseFigures.h"

#include "calibration/second/RowKernels.h"
#include "dng/DNGReader.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaly::second {
namespace {

/// The variance of the median of 3, 4, 5 and 6 normal numbers of variance 1, and of 8.
constexpr std::array<double, 4> medianVariances{0.4487, 0.2982, 0.2868, 0.2147};
constexpr double medianVarianceOfEight = 0.1682;

/// The blocks of all colours in which a group votes: their variance and their light.
struct VotingBlocks {
  std::vector<float> variances;  ///< in quanta²
  std::vector<float> lights;     ///< u
  std::vector<float> slopes;     ///< noise² / light, u
};

float meanLevel(const GroupModel& model, std::size_t block) {
  float sum = 0;
  for (const BlockValues& frame : model.levels)
    sum += frame[block];
  return sum / static_cast<float>(model.levels.size());
}

bool votesIn(const GroupModel& model, const BlockGrid& grid, std::size_t block) {
  const auto place = static_cast<std::int64_t>(block % grid.blocks());
  const auto& voting = model.voting[static_cast<std::size_t>(place / grid.columns())];
  return std::find(voting.begin(), voting.end(), grid.blockColumns(place % grid.columns())) != voting.end();
}

VotingBlocks votingBlocks(const GroupModel& model, const BlockGrid& grid, const BlockValues& roots,
                          double unitsPerRaw) {
  VotingBlocks blocks;
  blocks.variances.reserve(grid.values());
  for (std::size_t i = 0; i < grid.values(); ++i) {
    if (!votesIn(model, grid, i)) continue;
    const double root = static_cast<double>(roots[i]) / rootQuanta;
    const double variance = varianceOfMedian(root * root * root, model.group.urls.size());
    blocks.variances.push_back(static_cast<float>(variance));
    if (model.group.isDark) continue;
    const double light = meanLevel(model, i) * unitsPerRaw;
    blocks.lights.push_back(static_cast<float>(light));
    blocks.slopes.push_back(static_cast<float>(variance / (lightQuanta * lightQuanta) * light));
  }
  return blocks;
}

}  // namespace

// The cube root of a χ² is nearly normal (Wilson and Hilferty), so that its median is the cube of the mean of that.
double varianceOfMedian(double medianVariance, std::size_t frames) {
  const double root = 1 - 2 / (9 * static_cast<double>(frames - 1));
  return medianVariance / (root * root * root);
}

double fixedVariance(double departureSigma, double frameVariance, std::size_t frames) {
  const std::size_t row = std::min(frames, medianVariances.size() + 2) - 3;
  const double single = departureSigma * departureSigma / (1 + medianVarianceOfEight);
  return std::max(single - medianVariances.at(row) * frameVariance, 0.0);
}

std::vector<StrengthCount> strengthCounts(const Histogram& departures, double quanta) {
  std::vector<StrengthCount> counts;
  for (int halfOctave = 0; std::exp2(halfOctave / 2.0) <= 2 * limit; ++halfOctave) {
    const double strength = std::exp2(halfOctave / 2.0);  // every second one is whole
    const std::uint64_t photosites = departures.countFrom(static_cast<int>(std::ceil(strength)));
    if (photosites == 0) break;
    counts.push_back({strength / quanta, photosites});
  }
  return counts;
}

SettingFigures settingFigures(const GroupModel& model, GroupStack& stack, const BlockGrid& grid,
                              const Histogram& departures, double unitsPerRaw) {
  SettingFigures figures = model.group.setting;
  figures.isDark = model.group.isDark;
  if (!figures.isDark) figures.fNumber = DNGReader::readFNumber(model.group.urls.front());
  const Plane& roots = stack.varianceRoots();  // 0 … 32767: unsigned as they are
  const BlockValues medians =
      blockMedians({reinterpret_cast<const std::uint16_t*>(roots.data()), grid.shape().width}, grid, stack.threads());
  VotingBlocks blocks = votingBlocks(model, grid, medians, unitsPerRaw);
  figures.isClipped = blocks.variances.empty();
  if (figures.isClipped) return figures;
  const double quanta = figures.isDark ? unitQuanta : lightQuanta;
  const double variance = medianOf(blocks.variances);
  figures.noise = std::sqrt(variance) / quanta;
  figures.spread = std::sqrt(fixedVariance(model.departureSigma, variance, model.group.urls.size())) / quanta;
  figures.level = medianOf(blocks.lights);
  figures.photonSlope = medianOf(blocks.slopes);
  figures.departing = strengthCounts(departures, quanta);
  return figures;
}

}  // namespace tessaly::second
