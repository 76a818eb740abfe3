#include "dng/DNGError.h"
#include "dng/MosaicKind.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFTags.h"

#include <algorithm>
#include <array>

namespace tessaly::MetadataRules {
namespace {

constexpr std::int64_t cellSideOf(MosaicKind kind) {
  switch (kind) {
    case MosaicKind::bayer:
      return 2;
    case MosaicKind::none:
      break;
  }
  return 1;
}

constexpr std::int64_t cellSide = cellSideOf(MosaicKind::bayer);
constexpr std::int64_t cellSize = cellSide * cellSide;
constexpr std::int64_t red = 0;
constexpr std::int64_t green = 1;
constexpr std::int64_t blue = 2;

bool isTwoByTwo(const DirectoryTags& raw) {
  if (raw.count(TIFFTag::cfaRepeatPatternDim) != 2) return false;
  return raw.ints(TIFFTag::cfaRepeatPatternDim) == std::vector<std::int64_t>{cellSide, cellSide};
}

// The planes of the cell in the order of CFAPlaneColor, or the colours themselves where that tag is absent.
std::vector<std::int64_t> readPlanes(const DirectoryTags& raw) {
  const bool isBayerCell = isTwoByTwo(raw) && raw.count(TIFFTag::cfaPattern) == cellSize;
  if (!isBayerCell) throw DNGError::unsupported("Only 2×2 Bayer CFA is supported (X-Trans is not supported)");
  return raw.ints(TIFFTag::cfaPattern);
}

std::int64_t colourOf(const DirectoryTags& raw, std::int64_t plane) {
  const TIFFField* const planeColours = raw.field(TIFFTag::cfaPlaneColor);
  if (planeColours == nullptr) return plane;
  raw.container().checkNumbers(planeColours);
  const bool exists = plane >= 0 && plane < planeColours->count;
  return exists ? raw.container().intAt(*planeColours, plane) : -1;
}

bool isBayerArrangement(const std::vector<std::uint8_t>& cell) {
  const auto number = [&](std::int64_t colour) { return std::count(cell.begin(), cell.end(), colour); };
  const bool greensOnDiagonal = (cell[0] == green && cell[3] == green) || (cell[1] == green && cell[2] == green);
  return number(red) == 1 && number(green) == 2 && number(blue) == 1 && greensOnDiagonal;
}

}  // namespace

CFALayout readBayerLayout(const DirectoryTags& raw) {
  CFALayout layout{cellSide, cellSide, {}};
  for (const std::int64_t plane : readPlanes(raw)) {
    const std::int64_t colour = colourOf(raw, plane);
    if (colour < red || colour > blue) throw DNGError::unsupported("Invalid Bayer CFA plane");
    layout.pattern.push_back(static_cast<std::uint8_t>(colour));
  }
  if (!isBayerArrangement(layout.pattern)) throw DNGError::unsupported("Invalid Bayer arrangement");
  return layout;
}

}  // namespace tessaly::MetadataRules
