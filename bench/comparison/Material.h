// The files that are compared over: photographs, calibration frames and profiles, made in a folder of their own that is
// removed at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::bench {

using Path = std::filesystem::path;

struct ImageForm {
  std::int64_t width = 6000;
  std::int64_t height = 4000;
  int bits = 16;
};

/// About this many megapixels, three to two.
[[nodiscard]] ImageForm imageOf(double megapixels, int bits);

class Material {
 public:
  /// A new folder inside `parent`.
  explicit Material(const Path& parent);
  Material(const Material&) = delete;
  Material& operator=(const Material&) = delete;
  ~Material();

  [[nodiscard]] Path operator/(const std::string& name) const { return folder_ / name; }

  /// A photograph of noise with all bits in use.
  [[nodiscard]] Path photograph(const std::string& name, const ImageForm& form) const;

  /// A folder of so many 12-bit frames, every second one dark. Six files are different, the others are links to them.
  [[nodiscard]] std::vector<Path> frames(const std::string& name, const ImageForm& form, std::size_t count) const;

  /// A profile for this photograph with so many pixels at random and, when there are any, four columns.
  [[nodiscard]] Path profile(const std::string& name, const Path& photograph, std::int64_t pixels) const;

 private:
  Path folder_;
};

/// The first pixels of such a profile in the form that dcraw reads: column, row, time.
void writeBadPixels(const Path& file, const Path& profile);

}  // namespace tessaly::bench
