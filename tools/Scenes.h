// What stands before the simulated camera: light as a fraction of what saturates the most sensitive photosite, for each
// position of the active area and each colour.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tessaly::tools {

/// Colours are 0 red, 1 green, 2 blue. A scene is called from several threads.
using Scene = std::function<double(std::int64_t x, std::int64_t y, int colour)>;

struct NamedScene {
  std::string name;  ///< fit for a file name
  Scene scene;
};

/// The lens cap is on.
[[nodiscard]] Scene darkness();

/// An evenly lit wall, a sixth darker in the corners of an active area of that size.
[[nodiscard]] Scene flatField(std::int64_t width, std::int64_t height, double level);

/// Photographs for an active area of that size: smooth ones first, then textured ones.
[[nodiscard]] std::vector<NamedScene> photographs(std::int64_t width, std::int64_t height);

}  // namespace tessaly::tools
