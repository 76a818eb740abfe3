#include "dng/copy/StretchVerifier.h"

#include "dng/DNGError.h"
#include "dng/copy/BytePart.h"
#include "dng/samples/StoredCode.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <iterator>
#include <utility>

namespace tessaly {
namespace {

// Two of them stay in the second-level cache.
constexpr std::int64_t comparedAtOnce = std::int64_t{256} * 1024;

// Whatever a step of reading the copy throws leaves with the copy's name.
template <typename Step>
auto readingTheCopy(const std::filesystem::path& copy, Step step) {
  try {
    return step();
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, copy);
  }
}

}  // namespace

StretchVerifier::StretchVerifier(std::filesystem::path copy, const SourceImage& source, const CopyPlan& plan)
    : path_(std::move(copy)),
      copy_(readingTheCopy(path_, [this] { return InputFile(path_); })),
      plan_(source, plan),
      format_(SampleFormat::of(source.metadata())) {
  const auto size = static_cast<std::size_t>(std::min(plan_.length(), comparedAtOnce));
  planned_.resize(size);
  found_.resize(size);
}

// Tiles are written in turns, so their patches do not come by place.
bool StretchVerifier::matches(CopiedStretch stretch) {
  std::sort(stretch.patches.begin(), stretch.patches.end());
  Patch patch = stretch.patches.begin();
  while (matches_ && position_ < stretch.end) {
    const std::int64_t end = endOfSlice(patch, stretch.patches.end(), stretch.end);
    plan_.read(position_, part(planned_, 0, end - position_));
    patch = apply(patch, stretch.patches.end(), end);
    matches_ = foundIsPlanned(end - position_);
    position_ = end;
  }
  return matches_;
}

// Never inside a patch; neighbours may share a byte.
std::int64_t StretchVerifier::endOfSlice(Patch patch, Patch last, std::int64_t endOfStretch) const {
  std::int64_t end = std::min(position_ + comparedAtOnce, endOfStretch);
  Patch next = std::partition_point(patch, last, [&](const StoredPatch& at) { return endOf(at) <= end; });
  if (next != last) end = std::min(end, next->bit() / 8);
  for (; next != patch && endOf(*std::prev(next)) > end; --next)
    end = std::prev(next)->bit() / 8;
  assert(end > position_);
  return end;
}

StretchVerifier::Patch StretchVerifier::apply(Patch patch, Patch last, std::int64_t end) {
  for (; patch != last && patch->bit() < 8 * end; ++patch)
    storeCode(format_, planned_.data(), patch->bit() - 8 * position_, patch->code());
  return patch;
}

bool StretchVerifier::foundIsPlanned(std::int64_t length) {
  const std::span<std::byte> found = part(found_, 0, length);
  const std::size_t got = readingTheCopy(path_, [&] { return copy_.readAt(position_, found); });
  return got == found.size() && std::memcmp(found.data(), planned_.data(), found.size()) == 0;
}

// Behind the last byte that holds a bit of the patch.
std::int64_t StretchVerifier::endOf(const StoredPatch& patch) const {
  return (patch.bit() + format_.bits + 7) / 8;
}

}  // namespace tessaly
