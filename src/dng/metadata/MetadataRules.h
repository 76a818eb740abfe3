// The acceptance rules of a DNG's main raw image, group by group, in the order in which parseMetadata applies them.
// Each group reads its tags from the raw directory, throws the error of the first rule that fails and otherwise fills
// its part of the record; metadata.sourceEncoding is set throughout. The order is part of the contract: a file that
// breaks several rules is refused with the first one.
//
// Private to parseMetadata. Stateless.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/metadata/DirectoryTags.h"

namespace tessaly::MetadataRules {

/// Dimensions, bit depth, compression, one sample a pixel, photometric interpretation with the colour cell.
void readFormat(const DirectoryTags& raw, DNGMetadata& metadata);

/// The colour cell of a CFA image.
[[nodiscard]] CFALayout readBayerLayout(const DirectoryTags& raw);

/// Strips or tiles: their number, their place in the file, their length.
void readSegments(const DirectoryTags& raw, DNGMetadata& metadata);

/// Fill order and linearization table.
void readSampleCoding(const DirectoryTags& raw, DNGMetadata& metadata);

/// Active area and default crop.
void readAreas(const DirectoryTags& raw, DNGMetadata& metadata);

/// Black levels, their deltas and repeat pattern, white level.
void readLevels(const DirectoryTags& raw, DNGMetadata& metadata);

/// What the EXIF directory knows about a frame; everything is absent without one.
struct EXIFValues {
  std::optional<double> exposureSeconds;
  std::optional<std::int64_t> iso;
  std::optional<std::string> bodySerial;
};

[[nodiscard]] EXIFValues readEXIF(const DirectoryTags& first);

/// The f-number of the EXIF directory; no other rule looks at it.
[[nodiscard]] std::optional<double> readFNumber(const DirectoryTags& first);

}  // namespace tessaly::MetadataRules
