#include "calibration/second/PointFinders.h"

#include "calibration/second/RowKernels.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>

namespace tessaly::second {
namespace {

constexpr double leastDim = 0.03;
constexpr double agreeingPart = 0.5;  // of D, in every group
constexpr double warmInGroup = 3;
constexpr double loudInGroup = 3;
constexpr double unsteadyRatio = 2;

using RowPlaces = std::function<void(std::int64_t y, PointPlaces&)>;

/// The places of all rows in the order of the rows.
PointPlaces placesOfRows(const PlaneShape& shape, int threads, const std::function<RowPlaces()>& makeSearch) {
  std::vector<PointPlaces> bands(static_cast<std::size_t>(bandCount(shape.height, threads)));
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    const RowPlaces search = makeSearch();
    for (std::int64_t y = band.first; y < band.last; ++y)
      search(y, bands[static_cast<std::size_t>(band.index)]);
  });
  PointPlaces all;
  for (const PointPlaces& places : bands)
    all.insert(all.end(), places.begin(), places.end());
  return all;
}

int unsteadiness(int sum, int worst) {
  return worst < -31000 ? 0 : std::clamp(sum - worst, -32767, 32767);
}

/// U of the dark groups, the bright groups or all of them, row by row.
struct UnsteadySet {
  std::vector<const UnsteadySums*> sums;
  Spread spread;

  void row(std::int64_t y, std::int64_t width, std::int16_t* target) const {
    for (std::int64_t x = 0; x < width; ++x) {
      const auto i = static_cast<std::size_t>(y * width + x);
      int sum = 0;
      int worst = -32000;
      for (const UnsteadySums* part : sums) {
        sum += part->sums[i];
        worst = std::max<int>(worst, part->worst[i]);
      }
      target[x] = static_cast<std::int16_t>(unsteadiness(sum, worst));
    }
  }
};

std::vector<UnsteadySet> unsteadySets(const UnsteadySums& dark, const UnsteadySums& bright) {
  std::vector<UnsteadySet> sets;
  if (dark.groups > 0) sets.push_back({{&dark}, {}});
  if (bright.groups > 0) sets.push_back({{&bright}, {}});
  if (sets.size() == 2) sets.push_back({{&dark, &bright}, {}});
  return sets;
}

void measure(UnsteadySet& set, const PlaneShape& shape, int threads) {
  std::vector<Histogram> histograms(static_cast<std::size_t>(bandCount(shape.height, threads)));
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    std::vector<std::int16_t> row(static_cast<std::size_t>(shape.width));
    for (std::int64_t y = band.first; y < band.last; ++y) {
      set.row(y, shape.width, row.data());
      histograms[static_cast<std::size_t>(band.index)].add(row);
    }
  });
  for (std::size_t i = 1; i < histograms.size(); ++i)
    histograms[0].join(histograms[i]);
  set.spread = histograms[0].spread();
}

void keep(PointPlaces& places, const std::function<bool(std::size_t)>& isKept) {
  PointPlaces kept;
  for (std::size_t i = 0; i < places.size(); ++i)
    if (isKept(i)) kept.push_back(places[i]);
  places = std::move(kept);
}

/// The samples of a row that depart far enough from their neighbours.
class DimRows {
 public:
  DimRows(const Plane& light, const PlaneShape& shape, const CountedColumns& counted, Spread spread)
      : rows_(light, shape), counted_(counted), spread_(spread), row_(static_cast<std::size_t>(shape.width)) {}

  void operator()(std::int64_t y, PointPlaces& places) {
    rows_.departures(y, row_.data());
    for (const ColumnRange& range : counted_(y)) {
      for (std::int64_t x = range.first; x < range.last; ++x)
        look(x, y, places);
    }
  }

 private:
  void look(std::int64_t x, std::int64_t y, PointPlaces& places) const {
    const double departure = row_[static_cast<std::size_t>(x)];
    if (std::abs(departure) <= std::max(pointThreshold * spread_.sigma, leastDim * lightQuanta)) return;
    const double evidence = std::abs(departure) / std::max(spread_.sigma, 1.0);
    places.push_back({x, y, evidence, departure / lightQuanta});
  }

  MirroredRows rows_;
  const CountedColumns& counted_;
  Spread spread_;
  std::vector<std::int16_t> row_;
};

}  // namespace

PointPlaces dimPlaces(const Plane& light, const PlaneShape& shape, const CountedColumns& counted, int threads) {
  const Spread spread = spreadOfDepartures(light, shape, counted, threads);
  return placesOfRows(shape, threads, [&]() -> RowPlaces { return DimRows(light, shape, counted, spread); });
}

