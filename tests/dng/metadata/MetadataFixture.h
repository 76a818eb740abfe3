// Reads the metadata of what a builder makes, or gives the reason why it is refused.
#pragma once

#include "dng/DNGReader.h"
#include "dng/metadata/Refusal.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace tessaly::tests {

using tools::DNGBuilder;
using tools::TIFFValues;

inline TIFFValues bytes(std::initializer_list<std::int64_t> numbers) {
  return {1, numbers};
}
inline TIFFValues shorts(std::initializer_list<std::int64_t> numbers) {
  return {3, numbers};
}
inline TIFFValues longs(std::initializer_list<std::int64_t> numbers) {
  return {4, numbers};
}
inline TIFFValues rationals(std::initializer_list<std::int64_t> pairs) {
  return {5, pairs};
}
inline TIFFValues signedRationals(std::initializer_list<std::int64_t> pairs) {
  return {10, pairs};
}
inline TIFFValues floats(std::initializer_list<std::int64_t> patterns) {
  return {11, patterns};
}

class MetadataFixture : public testing::Test {
 protected:
  /// `fileSize` makes the file longer, with a hole.
  [[nodiscard]] DNGMetadata read(const DNGBuilder& builder, std::int64_t fileSize = 0) const {
    builder.write(path());
    if (fileSize > 0) std::filesystem::resize_file(path(), static_cast<std::uintmax_t>(fileSize));
    return DNGReader::readMetadata(path());
  }

  [[nodiscard]] std::string refusal(const DNGBuilder& builder, std::int64_t fileSize = 0) const {
    return refusalOf([&] { return read(builder, fileSize); });
  }

  [[nodiscard]] std::filesystem::path path() const { return folder_ / "a.dng"; }

  TemporaryFolder folder_;
};

}  // namespace tessaly::tests
