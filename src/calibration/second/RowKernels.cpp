#include "calibration/second/RowKernels.h"

#include "calibration/VectorClones.h"
#include "calibration/second/Planes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

namespace tessaly::second {
namespace {

using Value = std::int16_t;

constexpr float largestRoot = 32767;
constexpr std::int64_t chunk = 256;  // samples of which all frames lie in the first-level cache

// Half is added above zero, where truncation rounds down. By value: std::clamp's references cost vector code.
inline Value rounded(float value, float bound) {
  const float notAbove = value < bound ? value : bound;
  const float inside = notAbove > -bound ? notAbove : -bound;
  return static_cast<Value>(static_cast<std::int32_t>(inside + 32768.5F) - 32768);
}

inline Value saturated(std::int32_t value) {
  return static_cast<Value>(std::min(std::max(value, -32767), 32767));
}

template <typename T>
inline void order(T& low, T& high) {
  const T least = std::min(low, high);
  high = std::max(low, high);
  low = least;
}

template <typename T>
inline void sortThree(T& a, T& b, T& c) {
  order(a, b);
  order(b, c);
  order(a, b);
}

template <typename T>
inline void sortFour(T& a, T& b, T& c, T& d) {
  order(a, b);
  order(c, d);
  order(a, c);
  order(b, d);
  order(b, c);
}

// Of two sorted halves: the k-th least of all is the least, over all ways to take k from both, of the larger last one.
template <typename T>
// NOLINTNEXTLINE(readability-function-size): a network takes its values in registers
inline std::pair<T, T> middleOfEight(T a, T b, T c, T d, T e, T f, T g, T h) {
  sortFour(a, b, c, d);
  sortFour(e, f, g, h);
  const T lower = std::min({d, std::max(c, e), std::max(b, f), std::max(a, g), h});
  const T upper = std::max({a, std::min(b, h), std::min(c, g), std::min(d, f), e});
  return {lower, upper};
}

template <typename T>
// NOLINTNEXTLINE(readability-function-size): a network takes its values in registers
inline std::pair<T, T> middleOfSix(T a, T b, T c, T d, T e, T f) {
  sortThree(a, b, c);
  sortThree(d, e, f);
  const T lower = std::min(std::min(c, f), std::min(std::max(b, d), std::max(a, e)));
  const T upper = std::max(std::max(a, d), std::max(std::min(b, f), std::min(c, e)));
  return {lower, upper};
}

// A first guess from the exponent, a third of it, then two steps of Halley's method: right to 1e-6.
inline float cubeRoot(float value) {
  const float x = value + 1e-6F;
  const auto bits = static_cast<float>(std::bit_cast<std::int32_t>(x));
  float root = std::bit_cast<float>(static_cast<std::int32_t>(bits * (1.0F / 3)) + 709921077);
  for (int step = 0; step < 2; ++step) {
    const float cube = root * root * root;
    root = root * (cube + 2 * x) / (2 * cube + x);
  }
  return root;
}

inline Value quantizedRoot(float variance) {
  const float root = cubeRoot(variance > 0 ? variance : 0) * rootQuanta + 0.5F;
  return static_cast<Value>(static_cast<std::int32_t>(root < largestRoot ? root : largestRoot));
}

TESSALY_VECTOR_CLONES
void orderRows(Value* __restrict low, Value* __restrict high, std::int64_t count) {
  for (std::int64_t x = 0; x < count; ++x) {
    const Value a = low[x];
    const Value b = high[x];
    low[x] = a < b ? a : b;
    high[x] = a < b ? b : a;
  }
}

/// The sums of one chunk.
struct Moments {
  std::array<Value, chunk> median;
  std::array<float, chunk> sum;
  std::array<float, chunk> squares;
  std::array<float, chunk> farthest;
};

TESSALY_VECTOR_CLONES
void medians(const Value* __restrict lower, const Value* __restrict upper, std::int64_t count,
             Value* __restrict median) {
  for (std::int64_t x = 0; x < count; ++x)
    median[x] = static_cast<Value>((lower[x] + upper[x]) >> 1);
}

TESSALY_VECTOR_CLONES
void addMoments(const Value* __restrict values, const Value* __restrict median, std::int64_t count,
                float* __restrict sum, float* __restrict squares) {
  for (std::int64_t x = 0; x < count; ++x) {
    const auto difference = static_cast<float>(static_cast<std::int32_t>(values[x]) - median[x]);
    sum[x] += difference;
    squares[x] += difference * difference;
  }
}

TESSALY_VECTOR_CLONES
void findFarthest(const Value* __restrict least, const Value* __restrict most, const Value* __restrict median,
                  std::int64_t count, float* __restrict farthest) {
  for (std::int64_t x = 0; x < count; ++x) {
    const std::int32_t below = least[x] - median[x];
    const std::int32_t above = most[x] - median[x];
    farthest[x] = static_cast<float>(above > -below ? above : below);
  }
}

// NOLINTNEXTLINE(readability-function-size): a kernel takes its rows one by one, so that none is taken to overlap
TESSALY_VECTOR_CLONES void roots(const float* __restrict sum, const float* __restrict squares,
                                 const float* __restrict farthest, std::int64_t count, float frames,
                                 Value* __restrict variance, Value* __restrict trimmed) {
  const float perFrame = 1 / frames;
  const float perDegree = 1 / (frames - 1);
  const float perTrimmedDegree = 1 / (frames - 2);
  for (std::int64_t x = 0; x < count; ++x) {
    variance[x] = quantizedRoot((squares[x] - sum[x] * sum[x] * perFrame) * perDegree);
    const float rest = sum[x] - farthest[x];
    const float restSquares = squares[x] - farthest[x] * farthest[x];
    trimmed[x] = quantizedRoot((restSquares - rest * rest * perDegree) * perTrimmedDegree);
  }
}

// Odd-even transposition: every comparison is of neighbours and the same for all samples.
void sortFrames(const std::vector<Value*>& frames, std::int64_t start, std::int64_t count) {
  for (std::size_t pass = 0; pass < frames.size(); ++pass) {
    for (std::size_t i = pass % 2; i + 1 < frames.size(); i += 2)
      orderRows(frames[i] + start, frames[i + 1] + start, count);
  }
}

void reduceChunk(const std::vector<Value*>& frames, std::int64_t start, std::int64_t count) {
  sortFrames(frames, start, count);
  const std::size_t n = frames.size();
  Moments moments;
  moments.sum.fill(0);
  moments.squares.fill(0);
  medians(frames[(n - 1) / 2] + start, frames[n / 2] + start, count, moments.median.data());
  for (const Value* frame : frames)
    addMoments(frame + start, moments.median.data(), count, moments.sum.data(), moments.squares.data());
  findFarthest(frames.front() + start, frames.back() + start, moments.median.data(), count, moments.farthest.data());
  roots(moments.sum.data(), moments.squares.data(), moments.farthest.data(), count, static_cast<float>(n),
        frames[1] + start, frames[2] + start);
  std::copy_n(moments.median.begin(), count, frames[0] + start);
}

}  // namespace

TESSALY_VECTOR_CLONES
void normalizeLight(const std::uint16_t* __restrict raw, const float* __restrict model, float black, std::int64_t count,
                    std::int16_t* __restrict target) {
  for (std::int64_t x = 0; x < count; ++x) {
    const float level = model[x] > 1 ? model[x] : 1;
    const float light = static_cast<float>(raw[x]) - black;
    target[x] = rounded((light / level - 1) * lightQuanta, limit);
  }
}

TESSALY_VECTOR_CLONES
void normalizeDarkness(const std::uint16_t* __restrict raw, const float* __restrict model, float scale,
                       std::int64_t count, std::int16_t* __restrict target) {
  for (std::int64_t x = 0; x < count; ++x)
    target[x] = rounded((static_cast<float>(raw[x]) - model[x]) * scale, limit);
}

void reduceFrames(const std::vector<std::int16_t*>& frames, std::int64_t count) {
  for (std::int64_t start = 0; start < count; start += chunk)
    reduceChunk(frames, start, std::min(chunk, count - start));
}

TESSALY_VECTOR_CLONES
void rootRatios(std::int16_t* __restrict roots, const float* __restrict model, std::int64_t count) {
  for (std::int64_t x = 0; x < count; ++x) {
    const float divisor = model[x] > 0 ? model[x] : 1;
    const float ratio = model[x] > 0 ? static_cast<float>(roots[x]) / divisor * ratioQuanta : ratioQuanta;
    roots[x] = static_cast<Value>(static_cast<std::int32_t>(ratio < 32767 ? ratio + 0.5F : 32767));
  }
}

namespace {

// NOLINTNEXTLINE(readability-function-size): a kernel takes its rows one by one, so that none is taken to overlap
TESSALY_VECTOR_CLONES void addScores(const Value* __restrict variance, const Value* __restrict trimmed,
                                     ScoreScale first, ScoreScale second, std::int64_t count, Value* __restrict sums,
                                     Value* __restrict worst) {
  for (std::int64_t x = 0; x < count; ++x) {
    const float ofAll = (static_cast<float>(variance[x]) - first.median) * first.factor;
    const float ofTrimmed = (static_cast<float>(trimmed[x]) - second.median) * second.factor;
    const Value score = rounded(ofAll, 32000);
    const Value difference = rounded(ofAll - ofTrimmed, 32000);
    sums[x] = saturated(sums[x] + score);
    worst[x] = worst[x] > difference ? worst[x] : difference;
  }
}

}  // namespace

void addUnsteady(const UnsteadyRow& row, ScoreScale variance, ScoreScale trimmed, std::int64_t count) {
  addScores(row.variance, row.trimmed, variance, trimmed, count, row.sums, row.worst);
}

TESSALY_VECTOR_CLONES
void blend(const std::int16_t* __restrict values, float share, std::int64_t count, std::int16_t* __restrict mean) {
  for (std::int64_t x = 0; x < count; ++x) {
    const auto old = static_cast<float>(mean[x]);
    mean[x] = rounded(old + share * (static_cast<float>(values[x]) - old), 32000);
  }
}

TESSALY_VECTOR_CLONES
void addScaled(const std::int16_t* __restrict values, float factor, std::int64_t count, std::int16_t* __restrict sums) {
  for (std::int64_t x = 0; x < count; ++x)
    sums[x] = saturated(sums[x] + rounded(static_cast<float>(values[x]) * factor, 32000));
}

TESSALY_VECTOR_CLONES
void departures(const PhaseRows& rows, std::int64_t step, std::int64_t count, std::int16_t* __restrict target) {
  const Value* __restrict up = rows.above;
  const Value* __restrict row = rows.row;
  const Value* __restrict down = rows.below;
  for (std::int64_t x = 0; x < count; ++x) {
    const auto [lower, upper] = middleOfEight(up[x - step], up[x], up[x + step], row[x - step], row[x + step],
                                              down[x - step], down[x], down[x + step]);
    target[x] = static_cast<Value>(row[x] - static_cast<Value>((lower + upper) >> 1));
  }
}

TESSALY_VECTOR_CLONES
void lineResiduals(const std::int16_t* __restrict row, std::int64_t step, std::int64_t count,
                   std::int16_t* __restrict target) {
  for (std::int64_t x = 0; x < count; ++x) {
    const auto [lower, upper] = middleOfSix(row[x - 3 * step], row[x - 2 * step], row[x - step], row[x + step],
                                            row[x + 2 * step], row[x + 3 * step]);
    target[x] = static_cast<Value>(row[x] - static_cast<Value>((lower + upper) >> 1));
  }
}

TESSALY_VECTOR_CLONES
void addClipped(const std::int16_t* __restrict values, std::int16_t bound, std::int64_t count,
                std::int32_t* __restrict sums) {
  const auto least = static_cast<Value>(-bound);
  for (std::int64_t x = 0; x < count; ++x) {
    const Value notAbove = values[x] < bound ? values[x] : bound;
    sums[x] += notAbove > least ? notAbove : least;
  }
}

int medianOfEight(const int (&v)[8]) {
  const auto [lower, upper] = middleOfEight(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
  return (lower + upper) >> 1;
}

int medianOfSix(const int (&v)[6]) {
  const auto [lower, upper] = middleOfSix(v[0], v[1], v[2], v[3], v[4], v[5]);
  return (lower + upper) >> 1;
}

}  // namespace tessaly::second
