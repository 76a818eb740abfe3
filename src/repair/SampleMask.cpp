#include "repair/SampleMask.h"

#include "platform/HugePages.h"

#include <algorithm>
#include <cassert>
#include <new>

namespace tessaly {
namespace {

/// The bits `first` to `last` of a word.
std::uint64_t bitRange(std::int64_t first, std::int64_t last) {
  const std::uint64_t upTo = last == 63 ? ~std::uint64_t{0} : (std::uint64_t{1} << (last + 1)) - 1;
  return upTo & ~((std::uint64_t{1} << first) - 1);
}

}  // namespace

SampleMask::SampleMask(std::int64_t width, std::int64_t height)
    : wordsPerRow_((width + 63) / 64), extents_(static_cast<std::size_t>(height)) {
  // calloc, because fresh zero pages cost nothing until they are touched; huge ones, because a defective column touches
  // every small one.
  const auto count = static_cast<std::size_t>(std::max<std::int64_t>(wordsPerRow_ * height, 1));
  const std::size_t bytes = wholeHugePages(count * sizeof(std::uint64_t));
  words_.reset(static_cast<std::uint64_t*>(std::calloc(bytes, 1)));
  if (words_ == nullptr) throw std::bad_alloc();
  preferHugePages({reinterpret_cast<std::byte*>(words_.get()), bytes});
}

void SampleMask::widen(Extent& extent, std::int64_t first, std::int64_t last) {
  if (first > last) return;
  const bool wasEmpty = extent.first > extent.last;
  extent = wasEmpty ? Extent{first, last} : Extent{std::min(extent.first, first), std::max(extent.last, last)};
}

void SampleMask::add(std::int64_t row, std::int64_t first, std::int64_t last) {
  assert(first >= 0 && last < wordsPerRow_ * 64 && row >= 0 && row < static_cast<std::int64_t>(extents_.size()));
  if (first > last) return;
  widen(extents_[static_cast<std::size_t>(row)], first >> 6, last >> 6);
  for (std::int64_t word = first >> 6; word <= last >> 6; ++word) {
    const std::int64_t from = std::max(first - word * 64, std::int64_t{0});
    const std::int64_t to = std::min(last - word * 64, std::int64_t{63});
    words_[wordIndex(word * 64, row)] |= bitRange(from, to);
  }
}

void SampleMask::subtract(const SampleMask& other) {
  for (std::int64_t row = 0; row < rows(); ++row)
    subtractRow(row, other);
}

void SampleMask::unite(const SampleMask& other) {
  for (std::int64_t row = 0; row < rows(); ++row)
    uniteRow(row, other);
}

std::int64_t SampleMask::count() const {
  std::int64_t total = 0;
  for (std::int64_t row = 0; row < rows(); ++row)
    total += countInRow(row);
  return total;
}

void SampleMask::clearRow(std::int64_t row) {
  Extent& extent = extents_[static_cast<std::size_t>(row)];
  for (std::int64_t word = extent.first; word <= extent.last; ++word)
    words_[wordIndex(word * 64, row)] = 0;
  extent = Extent();
}

void SampleMask::subtractRow(std::int64_t row, const SampleMask& other) {
  const Extent& ours = extents_[static_cast<std::size_t>(row)];
  const Extent& theirs = other.extents_[static_cast<std::size_t>(row)];
  const std::int64_t last = std::min(ours.last, theirs.last);
  for (std::int64_t word = std::max(ours.first, theirs.first); word <= last; ++word) {
    const std::size_t index = wordIndex(word * 64, row);
    words_[index] &= ~other.words_[index];
  }
}

void SampleMask::uniteRow(std::int64_t row, const SampleMask& other) {
  const Extent& theirs = other.extents_[static_cast<std::size_t>(row)];
  widen(extents_[static_cast<std::size_t>(row)], theirs.first, theirs.last);
  for (std::int64_t word = theirs.first; word <= theirs.last; ++word) {
    const std::size_t index = wordIndex(word * 64, row);
    words_[index] |= other.words_[index];
  }
}

std::int64_t SampleMask::countInRow(std::int64_t row) const {
  const Extent& extent = extents_[static_cast<std::size_t>(row)];
  std::int64_t total = 0;
  for (std::int64_t word = extent.first; word <= extent.last; ++word)
    total += __builtin_popcountll(words_[wordIndex(word * 64, row)]);
  return total;
}

std::vector<SampleRun> SampleMask::runs() const {
  std::vector<SampleRun> result;
  forEach([&](std::int64_t x, std::int64_t y) {
    const bool continues = !result.empty() && result.back().row == y && result.back().column + result.back().count == x;
    if (continues) {
      ++result.back().count;
    } else {
      result.push_back({y, x, 1});
    }
  });
  return result;
}

}  // namespace tessaly
