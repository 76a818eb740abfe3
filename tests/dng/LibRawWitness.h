// The samples of a raw image as LibRaw reads them: an independent witness for the decoder.
#pragma once

#include <libraw/libraw.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tessaly::tests {

struct WitnessedPlane {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::vector<std::uint16_t> samples;
};

/// Nothing where LibRaw does not decode this file to one sample per photosite.
[[nodiscard]] inline std::optional<WitnessedPlane> readWithLibRaw(const std::filesystem::path& path) {
  LibRaw library;
  if (library.open_file(path.c_str()) != LIBRAW_SUCCESS || library.unpack() != LIBRAW_SUCCESS) return std::nullopt;
  if (library.imgdata.rawdata.raw_image == nullptr) return std::nullopt;
  const libraw_image_sizes_t& sizes = library.imgdata.sizes;
  WitnessedPlane plane{sizes.raw_width, sizes.raw_height, {}};
  for (std::int64_t row = 0; row < plane.height; ++row) {
    const std::uint16_t* const start = library.imgdata.rawdata.raw_image + row * sizes.raw_pitch / 2;
    plane.samples.insert(plane.samples.end(), start, start + plane.width);
  }
  return plane;
}

}  // namespace tessaly::tests
