#include "dng/copy/DirectoryBuilder.h"

#include "dng/tiff/TIFFEntries.h"
#include "dng/tiff/TIFFTypes.h"

#include <algorithm>
#include <utility>

namespace tessaly {
namespace {

constexpr std::int64_t slotSize = 4;
constexpr std::size_t recordSize = 12;

std::array<std::byte, 4> slotOf(const TIFFBytes& source, const TIFFField& field) {
  std::array<std::byte, 4> slot{};
  const std::span<const std::byte> bytes = source.view(field.entry + 8, slotSize);
  std::copy(bytes.begin(), bytes.end(), slot.begin());
  return slot;
}

}  // namespace

void storeInteger(std::span<std::byte> into, std::int64_t value, bool littleEndian) {
  for (std::size_t i = 0; i < into.size(); ++i) {
    const std::size_t place = littleEndian ? i : into.size() - 1 - i;
    into[place] = static_cast<std::byte>(value >> (8 * i) & 0xFF);
  }
}

std::vector<std::byte> pointerRecord(std::int64_t type, std::int64_t value, bool littleEndian) {
  std::vector<std::byte> record(recordSize - 2);
  const std::span<std::byte> bytes(record);
  storeInteger(bytes.first(2), type, littleEndian);
  storeInteger(bytes.subspan(2, 4), 1, littleEndian);
  storeInteger(bytes.subspan(6, 4), value, littleEndian);
  return record;
}

std::int64_t DirectoryBuilder::Entry::outside() const {
  return movedFrom ? movedFrom->size : static_cast<std::int64_t>(value.size());
}

void DirectoryBuilder::carry(const TIFFBytes& source, const TIFFField& field) {
  entries_.push_back({field.tag, field.type, field.count, slotOf(source, field), {}, std::nullopt});
}

void DirectoryBuilder::carryWithValue(const TIFFBytes& source, const TIFFField& field) {
  carry(source, field);
  if (field.size > slotSize) entries_.back().movedFrom = field;
}

// A value that is shorter than the slot stands at its start, in either byte order.
void DirectoryBuilder::putInteger(std::int64_t tag, std::int64_t type, std::int64_t value) {
  Entry entry{tag, type, 1, {}, {}, std::nullopt};
  const auto size = static_cast<std::size_t>(TIFFType::valueSize(type));
  storeInteger(std::span(entry.slot).first(size), value, little_);
  put(std::move(entry));
}

void DirectoryBuilder::putRational(std::int64_t tag, std::int64_t numerator, std::int64_t denominator) {
  Entry entry{tag, TIFFType::rational, 1, {}, std::vector<std::byte>(8), std::nullopt};
  storeInteger(std::span(entry.value).first(4), numerator, little_);
  storeInteger(std::span(entry.value).last(4), denominator, little_);
  put(std::move(entry));
}

void DirectoryBuilder::put(Entry entry) {
  std::erase_if(entries_, [&](const Entry& old) { return old.tag == entry.tag; });
  entries_.push_back(std::move(entry));
}

bool DirectoryBuilder::has(std::int64_t tag) const {
  return std::any_of(entries_.begin(), entries_.end(), [tag](const Entry& entry) { return entry.tag == tag; });
}

std::int64_t DirectoryBuilder::blockLength() const {
  return 2 + entryBlockSize(static_cast<std::int64_t>(entries_.size()));
}

// At most a few thousand values of at most 134 MB each: far from the limits of 64 bits.
std::int64_t DirectoryBuilder::length() const {
  std::int64_t end = blockLength();
  for (const Entry& entry : sortedEntries()) {
    if (entry.outside() > 0) end = evenOffset(end) + entry.outside();
  }
  return end;
}

std::vector<DirectoryBuilder::Entry> DirectoryBuilder::sortedEntries() const {
  std::vector<Entry> sorted = entries_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
  return sorted;
}

DirectoryImage DirectoryBuilder::build(std::int64_t offset, std::int64_t nextDirectory) const {
  DirectoryImage image;
  std::vector<std::byte> block(static_cast<std::size_t>(blockLength()));
  std::span<std::byte> rest(block);
  storeInteger(rest.first(2), static_cast<std::int64_t>(entries_.size()), little_);
  rest = rest.subspan(2);
  std::int64_t end = offset + blockLength();
  for (Entry& entry : sortedEntries()) {
    if (entry.outside() > 0) {
      storeInteger(entry.slot, evenOffset(end), little_);
      if (entry.movedFrom) image.values.push_back({entry.movedFrom->location, evenOffset(end), entry.outside()});
      if (!entry.movedFrom) image.patches.push_back({evenOffset(end), entry.value});
      end = evenOffset(end) + entry.outside();
    }
    store(entry, rest.first(recordSize));
    rest = rest.subspan(recordSize);
  }
  storeInteger(rest, nextDirectory, little_);
  image.patches.insert(image.patches.begin(), FilePatch{offset, std::move(block)});
  return image;
}

void DirectoryBuilder::store(const Entry& entry, std::span<std::byte> record) const {
  storeInteger(record.first(2), entry.tag, little_);
  storeInteger(record.subspan(2, 2), entry.type, little_);
  storeInteger(record.subspan(4, 4), entry.count, little_);
  std::copy(entry.slot.begin(), entry.slot.end(), record.begin() + 8);
}

}  // namespace tessaly
