// The TIFF, EXIF and DNG tags that this system reads or writes.
#pragma once

#include <cstdint>

namespace tessaly::TIFFTag {

inline constexpr std::int64_t newSubfileType = 254;
inline constexpr std::int64_t imageWidth = 256;
inline constexpr std::int64_t imageLength = 257;
inline constexpr std::int64_t bitsPerSample = 258;
inline constexpr std::int64_t compression = 259;
inline constexpr std::int64_t photometricInterpretation = 262;
inline constexpr std::int64_t fillOrder = 266;
inline constexpr std::int64_t make = 271;
inline constexpr std::int64_t model = 272;
inline constexpr std::int64_t stripOffsets = 273;
inline constexpr std::int64_t samplesPerPixel = 277;
inline constexpr std::int64_t rowsPerStrip = 278;
inline constexpr std::int64_t stripByteCounts = 279;
inline constexpr std::int64_t planarConfiguration = 284;
inline constexpr std::int64_t tileWidth = 322;
inline constexpr std::int64_t tileLength = 323;
inline constexpr std::int64_t tileOffsets = 324;
inline constexpr std::int64_t tileByteCounts = 325;
inline constexpr std::int64_t subIFDs = 330;
inline constexpr std::int64_t cfaRepeatPatternDim = 33421;
inline constexpr std::int64_t cfaPattern = 33422;
inline constexpr std::int64_t exposureTime = 33434;  ///< in the EXIF directory
inline constexpr std::int64_t fNumber = 33437;       ///< in the EXIF directory
inline constexpr std::int64_t exifIFD = 34665;
inline constexpr std::int64_t isoSpeed = 34855;          ///< in the EXIF directory
inline constexpr std::int64_t bodySerialNumber = 42033;  ///< in the EXIF directory
inline constexpr std::int64_t dngVersion = 50706;
inline constexpr std::int64_t uniqueCameraModel = 50708;
inline constexpr std::int64_t cfaPlaneColor = 50710;
inline constexpr std::int64_t linearizationTable = 50712;
inline constexpr std::int64_t blackLevelRepeatDim = 50713;
inline constexpr std::int64_t blackLevel = 50714;
inline constexpr std::int64_t blackLevelDeltaH = 50715;
inline constexpr std::int64_t blackLevelDeltaV = 50716;
inline constexpr std::int64_t whiteLevel = 50717;
inline constexpr std::int64_t defaultCropOrigin = 50719;
inline constexpr std::int64_t defaultCropSize = 50720;
inline constexpr std::int64_t cameraSerialNumber = 50735;
inline constexpr std::int64_t activeArea = 50829;
inline constexpr std::int64_t maskedAreas = 50830;
inline constexpr std::int64_t rawImageDigest = 50972;
inline constexpr std::int64_t newRawImageDigest = 51111;

}  // namespace tessaly::TIFFTag
