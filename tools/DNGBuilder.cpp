#include "tools/DNGBuilder.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace tessaly::tools {
namespace {

constexpr int typeByte = 1;
constexpr int typeShort = 3;
constexpr int typeLong = 4;
constexpr int typeRational = 5;
constexpr int typeUndefined = 7;
constexpr int typeSignedRational = 10;

constexpr int tagStripOffsets = 273;
constexpr int tagTileOffsets = 324;
constexpr int tagCFARepeatPatternDim = 33421;
constexpr int tagCFAPattern = 33422;
constexpr int tagPhotometric = 262;
constexpr int tagExifIFD = 34665;

constexpr std::int64_t headerBytes = 8;
constexpr std::int64_t previewWidth = 4;
constexpr std::int64_t previewHeight = 2;
constexpr std::int64_t previewBytes = 3 * previewWidth * previewHeight;

/// SHORT where the number fits, as cameras write it.
TIFFValues shortOrLong(std::int64_t number) {
  return {number <= 65535 ? typeShort : typeLong, {number}};
}

TIFFValues shorts(const std::vector<std::uint16_t>& numbers) {
  return {typeShort, {numbers.begin(), numbers.end()}};
}

template <std::size_t count>
TIFFValues tenThousandths(int type, const std::array<double, count>& numbers) {
  TIFFValues values{type, {}};
  for (const double number : numbers)
    values.numbers.insert(values.numbers.end(), {std::llround(number * 10000), 10000});
  return values;
}

std::int64_t colourNumber(char letter) {
  const std::size_t colour = std::string("RGB").find(letter);
  if (colour == std::string::npos) throw std::invalid_argument("CFA colours are R, G and B");
  return static_cast<std::int64_t>(colour);
}

TIFFEntries previewEntries(std::int64_t offset) {
  return {{254, {typeLong, {1}}},
          {256, {typeLong, {previewWidth}}},
          {257, {typeLong, {previewHeight}}},
          {258, {typeShort, {8, 8, 8}}},
          {259, {typeShort, {1}}},
          {262, {typeShort, {2}}},
          {tagStripOffsets, {typeLong, {offset}}},
          {277, {typeShort, {3}}},
          {278, {typeLong, {previewHeight}}},
          {279, {typeLong, {previewBytes}}},
          {284, {typeShort, {1}}}};
}

void apply(TIFFEntries& entries, const TIFFEntries& changes, const std::set<int>& without) {
  for (const auto& [tag, values] : changes)
    entries[tag] = values;
  for (const int tag : without)
    entries.erase(tag);
}

}  // namespace

DNGBuilder& DNGBuilder::littleEndian() {
  littleEndian_ = true;
  return *this;
}

DNGBuilder& DNGBuilder::bigEndian() {
  littleEndian_ = false;
  return *this;
}

DNGBuilder& DNGBuilder::size(std::int64_t width, std::int64_t height) {
  layout_.width = width;
  layout_.height = height;
  return *this;
}

DNGBuilder& DNGBuilder::bits(int bitsPerSample) {
  layout_.bits = bitsPerSample;
  return *this;
}

DNGBuilder& DNGBuilder::fillOrder(int order) {
  layout_.fillOrder = order;
  return rawTag(266, {typeShort, {order}});
}

DNGBuilder& DNGBuilder::strips(std::int64_t rowsPerStrip) {
  if (rowsPerStrip < 1) throw std::invalid_argument("A strip has at least one row");
  layout_.tiled = false;
  rowsPerStrip_ = rowsPerStrip;
  return *this;
}

DNGBuilder& DNGBuilder::tiles(std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1) throw std::invalid_argument("A tile has at least one sample");
  layout_.tiled = true;
  layout_.segmentWidth = width;
  layout_.segmentHeight = height;
  return *this;
}

DNGBuilder& DNGBuilder::cfa(const std::string& colours) {
  if (colours.size() != 4) throw std::invalid_argument("A CFA cell has four colours");
  TIFFValues pattern{typeByte, {}};
  for (const char letter : colours)
    pattern.numbers.push_back(colourNumber(letter));
  rawTag(tagPhotometric, {typeShort, {32803}});
  rawTag(tagCFARepeatPatternDim, {typeShort, {2, 2}});
  return rawTag(tagCFAPattern, pattern);
}

DNGBuilder& DNGBuilder::linear(std::int64_t photometric) {
  withoutRawTag(tagCFARepeatPatternDim);
  withoutRawTag(tagCFAPattern);
  return rawTag(tagPhotometric, {typeShort, {photometric}});
}

DNGBuilder& DNGBuilder::samples(std::vector<std::uint16_t> values) {
  samples_ = std::move(values);
  return *this;
}

DNGBuilder& DNGBuilder::linearization(const std::vector<std::uint16_t>& table) {
  return rawTag(50712, shorts(table));
}

DNGBuilder& DNGBuilder::black(std::int64_t level) {
  return rawTag(50714, shortOrLong(level));
}

DNGBuilder& DNGBuilder::white(std::int64_t level) {
  return rawTag(50717, shortOrLong(level));
}

