#include "tools/SampleTexture.h"

#include <cmath>

namespace tessaly::tools {
namespace {

constexpr std::size_t stripeRows = 32;
constexpr std::size_t grainRows = 2;  // the next sample of the same colour

double difference(std::uint16_t sample, std::uint16_t other) {
  return static_cast<double>(sample) - static_cast<double>(other);
}

}  // namespace

double remainingStripe(std::span<const std::uint16_t> samples, std::span<const std::uint16_t> scene,
                       const std::vector<bool>& where, std::size_t width) {
  const std::size_t blockRows = samples.size() / width / stripeRows;
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t block = 0; block < blockRows * width; ++block) {
    const std::size_t first = block / width * stripeRows * width + block % width;
    double offset = 0;
    std::size_t rows = 0;
    for (; rows < stripeRows && where[first + rows * width]; ++rows)
      offset += difference(samples[first + rows * width], scene[first + rows * width]);
    if (rows < stripeRows) continue;
    sum += std::abs(offset) / stripeRows;
    ++count;
  }
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

std::optional<double> relativeGrain(std::span<const std::uint16_t> samples, std::span<const std::uint16_t> scene,
                                    const std::vector<bool>& where, std::size_t width) {
  double ofSamples = 0;
  double ofScene = 0;
  for (std::size_t i = 0; i + grainRows * width < samples.size(); ++i) {
    const std::size_t below = i + grainRows * width;
    if (!where[i] || !where[below]) continue;
    const double sampleStep = difference(samples[i], samples[below]);
    const double sceneStep = difference(scene[i], scene[below]);
    ofSamples += sampleStep * sampleStep;
    ofScene += sceneStep * sceneStep;
  }
  if (ofScene == 0) return std::nullopt;
  return std::sqrt(ofSamples / ofScene);
}

}  // namespace tessaly::tools
