#include "dng/tiff/TIFFBytes.h"

#include "dng/DNGError.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cassert>

namespace tessaly {
namespace {

constexpr std::int64_t smallestFile = 8;             // the header
constexpr std::int64_t largestFile = 2'000'000'000;  // decimal, not 2^31
constexpr std::int64_t classicTIFF = 42;             // BigTIFF has 43
constexpr std::int64_t windowSize = 4096;            // what a small read brings along: a directory and its values

DNGError outsideFile(std::int64_t offset, std::int64_t length) {
  return DNGError::truncated(fmt::format("TIFF field at {}, length {}", offset, length));
}

void requireAcceptableSize(const InputFile& file) {
  const bool acceptable = file.isRegular() && file.size() >= smallestFile && file.size() <= largestFile;
  if (!acceptable) throw DNGError::invalid("DNG size limit (2 GB)");
}

}  // namespace

TIFFBytes::TIFFBytes(const std::filesystem::path& url) : file_(url) {
  requireAcceptableSize(file_);
  readHeader();
}

void TIFFBytes::readHeader() {
  std::array<std::byte, smallestFile> header{};
  // The file was long enough a moment ago; it may have shrunk since.
  if (file_.readAt(0, header) < header.size()) throw DNGError::truncated("TIFF header");
  const bool intel = header[0] == std::byte{'I'} && header[1] == std::byte{'I'};
  const bool motorola = header[0] == std::byte{'M'} && header[1] == std::byte{'M'};
  if (!intel && !motorola) throw DNGError::invalid("TIFF byte order");
  little_ = intel;
  if (integer(std::span(header).subspan(2, 2)) != classicTIFF) throw DNGError::unsupported("Classic TIFF required");
}

void TIFFBytes::check(std::int64_t offset, std::int64_t length) const {
  const bool inside = offset >= 0 && length >= 0 && offset <= file_.size() && file_.size() - offset >= length;
  if (!inside) throw outsideFile(offset, length);
}

std::span<const std::byte> TIFFBytes::view(std::int64_t offset, std::int64_t length) const {
  assert(length <= longestView);
  check(offset, length);
  const auto windowEnd = windowOffset_ + static_cast<std::int64_t>(window_.size());
  const bool inWindow = offset >= windowOffset_ && offset + length <= windowEnd;
  if (!inWindow) moveWindow(offset, length);
  return std::span(window_).subspan(static_cast<std::size_t>(offset - windowOffset_), static_cast<std::size_t>(length));
}

void TIFFBytes::moveWindow(std::int64_t offset, std::int64_t length) const {
  const std::int64_t wanted = std::min(std::max(length, windowSize), file_.size() - offset);
  window_.resize(static_cast<std::size_t>(wanted));
  windowOffset_ = offset;
  window_.resize(file_.readAt(offset, window_));
  if (static_cast<std::int64_t>(window_.size()) < length) throw outsideFile(offset, length);
}

std::int64_t TIFFBytes::uint(std::int64_t offset, int size) const {
  assert(size >= 1 && size <= 8);
  const std::uint64_t value = integer(view(offset, size));
  if (value > static_cast<std::uint64_t>(INT64_MAX)) throw DNGError::invalid("Integer overflow");
  return static_cast<std::int64_t>(value);
}

std::uint64_t TIFFBytes::integer(std::span<const std::byte> bytes) const {
  assert(bytes.size() <= 8);
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t mostSignificantFirst = little_ ? bytes.size() - 1 - i : i;
    value = value << 8U | std::to_integer<std::uint64_t>(bytes[mostSignificantFirst]);
  }
  return value;
}

}  // namespace tessaly
