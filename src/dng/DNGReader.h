// Reads the description and the samples of the main raw image of a DNG file.
//
// Stateless: safe to call from several threads. Every error leaves as DNGError::Case::file with the file's name.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"
#include "dng/metadata/SupportRules.h"

#include <filesystem>

namespace tessaly::DNGReader {

/// Reads the metadata only and applies every acceptance rule except the one for compression (see supportReason).
[[nodiscard]] DNGMetadata readMetadata(const std::filesystem::path& url);

using SupportRules::isProprietaryExtension;
using SupportRules::requireOpenFormat;
using SupportRules::requireSupported;
using SupportRules::supportReason;

/// Decodes every raw sample. `metadata` is the record of an earlier readMetadata of the same file; it is compared with
/// the file as it is now, so that a file replaced in between is refused.
[[nodiscard]] RawSamples readRaw(const std::filesystem::path& url, const DNGMetadata& metadata);

/// The same into a buffer that the caller keeps from file to file. On an error its contents are unspecified.
void readRaw(const std::filesystem::path& url, const DNGMetadata& metadata, RawSamples& samples);

/// The same for the wanted samples only; what the others then are is unspecified.
void readRaw(const std::filesystem::path& url, const DNGMetadata& metadata, const WantedSamples& wanted,
             RawSamples& samples);

[[nodiscard]] RawPlane readPlane(const std::filesystem::path& url);

/// The f-number at which the frame was taken; nothing where the file does not tell one that can be read. Never throws
/// for what is wrong with a file.
[[nodiscard]] std::optional<double> readFNumber(const std::filesystem::path& url);

}  // namespace tessaly::DNGReader
