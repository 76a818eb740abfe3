// The frame in which every copy is made: a hidden temporary file that is filled, brought to the medium, read back and
// only then given its name.
//
// Stateless; safe from several threads for different destinations.
#pragma once

#include "dng/copy/SourceImage.h"
#include "platform/FileSystem.h"
#include "platform/PartialFile.h"

#include <filesystem>
#include <functional>

namespace tessaly {

/// Throws invalid("Output exists or equals source").
void requireFreeDestination(const std::filesystem::path& source, const std::filesystem::path& destination);

struct NewCopy {
  const SourceImage& source;
  const std::filesystem::path& destination;
  FileSystem& system;
};

/// `write` fills the file, `verify` reads it back. Throws what they throw, DestinationError, and std::system_error.
void makeCopy(const NewCopy& copy, const std::function<void(PartialFile&)>& write,
              const std::function<void(const PartialFile&)>& verify);

}  // namespace tessaly
