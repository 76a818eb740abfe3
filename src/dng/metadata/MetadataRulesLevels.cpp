#include "dng/DNGError.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFTags.h"
#include "dng/tiff/TIFFTypes.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tessaly::MetadataRules {
namespace {

constexpr std::int64_t maximumLevel = 65'535;
constexpr std::int64_t maximumRepeat = 100'000;

bool isBlackLevelField(const TIFFField& field) {
  const bool hasType =
      field.type == TIFFType::shortInteger || field.type == TIFFType::longInteger || field.type == TIFFType::rational;
  return hasType && field.count >= 1;
}

bool isBlackLevel(double level) {
  return std::isfinite(level) && level >= 0 && level <= maximumLevel;
}

DNGError levelValues() {
  return DNGError::invalid("BlackLevel/WhiteLevel values");
}

// Judged before any is kept: a repeat pattern of black levels may be as large as the file.
void readBlackLevels(const DirectoryTags& raw, DNGSourceEncoding& encoding) {
  const TIFFField* const field = raw.field(TIFFTag::blackLevel);
  if (field != nullptr && !isBlackLevelField(*field)) throw DNGError::invalid("BlackLevel type/count");
  raw.container().forEachNumber(field, [](double level) {
    if (!isBlackLevel(level)) throw levelValues();
  });
  encoding.blackLevels = raw.numbers(TIFFTag::blackLevel);
}

void readWhiteLevels(const DirectoryTags& raw, DNGSourceEncoding& encoding) {
  if (!raw.has(TIFFTag::whiteLevel)) return;
  if (raw.count(TIFFTag::whiteLevel) != 1) throw levelValues();
  encoding.whiteLevels = raw.ints(TIFFTag::whiteLevel);
}

std::vector<double> readDeltas(const DirectoryTags& raw, std::int64_t tag, std::int64_t expected) {
  if (!raw.has(tag)) return {};
  if (raw.count(tag) != expected) throw DNGError::invalid("BlackLevelDelta dimensions");
  return raw.numbers(tag);
}

bool isRepeatPattern(const std::vector<std::int64_t>& repeat, std::int64_t levels) {
  const auto isSide = [](std::int64_t side) { return side >= 1 && side <= maximumRepeat; };
  return isSide(repeat[0]) && isSide(repeat[1]) && repeat[0] * repeat[1] == levels;
}

[[noreturn]] void refuseBlackRepeat() {
  throw DNGError::invalid("BlackLevelRepeatDim");
}

void readBlackRepeat(const DirectoryTags& raw, DNGSourceEncoding& encoding) {
  if (!raw.has(TIFFTag::blackLevelRepeatDim)) return;
  if (raw.count(TIFFTag::blackLevelRepeatDim) != 2) refuseBlackRepeat();
  encoding.blackRepeat = raw.ints(TIFFTag::blackLevelRepeatDim);
  const std::size_t levels = std::max<std::size_t>(encoding.blackLevels.size(), 1);
  if (!isRepeatPattern(encoding.blackRepeat, static_cast<std::int64_t>(levels))) refuseBlackRepeat();
}

std::int64_t whiteLevelOf(const DNGSourceEncoding& encoding, std::int64_t bits) {
  if (!encoding.whiteLevels.empty()) return encoding.whiteLevels.front();
  if (!encoding.linearization.empty()) return encoding.linearization.back();
  return (std::int64_t{1} << bits) - 1;
}

std::int64_t meanTruncated(const std::vector<double>& levels) {
  if (levels.empty()) return 0;
  const double sum = std::accumulate(levels.begin(), levels.end(), 0.0);
  return static_cast<std::int64_t>(sum / static_cast<double>(levels.size()));
}

}  // namespace

void readLevels(const DirectoryTags& raw, DNGMetadata& metadata) {
  DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  readBlackLevels(raw, encoding);
  readWhiteLevels(raw, encoding);
  encoding.blackDeltaH = readDeltas(raw, TIFFTag::blackLevelDeltaH, metadata.activeWidth);
  encoding.blackDeltaV = readDeltas(raw, TIFFTag::blackLevelDeltaV, metadata.activeHeight);
  readBlackRepeat(raw, encoding);
  const std::int64_t white = whiteLevelOf(encoding, metadata.bitsPerSample);
  const bool blackBelowWhite = std::all_of(encoding.blackLevels.begin(), encoding.blackLevels.end(),
                                           [&](double black) { return black < static_cast<double>(white); });
  const bool acceptable = white >= 1 && white <= maximumLevel && blackBelowWhite;
  if (!acceptable) throw DNGError::unsupported("WhiteLevel outside UInt16 domain");
  metadata.whiteLevel = white;
  metadata.blackLevel = meanTruncated(encoding.blackLevels);
}

}  // namespace tessaly::MetadataRules
