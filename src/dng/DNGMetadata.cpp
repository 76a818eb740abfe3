#include "dng/DNGMetadata.h"

#include <cassert>
#include <tuple>

namespace tessaly {
namespace {

std::int64_t nonNegativeModulo(std::int64_t value, std::int64_t modulus) {
  const std::int64_t remainder = value % modulus;
  return remainder < 0 ? remainder + modulus : remainder;
}

std::uint8_t colour(const CFALayout& layout, std::int64_t x, std::int64_t y) {
  const std::int64_t row = nonNegativeModulo(y, layout.height);
  const std::int64_t column = nonNegativeModulo(x, layout.width);
  return layout.pattern[static_cast<std::size_t>(row * layout.width + column)];
}

auto geometry(const DNGMetadata& of) {
  return std::tie(of.model, of.cameraSerial, of.rawWidth, of.rawHeight, of.activeX, of.activeY, of.activeWidth,
                  of.activeHeight, of.bitsPerSample, of.compression, of.samplesPerPixel, of.photometricInterpretation,
                  of.packing, of.cfaLayout);
}

// Of the encodings only the active area counts: the same mode may well place its strips elsewhere.
bool haveSameActiveArea(const std::optional<DNGSourceEncoding>& left, const std::optional<DNGSourceEncoding>& right) {
  if (!left || !right) return left.has_value() == right.has_value();
  return left->activeArea == right->activeArea;
}

}  // namespace

bool CFALayout::matches(std::int64_t x, std::int64_t y, std::int64_t targetX, std::int64_t targetY) const {
  assert(width > 0 && height > 0);
  return colour(*this, x, y) == colour(*this, targetX, targetY);
}

bool DNGMetadata::isGeometryCompatible(const DNGMetadata& other) const {
  return geometry(*this) == geometry(other) && haveSameActiveArea(sourceEncoding, other.sourceEncoding);
}

}  // namespace tessaly
