// What the rest of the system knows about the main raw image of a DNG file, and how that image is stored.
//
// Two coordinate systems meet here. Raw coordinates count columns and rows of the whole stored plane, masked border
// included; active coordinates count from the top left corner of the active area. A photosite at active (10, 20) of a
// sensor whose active area starts at column 64, row 32 has raw coordinates (74, 52). Everything that is stored or
// repaired uses raw coordinates; only the colour of a photosite is asked in active ones.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// An area of the raw plane, in samples.
struct RawRectangle {
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;

  bool operator==(const RawRectangle&) const = default;
};

/// The repeating colour cell of the mosaic, anchored at the top left corner of the active area.
struct CFALayout {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::vector<std::uint8_t> pattern;  ///< width × height colours, row after row: 0 red, 1 green, 2 blue

  /// Whether the photosites at (x, y) and (targetX, targetY), in active coordinates, have the same colour. Coordinates
  /// outside the active area (negative ones too) continue the pattern; the two greens of a Bayer cell match.
  [[nodiscard]] bool matches(std::int64_t x, std::int64_t y, std::int64_t targetX, std::int64_t targetY) const;

  bool operator==(const CFALayout&) const = default;
};

/// How samples are packed into one contiguous block of bytes, see RawPixelCodec.
enum class RawPacking { littleEndian16, packed12MSB };

/// Everything about how the raw image is stored that is needed to read its samples and to write them back in place.
struct DNGSourceEncoding {
  bool littleEndian = true;        ///< byte order of the container
  std::int64_t ifdOffset = 0;      ///< file offset of the raw directory
  std::int64_t parentPointer = 0;  ///< file offset of the 32-bit word that points to the raw directory
  std::vector<std::int64_t> offsets;
  std::vector<std::int64_t> byteCounts;
  std::optional<std::int64_t> tileWidth;  ///< absent for strips
  std::optional<std::int64_t> tileHeight;
  std::int64_t fillOrder = 1;  ///< 1: most significant bit first; 2: the bits of each byte are reversed
  std::vector<std::uint16_t> linearization;
  std::vector<double> blackLevels;
  std::vector<std::int64_t> blackRepeat;
  std::vector<double> blackDeltaH;
  std::vector<double> blackDeltaV;
  std::vector<std::int64_t> whiteLevels;
  RawRectangle activeArea;
  RawRectangle crop;                      ///< the default crop, in raw coordinates
  std::vector<std::int64_t> maskedAreas;  ///< as read, not validated

  bool operator==(const DNGSourceEncoding&) const = default;
};

struct DNGMetadata {
  /// The signal range, in 14-bit units, to which calibration scales its thresholds.
  static constexpr std::int64_t referenceSignalRange = 16163;

  std::optional<DNGSourceEncoding> sourceEncoding;  ///< always set by the reader
  std::optional<std::string> cameraSerial;
  std::optional<std::string> make;
  std::string model;
  std::int64_t rawWidth = 0;
  std::int64_t rawHeight = 0;
  std::uint64_t rawOffset = 0;    ///< file offset of the first strip or tile
  std::int64_t rawByteCount = 0;  ///< sum over all strips or tiles
  std::int64_t activeX = 0;
  std::int64_t activeY = 0;
  std::int64_t activeWidth = 0;
  std::int64_t activeHeight = 0;
  std::int64_t blackLevel = 0;  ///< mean of all black levels, truncated
  std::int64_t whiteLevel = 0;
  std::int64_t bitsPerSample = 0;
  std::int64_t compression = 1;
  std::int64_t samplesPerPixel = 1;
  std::int64_t photometricInterpretation = 0;
  std::int64_t rowsPerStrip = 0;
  RawPacking packing = RawPacking::littleEndian16;
  std::optional<CFALayout> cfaLayout;  ///< absent for linear (monochrome) images
  std::optional<std::int64_t> iso;
  std::optional<double> exposureSeconds;

  [[nodiscard]] std::int64_t pixelCount() const { return rawWidth * rawHeight; }

  /// Whether two frames come from one camera body in one mode. Make, levels, offsets and exposure may differ.
  [[nodiscard]] bool isGeometryCompatible(const DNGMetadata& other) const;

  bool operator==(const DNGMetadata&) const = default;
};

}  // namespace tessaly
