#include "tools/Scenes.h"

#include "tools/Deterministic.h"

#include <algorithm>
#include <array>

namespace tessaly::tools {
namespace {

/// The active area, to turn columns and rows into fractions of it.
struct Frame {
  double width = 1;
  double height = 1;

  [[nodiscard]] double across(std::int64_t x) const { return static_cast<double>(x) / width; }
  [[nodiscard]] double down(std::int64_t y) const { return static_cast<double>(y) / height; }

  /// 0 in the centre, 1 in the corners.
  [[nodiscard]] double squaredDistance(std::int64_t x, std::int64_t y) const {
    const double dx = 2 * across(x) - 1;
    const double dy = 2 * down(y) - 1;
    return (dx * dx + dy * dy) / 2;
  }
};

/// 0 before the edge, 1 behind it, with a lens's blur of some samples between.
double softEdge(double samplesBehind) {
  constexpr double blur = 8;
  const double part = std::clamp(samplesBehind / blur + 0.5, 0.0, 1.0);
  return part * part * (3 - 2 * part);
}

Scene evening(Frame frame) {
  return [frame](std::int64_t x, std::int64_t y, int colour) {
    constexpr std::array<double, 3> horizon{0.80, 0.55, 0.30};
    constexpr std::array<double, 3> zenith{0.12, 0.25, 0.55};
    const auto c = static_cast<std::size_t>(colour);
    const double height = 1 - frame.down(y);
    return (horizon[c] + (zenith[c] - horizon[c]) * height) * (1 - 0.2 * frame.across(x));
  };
}

Scene studio(Frame frame) {
  return [frame](std::int64_t x, std::int64_t y, int colour) {
    constexpr std::array<double, 3> paper{0.55, 0.50, 0.42};
    return paper[static_cast<std::size_t>(colour)] * (1 - 0.7 * frame.squaredDistance(x, y));
  };
}

Scene water(Frame frame) {
  return [frame](std::int64_t x, std::int64_t y, int colour) {
    const double period = 12 + 60 * frame.down(y);
    const double ripple = wave((static_cast<double>(y) + 0.2 * static_cast<double>(x)) / period);
    return 0.30 + 0.05 * colour + 0.12 * ripple + 0.04 * wave(static_cast<double>(x) / 90);
  };
}

Scene fabric() {
  return [](std::int64_t x, std::int64_t y, int colour) {
    const auto column = static_cast<double>(x);
    const auto row = static_cast<double>(y);
    const double weave = wave((column + 0.3 * row) / 40) * wave((row - 0.2 * column) / 52);
    return 0.40 - 0.06 * colour + 0.15 * weave;
  };
}

/// A window's glass: 0 on the wall, 1 between two soft edges 32 samples apart.
double window(double position) {
  return softEdge(position - 16) * (1 - softEdge(position - 48));
}

Scene houses(Frame frame) {
  return [frame](std::int64_t x, std::int64_t y, int colour) {
    const auto house = x / 192;
    const double roof = frame.height * (0.2 + 0.5 * uniform(static_cast<std::uint64_t>(house) + 77));
    const double wall = 0.15 + 0.5 * uniform(combinedKey(78, static_cast<std::uint64_t>(house * 3 + colour)));
    const double sky = 0.75 - 0.1 * (2 - colour);
    const double lit = 1 - 0.5 * window(static_cast<double>(x % 64)) * window(static_cast<double>(y % 80) - 12);
    const double behindRoof = softEdge(static_cast<double>(y) - roof + 0.15 * static_cast<double>(x % 192));
    return sky + (wall * lit - sky) * behindRoof;
  };
}

Scene foliage() {
  return [](std::int64_t x, std::int64_t y, int colour) {
    constexpr std::array<double, 3> leaf{0.30, 0.50, 0.18};
    double sum = 0;
    double weight = 0.5;
    double size = 64;
    for (std::uint64_t octave = 0; octave < 4; ++octave, weight /= 2, size /= 2) {
      sum += weight * smoothNoise(900 + octave, static_cast<double>(x) / size, static_cast<double>(y) / size);
    }
    return leaf[static_cast<std::size_t>(colour)] * (0.3 + 1.2 * sum);
  };
}

Frame frameOf(std::int64_t width, std::int64_t height) {
  return {static_cast<double>(width), static_cast<double>(height)};
}

}  // namespace

Scene darkness() {
  return [](std::int64_t, std::int64_t, int) { return 0.0; };
}

Scene flatField(std::int64_t width, std::int64_t height, double level) {
  return [frame = frameOf(width, height), level](std::int64_t x, std::int64_t y, int) {
    return level * (1 - frame.squaredDistance(x, y) / 6);
  };
}

std::vector<NamedScene> photographs(std::int64_t width, std::int64_t height) {
  const Frame frame = frameOf(width, height);
  return {{"evening-sky", evening(frame)}, {"studio-paper", studio(frame)},
          {"water", water(frame)},         {"fabric", fabric()},
          {"houses", houses(frame)},       {"foliage", foliage()}};
}

}  // namespace tessaly::tools