DNGBuilder& DNGBuilder::activeArea(std::int64_t top, std::int64_t left, std::int64_t bottom, std::int64_t right) {
  return rawTag(50829, {typeLong, {top, left, bottom, right}});
}

DNGBuilder& DNGBuilder::crop(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
  rawTag(50719, {typeLong, {x, y}});
  return rawTag(50720, {typeLong, {width, height}});
}

DNGBuilder& DNGBuilder::neutral(const std::array<double, 3>& white) {
  return firstTag(50728, tenThousandths(typeRational, white));
}

DNGBuilder& DNGBuilder::colourMatrix(const std::array<double, 9>& fromXYZ, int illuminant) {
  firstTag(50778, {typeShort, {illuminant}});
  return firstTag(50721, tenThousandths(typeSignedRational, fromXYZ));
}

DNGBuilder& DNGBuilder::make(const std::string& text) {
  return firstText(271, text);
}

DNGBuilder& DNGBuilder::model(const std::string& text) {
  return firstText(272, text);
}

DNGBuilder& DNGBuilder::uniqueModel(const std::string& text) {
  return firstText(50708, text);
}

DNGBuilder& DNGBuilder::serial(const std::string& text) {
  return firstText(50735, text);
}

DNGBuilder& DNGBuilder::exif(std::optional<std::int64_t> iso,
                             std::optional<std::pair<std::int64_t, std::int64_t>> exposure,
                             std::optional<std::string> bodySerial) {
  exifTag(36864, {typeUndefined, {'0', '2', '3', '0'}});
  if (exposure) exifTag(33434, {typeRational, {exposure->first, exposure->second}});
  if (iso) exifTag(34855, shortOrLong(*iso));
  if (bodySerial) exifTag(42033, asciiValues(*bodySerial));
  return *this;
}

DNGBuilder& DNGBuilder::fNumber(double aperture) {
  return exifTag(33437, {typeRational, {std::llround(aperture * 10), 10}});
}

DNGBuilder& DNGBuilder::inSubIFD() {
  inSubIFD_ = true;
  return *this;
}

DNGBuilder& DNGBuilder::rawTag(int tag, TIFFValues values) {
  withoutRawTags_.erase(tag);
  rawTags_[tag] = std::move(values);
  return *this;
}

DNGBuilder& DNGBuilder::firstTag(int tag, TIFFValues values) {
  withoutFirstTags_.erase(tag);
  firstTags_[tag] = std::move(values);
  return *this;
}

DNGBuilder& DNGBuilder::exifTag(int tag, TIFFValues values) {
  exifTags_[tag] = std::move(values);
  return *this;
}

DNGBuilder& DNGBuilder::rawText(int tag, const std::string& text) {
  return rawTag(tag, asciiValues(text));
}

DNGBuilder& DNGBuilder::firstText(int tag, const std::string& text) {
  return firstTag(tag, asciiValues(text));
}

DNGBuilder& DNGBuilder::withoutRawTag(int tag) {
  rawTags_.erase(tag);
  withoutRawTags_.insert(tag);
  return *this;
}

DNGBuilder& DNGBuilder::withoutFirstTag(int tag) {
  firstTags_.erase(tag);
  withoutFirstTags_.insert(tag);
  return *this;
}

DNGBuilder& DNGBuilder::paddingByte(std::uint8_t value) {
  layout_.paddingByte = value;
  return *this;
}

DNGBuilder& DNGBuilder::gapBetweenSegments(std::int64_t bytes) {
  gap_ = bytes;
  return *this;
}

DNGBuilder& DNGBuilder::segmentsInReverseOrder() {
  segmentsInReverseOrder_ = true;
  return *this;
}

DNGBuilder& DNGBuilder::trailingBytes(std::int64_t bytes) {
  trailing_ = bytes;
  return *this;
}

SegmentLayout DNGBuilder::segmentLayout() const {
  SegmentLayout layout = layout_;
  layout.littleEndian = littleEndian_;
  if (!layout.tiled) {
    layout.segmentWidth = std::max<std::int64_t>(layout.width, 1);
    layout.segmentHeight = rowsPerStrip_ > 0 ? rowsPerStrip_ : std::max<std::int64_t>(layout.height, 1);
  }
  return layout;
}

TIFFEntries DNGBuilder::segmentEntries(const Places& places) const {
  const SegmentLayout layout = segmentLayout();
  TIFFValues byteCounts;
  for (std::int64_t i = 0; i < layout.segmentCount(); ++i)
    byteCounts.numbers.push_back(layout.segmentBytes(i));
  const TIFFValues offsets{typeLong, places.segments};
  if (!layout.tiled) {
    return {{tagStripOffsets, offsets}, {278, {typeLong, {layout.segmentHeight}}}, {279, byteCounts}};
  }
  return {{322, {typeLong, {layout.segmentWidth}}},
          {323, {typeLong, {layout.segmentHeight}}},
          {tagTileOffsets, offsets},
          {325, byteCounts}};
}

