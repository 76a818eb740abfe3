#include "comparison/Material.h"

#include "dng/DNGReader.h"
#include "platform/AtomicFile.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <system_error>
#include <utility>

namespace tessaly::bench {
namespace {

constexpr std::size_t differentFrames = 6;
constexpr std::int64_t black = 256;
constexpr std::int64_t white = 4095;

/// Cheap, and the same on every machine.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed * 2654435761U + 12345U) {}

  /// From 0 to `limit` − 1.
  std::uint32_t below(std::uint32_t limit) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<std::uint32_t>((std::uint64_t{state_} * limit) >> 32U);
  }

 private:
  std::uint32_t state_;
};

std::size_t countOf(const ImageForm& form) {
  return static_cast<std::size_t>(form.width * form.height);
}

std::vector<std::uint16_t> frameSamples(const ImageForm& form, std::uint32_t number, bool isDark) {
  Noise noise(number);
  std::vector<std::uint16_t> samples(countOf(form));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::size_t signal = isDark ? 0 : 1500 + i % 2 * 400;
    samples[i] = static_cast<std::uint16_t>(signal + black + noise.below(8) + noise.below(isDark ? 2 : 24));
  }
  Noise places(77);  // hot photosites, the same in every frame
  for (int count = 0; count < 200; ++count)
    samples[places.below(static_cast<std::uint32_t>(samples.size()))] = static_cast<std::uint16_t>(white);
  return samples;
}

void writeFrame(const Path& path, const ImageForm& form, std::uint32_t number, bool isDark) {
  tools::DNGBuilder()
      .size(form.width, form.height)
      .bits(12)
      .samples(frameSamples(form, number, isDark))
      .black(black)
      .white(white)
      .exif(100, {{1, isDark ? 30 : 60}})
      .write(path);
}

void addDefects(CameraProfile& profile, std::int64_t pixels) {
  Noise noise(static_cast<std::uint32_t>(pixels));
  profile.pixels.reserve(static_cast<std::size_t>(pixels));
  for (std::int64_t count = 0; count < pixels; ++count) {
    DefectPixel pixel;
    pixel.x = noise.below(static_cast<std::uint32_t>(profile.rawWidth));
    pixel.y = noise.below(static_cast<std::uint32_t>(profile.rawHeight));
    profile.pixels.push_back(pixel);
  }
  for (std::int64_t column = 1; pixels > 0 && column <= 4; ++column) {
    DefectLine line;
    line.x = column * profile.rawWidth / 5;
    line.yEnd = profile.rawHeight - 1;
    profile.lines.push_back(line);
  }
}

}  // namespace

ImageForm imageOf(double megapixels, int bits) {
  const std::int64_t unit = std::max<std::int64_t>(std::llround(std::sqrt(megapixels * 1e6 / 6) / 2) * 2, 2);
  return {3 * unit, 2 * unit, bits};
}

Material::Material(const Path& parent) {
  std::string name = parent / "tessaly-compare-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), parent.string());
  folder_ = name;
}

Material::~Material() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Path Material::photograph(const std::string& name, const ImageForm& form) const {
  Noise noise(1);
  std::vector<std::uint16_t> samples(countOf(form));
  for (std::uint16_t& sample : samples)
    sample = static_cast<std::uint16_t>(noise.below(std::uint32_t{1} << static_cast<unsigned>(form.bits)));
  Path path = folder_ / name;
  tools::DNGBuilder()
      .size(form.width, form.height)
      .bits(form.bits)
      .samples(std::move(samples))
      .inSubIFD()
      .exif(100, {{1, 50}})
      .write(path);
  return path;
}

std::vector<Path> Material::frames(const std::string& name, const ImageForm& form, std::size_t count) const {
  std::filesystem::create_directory(folder_ / name);
  std::vector<Path> paths;
  paths.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const bool isDark = i % 2 == 1;
    const auto number = static_cast<std::uint32_t>(i % differentFrames);
    paths.push_back(folder_ / name / fmt::format("F{:03}.dng", i));
    if (i == number) {
      writeFrame(paths.back(), form, number, isDark);
    } else {
      std::filesystem::create_hard_link(paths[number], paths.back());
    }
  }
  return paths;
}

Path Material::profile(const std::string& name, const Path& photograph, std::int64_t pixels) const {
  CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(photograph));
  addDefects(profile, pixels);
  Path path = folder_ / name;
  replaceFileAtomically(path, encodeProfile(profile));
  return path;
}

void writeBadPixels(const Path& file, const Path& profile) {
  std::string lines;
  for (const DefectPixel& pixel : readProfile(profile).pixels)
    lines += fmt::format("{} {} 0\n", pixel.x, pixel.y);
  replaceFileAtomically(file, lines);
}

}  // namespace tessaly::bench
