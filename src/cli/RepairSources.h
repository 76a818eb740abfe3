// What the arguments of `repair` choose: one folder or one file as ever, or a selection of several.
#pragma once

#include "batch/SourceSelection.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::cli {

struct SourceArguments {
  std::vector<std::string> sources;
  std::string list;        ///< a file that names sources; "-" is standard input
  bool endsInNul = false;  ///< each name of the list, instead of in a line feed
  bool isRecursive = false;
  std::string shard;  ///< "K/N", or nothing
};

/// What is repaired: the sources as they were named, and the files that are read.
struct RepairSources {
  std::vector<std::filesystem::path> named;
  bool isSelection = false;  ///< neither a single folder nor a single file
  bool isFolder = false;     ///< of a single source
  bool isRecursive = false;
  std::optional<Shard> shard;
  SourceListing listing;  ///< all shards' files

  [[nodiscard]] std::size_t ownCount() const;
  [[nodiscard]] SourceSelection selection(const std::filesystem::path& output) const;
};

/// Throws UsageError for a shard that is none, CommandFailure for a list that cannot be read. Nothing is listed yet.
[[nodiscard]] RepairSources namedSources(const SourceArguments& arguments);

/// Lists the files, leaving out the folder of the copies; what cannot be listed is left to the batch, which says why.
void listFiles(RepairSources& sources, const std::filesystem::path& output);

/// Throws UsageError with the names of sources of a selection that would meet in one folder.
void refuseMeetings(const RepairSources& sources);

}  // namespace tessaly::cli