TIFFEntries DNGBuilder::imageEntries(const Places& places) const {
  TIFFEntries entries = segmentEntries(places);
  entries[254] = {typeLong, {0}};
  entries[256] = {typeLong, {layout_.width}};
  entries[257] = {typeLong, {layout_.height}};
  entries[258] = {typeShort, {layout_.bits}};
  entries[259] = {typeShort, {1}};
  entries[tagPhotometric] = {typeShort, {32803}};
  entries[277] = {typeShort, {1}};
  entries[284] = {typeShort, {1}};
  entries[tagCFARepeatPatternDim] = {typeShort, {2, 2}};
  entries[tagCFAPattern] = {typeByte, {0, 1, 1, 2}};
  return entries;
}

TIFFEntries DNGBuilder::cameraEntries(const Places& places) const {
  TIFFEntries entries{{50706, {typeByte, {1, 4, 0, 0}}}, {50707, {typeByte, {1, 1, 0, 0}}}};
  entries[50708] = asciiValues("Tessaly Test Camera");
  if (!exifTags_.empty()) entries[tagExifIFD] = {typeLong, {places.exifDirectory}};
  return entries;
}

DNGBuilder::Directories DNGBuilder::directories(const Places& places) const {
  Directories result{cameraEntries(places), imageEntries(places), exifTags_};
  apply(result.raw, rawTags_, withoutRawTags_);
  if (inSubIFD_) {
    result.first.merge(previewEntries(places.preview));
    result.first[330] = {typeLong, {places.rawDirectory}};
  } else {
    result.raw.merge(result.first);
    for (const int tag : withoutRawTags_)
      result.raw.erase(tag);
    result.first = std::move(result.raw);
    result.raw.clear();
  }
  apply(result.first, firstTags_, withoutFirstTags_);
  return result;
}

/// The size of a directory depends on the number of its values only, so a draft without places gives the places.
DNGBuilder::Places DNGBuilder::places() const {
  const SegmentLayout layout = segmentLayout();
  const std::int64_t count = layout.segmentCount();
  Places result;
  result.segments.resize(static_cast<std::size_t>(count));
  const Directories draft = directories(result);
  result.rawDirectory = headerBytes + directorySize(draft.first);
  result.exifDirectory = result.rawDirectory + (inSubIFD_ ? directorySize(draft.raw) : 0);
  result.preview = result.exifDirectory + (draft.exif.empty() ? 0 : directorySize(draft.exif));
  std::int64_t offset = result.preview + (inSubIFD_ ? previewBytes : 0);
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t segment = segmentsInReverseOrder_ ? count - 1 - i : i;
    result.segments[static_cast<std::size_t>(segment)] = offset;
    offset += layout.segmentBytes(segment) + gap_;
  }
  return result;
}

void DNGBuilder::requireSamplesThatFit() const {
  if (layout_.bits < 1 || layout_.bits > 16) throw std::invalid_argument("The builder packs 1 to 16 bits");
  if (samples_.empty()) return;
  if (static_cast<std::int64_t>(samples_.size()) != layout_.width * layout_.height) {
    throw std::invalid_argument("The number of samples is not width × height");
  }
  const int limit = 1 << layout_.bits;
  if (std::any_of(samples_.begin(), samples_.end(), [limit](std::uint16_t sample) { return sample >= limit; })) {
    throw std::invalid_argument("A sample needs more bits");
  }
}

void DNGBuilder::appendSegments(Bytes& file, const Places& places) const {
  const SegmentLayout layout = segmentLayout();
  const auto count = static_cast<std::int64_t>(places.segments.size());
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t segment = segmentsInReverseOrder_ ? count - 1 - i : i;
    file.resize(static_cast<std::size_t>(places.segments[static_cast<std::size_t>(segment)]),
                std::byte{layout.paddingByte});
    appendSegment(file, layout, segment, samples_);
  }
}

std::vector<std::byte> DNGBuilder::build() const {
  requireSamplesThatFit();
  const Places where = places();
  const Directories entries = directories(where);
  Bytes file{std::byte(littleEndian_ ? 'I' : 'M'), std::byte(littleEndian_ ? 'I' : 'M')};
  appendNumber(file, 42, 2, littleEndian_);
  appendNumber(file, headerBytes, 4, littleEndian_);
  appendDirectory(file, entries.first, 0, littleEndian_);
  if (inSubIFD_) appendDirectory(file, entries.raw, 0, littleEndian_);
  if (!entries.exif.empty()) appendDirectory(file, entries.exif, 0, littleEndian_);
  if (inSubIFD_) file.resize(file.size() + static_cast<std::size_t>(previewBytes), std::byte{0x80});
  appendSegments(file, where);
  file.resize(file.size() + static_cast<std::size_t>(trailing_), std::byte{layout_.paddingByte});
  return file;
}

std::vector<std::int64_t> DNGBuilder::segmentOffsets() const {
  return places().segments;
}

void DNGBuilder::write(const std::filesystem::path& path) const {
  writeBytes(path, build());
}

void writeBytes(const std::filesystem::path& path, const std::vector<std::byte>& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("Cannot write " + path.string());
}

}  // namespace tessaly::tools
