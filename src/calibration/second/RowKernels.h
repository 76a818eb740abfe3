// The innermost loops of the second opinion: runs of samples of one row. Plain arrays in, plain arrays out; arrays of
// one call never overlap unless it says so.
//
// Stateless; different rows may be worked on at the same time.
#pragma once

#include <cstdint>
#include <vector>

namespace tessaly::second {

/// lightQuanta × ((raw − black) / model − 1), rounded, within ±limit. `model` counts from black.
void normalizeLight(const std::uint16_t* raw, const float* model, float black, std::int64_t count,
                    std::int16_t* target);

/// (raw − model) × scale, rounded, within ±limit. `model` counts from 0.
void normalizeDarkness(const std::uint16_t* raw, const float* model, float scale, std::int64_t count,
                       std::int16_t* target);

/// What the frames of a group say about a run of samples. `frames` are at least three rows; they are used up: the
/// first receives the median over frames, the second rootQuanta times the cube root of the variance over all frames,
/// the third the same of the trimmed variance, without the frame that is farthest from the median. Roots end at 32,767.
inline constexpr int rootQuanta = 128;
void reduceFrames(const std::vector<std::int16_t*>& frames, std::int64_t count);

/// roots[i] = ratioQuanta × roots[i] / model[i], at most 32,767; ratioQuanta where the model is not positive.
inline constexpr int ratioQuanta = 2048;
void rootRatios(std::int16_t* roots, const float* model, std::int64_t count);

/// A normal score from a root ratio: (ratio − median) × factor, in scoreQuanta a standard deviation.
inline constexpr int scoreQuanta = 64;
struct ScoreScale {
  float median = 0;
  float factor = 0;
};

/// sums += z(V) and worst = max(worst, z(V) − z(T)), within 16 bits.
struct UnsteadyRow {
  const std::int16_t* variance = nullptr;  ///< root ratios
  const std::int16_t* trimmed = nullptr;
  std::int16_t* sums = nullptr;
  std::int16_t* worst = nullptr;
};
void addUnsteady(const UnsteadyRow& row, ScoreScale variance, ScoreScale trimmed, std::int64_t count);

/// mean += share × (value − mean), rounded.
void blend(const std::int16_t* values, float share, std::int64_t count, std::int16_t* mean);

/// sums += value × factor, rounded, within 16 bits.
void addScaled(const std::int16_t* values, float factor, std::int64_t count, std::int16_t* sums);

/// A row and the rows of the next samples of the same phase above and below it.
struct PhaseRows {
  const std::int16_t* above = nullptr;
  const std::int16_t* row = nullptr;
  const std::int16_t* below = nullptr;
};

/// row − median of the eight neighbours of the same phase, which lie `step` away. All of x − step … x + step must
/// exist.
void departures(const PhaseRows& rows, std::int64_t step, std::int64_t count, std::int16_t* target);

/// row − median of the six samples 1, 2 and 3 steps to its left and right, which must exist.
void lineResiduals(const std::int16_t* row, std::int64_t step, std::int64_t count, std::int16_t* target);

/// sums += value within ±bound.
void addClipped(const std::int16_t* values, std::int16_t bound, std::int64_t count, std::int32_t* sums);

/// The median of eight, six whole numbers: the mean of the two middle ones, rounded down.
[[nodiscard]] int medianOfEight(const int (&values)[8]);
[[nodiscard]] int medianOfSix(const int (&values)[6]);

}  // namespace tessaly::second
