// What a measured group says about the sensor: how bright it was, how much samples change from frame to frame, how much
// photosites differ, and how many of them depart by how much.
//
// Robust: medians over colours and places, so that defects change nothing.
#pragma once

#include "calibration/second/GroupStack.h"
#include "calibration/second/RobustSpread.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaly::second {

/// The variance of normal numbers of which samples of n show this median of variances (divided by n − 1).
[[nodiscard]] double varianceOfMedian(double medianVariance, std::size_t frames);

/// The variance of what is fixed, from the robust σ of departures (sample − median of eight neighbours) of the median
/// over n frames, each of this variance; never below 0.
[[nodiscard]] double fixedVariance(double departureSigma, double frameVariance, std::size_t frames);

/// How many values depart from the median by at least 1, √2, 2, … up to the last that any reaches; divided by
/// `quanta`, which are a unit.
[[nodiscard]] std::vector<StrengthCount> strengthCounts(const Histogram& departures, double quanta);

/// To be asked after the group is reduced and before its planes are used for something else. `unitsPerRaw` are the u
/// of a raw unit.
[[nodiscard]] SettingFigures settingFigures(const GroupModel& model, GroupStack& stack, const BlockGrid& grid,
                                            const Histogram& departures, double unitsPerRaw);

}  // namespace tessaly::second