PointPlaces warmPlaces(const Plane& warmth, const PlaneShape& shape, int threads) {
  if (warmth.empty()) return {};
  const std::vector<ColumnRange> whole{{0, shape.width}};
  const Spread spread = spreadOfPlane(
      warmth, shape, [&](std::int64_t) { return std::span<const ColumnRange>(whole); }, threads);
  if (spread.sigma <= 0) return {};
  return placesOfRows(shape, threads, [&]() -> RowPlaces {
    return [&](std::int64_t y, PointPlaces& places) {
      for (std::int64_t x = 0; x < shape.width; ++x) {
        const double z = (warmth[static_cast<std::size_t>(y * shape.width + x)] - spread.median) / spread.sigma;
        if (z > pointThreshold) places.push_back({x, y, z, 0});
      }
    };
  });
}

PointPlaces unsteadyPlaces(const UnsteadySums& dark, const UnsteadySums& bright, const PlaneShape& shape, int threads) {
  std::vector<UnsteadySet> sets = unsteadySets(dark, bright);
  for (UnsteadySet& set : sets)
    measure(set, shape, threads);
  return placesOfRows(shape, threads, [&]() -> RowPlaces {
    return [&, row = std::vector<std::int16_t>(static_cast<std::size_t>(shape.width)),
            best = std::vector<double>(static_cast<std::size_t>(shape.width))](std::int64_t y,
                                                                               PointPlaces& places) mutable {
      std::fill(best.begin(), best.end(), 0);
      for (const UnsteadySet& set : sets) {
        set.row(y, shape.width, row.data());
        for (std::size_t x = 0; x < row.size() && set.spread.sigma > 0; ++x)
          best[x] = std::max(best[x], (row[x] - set.spread.median) / set.spread.sigma);
      }
      for (std::size_t x = 0; x < best.size(); ++x)
        if (best[x] > pointThreshold) places.push_back({static_cast<std::int64_t>(x), y, best[x], 0});
    };
  });
}

PointVotes::PointVotes(const BlockGrid& grid, PointPlaces& dim, PointPlaces& warm, PointPlaces& unsteady)
    : grid_(grid),
      dim_(dim),
      warm_(warm),
      unsteady_(unsteady),
      dimDenied_(dim.size(), false),
      warmVotes_(warm.size()) {}

void PointVotes::add(const GroupModel& model, GroupStack& stack) {
  if (model.group.isDark) {
    ++darkGroups_;
    voteWarm(model, stack.median());
  } else {
    voteDim(model, stack.median());
  }
  voteUnsteady(model, stack.trimmedRoots());
}

void PointVotes::voteDim(const GroupModel& model, const Plane& median) {
  for (std::size_t i = 0; i < dim_.size(); ++i) {
    if (!model.votesAt(grid_, dim_[i].x, dim_[i].y)) continue;
    const double departure = departureAt(median, grid_.shape(), dim_[i].x, dim_[i].y);
    const double ratio = departure / (dim_[i].effect * lightQuanta);
    if (ratio <= agreeingPart) dimDenied_[i] = true;
  }
}

void PointVotes::voteWarm(const GroupModel& model, const Plane& median) {
  for (std::size_t i = 0; i < warm_.size(); ++i) {
    const double departure = departureAt(median, grid_.shape(), warm_[i].x, warm_[i].y);
    WarmVote& vote = warmVotes_[i];
    if (departure > warmInGroup * model.departureSigma) ++vote.groups;
    if (departure > loudInGroup * model.noiseSigma) vote.isLoud = true;
    vote.most = std::max(vote.most, departure / unitQuanta);
  }
}

void PointVotes::voteUnsteady(const GroupModel& model, const Plane& trimmedRoots) {
  for (PointPlace& place : unsteady_) {
    if (!model.votesAt(grid_, place.x, place.y)) continue;
    const double usual = modelAt(grid_, model.noise, place.x, place.y);
    const double root = trimmedRoots[static_cast<std::size_t>(place.y * grid_.shape().width + place.x)];
    if (usual > 0) place.effect = std::max(place.effect, std::pow(root / usual, 1.5));
  }
}

void PointVotes::finish() {
  const int wanted = std::min(darkGroups_, 2);
  for (std::size_t i = 0; i < warm_.size(); ++i)
    warm_[i].effect = warmVotes_[i].most;
  keep(warm_, [&](std::size_t i) { return warmVotes_[i].groups >= wanted && warmVotes_[i].isLoud; });
  keep(dim_, [&](std::size_t i) { return !dimDenied_[i]; });
  keep(unsteady_, [&](std::size_t i) { return unsteady_[i].effect > unsteadyRatio; });
}

}  // namespace tessaly::second
