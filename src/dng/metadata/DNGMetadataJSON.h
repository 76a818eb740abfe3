// The JSON form of what is known about a raw image: objects whose keys are the field names, in the order in which the
// fields are declared; an absent optional field has no key, a packing is its name.
//
// Read: keys in any order, unknown ones ignored, null for an optional key means absent; a whole number may be written
// as 4.0, but neither as 4.5 nor as "4". Decoding throws std::invalid_argument, which names the key.
//
// Decoding is for programs that the engine is linked into and keep such records; this program writes them only.
// Stateless; safe from several threads.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/tiff/TIFFDirectory.h"

#include <nlohmann/json_fwd.hpp>

namespace tessaly {

[[nodiscard]] nlohmann::ordered_json toJSON(const DNGMetadata& metadata);
[[nodiscard]] nlohmann::ordered_json toJSON(const DNGSourceEncoding& encoding);
[[nodiscard]] nlohmann::ordered_json toJSON(const TIFFField& field);

[[nodiscard]] DNGMetadata metadataFromJSON(const nlohmann::ordered_json& json);
[[nodiscard]] DNGSourceEncoding sourceEncodingFromJSON(const nlohmann::ordered_json& json);
[[nodiscard]] TIFFField fieldFromJSON(const nlohmann::ordered_json& json);

}  // namespace tessaly
