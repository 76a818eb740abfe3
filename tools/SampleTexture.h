// What a repair leaves to be seen of a defect, besides its distance from the undamaged scene: stripes, and too much or
// too little grain. Planes are rows of the same width; `where` says which samples are meant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessaly::tools {

/// The mean of |mean over 32 rows of a column of samples − scene|, over all 32 rows of a column that are meant as a
/// whole; 0 without any. A random error averages out, a stripe stays.
[[nodiscard]] double remainingStripe(std::span<const std::uint16_t> samples, std::span<const std::uint16_t> scene,
                                     const std::vector<bool>& where, std::size_t width);

/// The root mean square difference of samples two rows apart, as a multiple of the scene's; nothing without such pairs,
/// or where the scene has no grain.
[[nodiscard]] std::optional<double> relativeGrain(std::span<const std::uint16_t> samples,
                                                  std::span<const std::uint16_t> scene, const std::vector<bool>& where,
                                                  std::size_t width);

}  // namespace tessaly::tools
