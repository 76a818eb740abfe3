#include "batch/SourceSelection.h"

#include "batch/OutputFolder.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"

#include <map>
#include <set>
#include <string>
#include <system_error>
#include <utility>

namespace tessaly {

namespace {

namespace fs = std::filesystem;

/// Lists what is chosen, one source after the other.
class SelectionLister {
 public:
  explicit SelectionLister(const SourceSelection& selection) : selection_(selection) {}

  void add(const fs::path& source) {
    std::error_code error;
    if (!fs::is_directory(source, error)) return addFile(standardized(source), {});
    const fs::path folder = standardized(source);
    addFolder(folder, {});
    if (selection_.isRecursive) descend(folder, {});
  }

  [[nodiscard]] SourceListing take() { return std::move(listing_); }

 private:
  void addFile(const fs::path& file, const fs::path& subfolder) {
    if (!known_.insert(file.native()).second) return;
    listing_.files.push_back(file);
    listing_.subfolders.push_back(subfolder);
  }

  void addFolder(const fs::path& folder, const fs::path& subfolder) {
    SourceListing found = listSourceFiles(folder);
    for (const fs::path& file : found.files)
      addFile(file, subfolder);
    listing_.unexamined.insert(listing_.unexamined.end(), found.unexamined.begin(), found.unexamined.end());
  }

  void descend(const fs::path& folder, const fs::path& subfolder) {
    for (const fs::path& below : foldersIn(folder)) {
      const fs::path place = subfolder / below.filename();
      try {
        addFolder(below, place);
        descend(below, place);
      } catch (const fs::filesystem_error& error) {
        listing_.unexamined.push_back({below, error.code()});
      }
    }
  }

  [[nodiscard]] std::vector<fs::path> foldersIn(const fs::path& folder) const {
    std::vector<fs::path> folders;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      std::error_code error;
      const bool isFolder = entry.symlink_status(error).type() == fs::file_type::directory;
      if (isFolder && isSourceFolder(entry.path())) folders.push_back(entry.path());
    }
    sortByFileName(folders);
    return folders;
  }

  [[nodiscard]] bool isSourceFolder(const fs::path& folder) const {
    if (folder.filename().native().starts_with('.')) return false;
    const bool holdsResults = folder == defaultOutputFolder(folder.parent_path());
    return !holdsResults && !isSameFolder(folder, selection_.outputFolder);
  }

  const SourceSelection& selection_;
  SourceListing listing_;
  std::set<std::string> known_;
};

}  // namespace

SourceListing listSelection(const SourceSelection& selection) {
  SelectionLister lister(selection);
  for (const fs::path& source : selection.sources)
    lister.add(source);
  return lister.take();
}

std::vector<MeetingSources> meetingSources(const SourceListing& listing) {
  std::map<std::pair<std::string, std::string>, std::size_t> firsts;
  std::vector<MeetingSources> meeting;
  for (std::size_t i = 0; i < listing.files.size(); ++i) {
    const std::string folder = lowerCased(listing.subfolderOf(i).native());
    const auto [first, isNew] = firsts.try_emplace({folder, lowerCased(listing.files[i].filename().native())}, i);
    if (!isNew) meeting.push_back({listing.files[first->second], listing.files[i]});
  }
  return meeting;
}

SourceListing shardOf(const SourceListing& listing, const Shard& shard) {
  SourceListing own;
  own.unexamined = listing.unexamined;
  const auto step = static_cast<std::size_t>(shard.count);
  for (auto i = static_cast<std::size_t>(shard.number - 1); i < listing.files.size(); i += step) {
    own.files.push_back(listing.files[i]);
    own.subfolders.push_back(listing.subfolderOf(i));
  }
  return own;
}

}  // namespace tessaly
