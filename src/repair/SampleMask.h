// A set of samples of a raw plane, one bit a sample.
//
// Memory comes zeroed from the system and only the words that are set are ever touched, so that a set of a few thousand
// samples of a 24-megapixel plane costs a few thousand words, not three megabytes. Concurrent reading is safe.
#pragma once

#include "dng/RawPlane.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace tessaly {

class SampleMask {
 public:
  /// An empty set over `width` × `height` samples. Throws std::bad_alloc.
  SampleMask(std::int64_t width, std::int64_t height);

  /// Adds the columns `first` to `last`, inclusive, of a row. All must lie in the plane.
  void add(std::int64_t row, std::int64_t first, std::int64_t last);

  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const {
    return ((words_[wordIndex(x, y)] >> (x & 63)) & 1) != 0;
  }

  /// Removes the samples that `other`, a set over the same plane, contains.
  void subtract(const SampleMask& other);

  /// Adds the samples that `other`, a set over the same plane, contains.
  void unite(const SampleMask& other);

  [[nodiscard]] std::int64_t count() const;

  // The same for one row; `other` has the same rows.
  void clearRow(std::int64_t row);
  void subtractRow(std::int64_t row, const SampleMask& other);
  void uniteRow(std::int64_t row, const SampleMask& other);
  [[nodiscard]] std::int64_t countInRow(std::int64_t row) const;

  /// The samples as runs, by row, then column; adjacent samples of a row are one run.
  [[nodiscard]] std::vector<SampleRun> runs() const;

  /// Calls visit(x, y) for every sample, by row, then column.
  template <typename Visit>
  void forEach(Visit visit) const;

  /// Calls visit(x) for every sample of a row, from left to right.
  template <typename Visit>
  void forEachInRow(std::int64_t row, Visit visit) const;

 private:
  /// The words of a row that may hold bits; empty when first > last.
  struct Extent {
    std::int64_t first = 0;
    std::int64_t last = -1;
  };

  struct Release {
    void operator()(std::uint64_t* words) const { std::free(words); }
  };

  [[nodiscard]] std::size_t wordIndex(std::int64_t x, std::int64_t y) const {
    return static_cast<std::size_t>(y * wordsPerRow_ + (x >> 6));
  }
  [[nodiscard]] std::int64_t rows() const { return static_cast<std::int64_t>(extents_.size()); }
  void widen(Extent& extent, std::int64_t first, std::int64_t last);

  std::int64_t wordsPerRow_;
  std::vector<Extent> extents_;  ///< by row
  std::unique_ptr<std::uint64_t[], Release> words_;
};

template <typename Visit>
void SampleMask::forEach(Visit visit) const {
  for (std::int64_t y = 0; y < rows(); ++y)
    forEachInRow(y, [&](std::int64_t x) { visit(x, y); });
}

template <typename Visit>
void SampleMask::forEachInRow(std::int64_t row, Visit visit) const {
  const Extent& extent = extents_[static_cast<std::size_t>(row)];
  for (std::int64_t word = extent.first; word <= extent.last; ++word) {
    for (std::uint64_t bits = words_[wordIndex(word * 64, row)]; bits != 0; bits &= bits - 1)
      visit(word * 64 + __builtin_ctzll(bits));
  }
}

}  // namespace tessaly
