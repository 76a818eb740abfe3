#include "dng/tiff/TIFFEntries.h"

#include "dng/tiff/TIFFTypes.h"

#include <array>
#include <cassert>
#include <span>
#include <vector>

namespace tessaly {
namespace {

constexpr std::int64_t entrySize = 12;
constexpr std::int64_t inlineBytes = 4;
constexpr std::int64_t maximumValues = 16'777'216;

TIFFField parseEntry(const TIFFBytes& bytes, std::span<const std::byte> entry, std::int64_t offset) {
  const auto number = [&](std::size_t at, std::size_t size) {
    return static_cast<std::int64_t>(bytes.integer(entry.subspan(at, size)));
  };
  TIFFField field;
  field.tag = number(0, 2);
  field.type = number(2, 2);
  field.count = number(4, 4);
  field.entry = offset;
  field.size = field.count * TIFFType::valueSize(field.type);
  field.location = field.size <= inlineBytes ? offset + 8 : number(8, 4);
  return field;
}

}  // namespace

bool hasKnownTypeAndCount(const TIFFField& field) {
  return TIFFType::valueSize(field.type) > 0 && field.count <= maximumValues;
}

void forEachEntry(const TIFFBytes& bytes, std::int64_t offset, std::int64_t count,
                  const std::function<void(const TIFFField&)>& visit) {
  assert(count <= maximumEntries);
  const std::span<const std::byte> view = bytes.view(offset + 2, entryBlockSize(count));
  // A copy, because a visitor that reads values moves the window.
  const std::vector<std::byte> block(view.begin(), view.end());
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t start = entrySize * i;
    visit(parseEntry(bytes, std::span(block).subspan(static_cast<std::size_t>(start), entrySize), offset + 2 + start));
  }
}

}  // namespace tessaly
