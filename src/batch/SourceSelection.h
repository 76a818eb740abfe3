// What a batch works on when it is more than one folder: files and folders, with all below them where that is wanted,
// and the part of them that is this process's own.
#pragma once

#include "batch/SourceFiles.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tessaly {

/// Every `count`-th source of the sorted list, from the `number`-th on: with the other numbers each source once.
struct Shard {
  std::int64_t number = 1;  ///< 1…count
  std::int64_t count = 1;

  bool operator==(const Shard&) const = default;
};

struct SourceSelection {
  std::vector<std::filesystem::path> sources;  ///< files and folders, in the order of processing
  bool isRecursive = false;                    ///< with everything below the folders
  std::filesystem::path outputFolder{};        ///< never descended into
};

/// The files that are chosen: of a folder its candidate source files, in natural order, then, where that is wanted,
/// those of the folders in it. Not descended into are hidden folders, links, folders of results and the output folder.
/// A file that is named twice is there once; one that does not exist is there too. Throws std::system_error when a
/// folder that was named cannot be listed; one below it is among the unexamined.
[[nodiscard]] SourceListing listSelection(const SourceSelection& selection);

/// Sources that would meet under one name in one folder of copies, letter case aside: the first and one after it.
struct MeetingSources {
  std::filesystem::path first;
  std::filesystem::path second;

  bool operator==(const MeetingSources&) const = default;
};

[[nodiscard]] std::vector<MeetingSources> meetingSources(const SourceListing& listing);

/// The part of the listing that is the shard's.
[[nodiscard]] SourceListing shardOf(const SourceListing& listing, const Shard& shard);

}  // namespace tessaly
