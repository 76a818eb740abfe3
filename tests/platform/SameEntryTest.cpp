#include "platform/SameEntry.h"
#include "platform/Text.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <vector>

namespace tessaly {
namespace {

namespace fs = std::filesystem;
using tests::writeText;

/// Folders that answer to every spelling of a name, and give each spelling an inode of its own, as some media do.
class FoldingMedium final : public NameLookup {
 public:
  explicit FoldingMedium(std::vector<fs::path> entries) : entries_(std::move(entries)) {}

  [[nodiscard]] bool exists(const fs::path& path) const override {
    for (const fs::path& entry : entries_) {
      if (lowerCased(entry.native()) == lowerCased(path.native())) return true;
    }
    return path == path.root_path();
  }

  [[nodiscard]] bool isSameInode(const fs::path& left, const fs::path& right) const override { return left == right; }

  [[nodiscard]] std::vector<std::string> names(const fs::path& folder) const override {
    std::vector<std::string> names;
    for (const fs::path& entry : entries_) {
      if (lowerCased(entry.parent_path().native()) == lowerCased(folder.native())) names.push_back(entry.filename());
    }
    return names;
  }

  [[nodiscard]] bool isFoldingKind(const fs::path&) const override { return false; }

 private:
  std::vector<fs::path> entries_;
};

TEST(SameEntry, IsTheSameFileInAnotherSpellingWhereCaseIsFolded) {
  const FoldingMedium card({"/Card", "/Card/Photos", "/Card/Photos/a.dng", "/Card/Photos/b.dng"});
  EXPECT_TRUE(isSameEntry("/Card/Photos/a.dng", "/Card/Photos/A.DNG", card));
  EXPECT_TRUE(isSameEntry("/Card/Photos/a.dng", "/card/photos/A.dng", card));
  EXPECT_TRUE(isSameEntry("/Card/Photos", "/Card/PHOTOS/", card));
  EXPECT_FALSE(isSameEntry("/Card/Photos/a.dng", "/Card/Photos/b.dng", card));
}

TEST(SameEntry, IsTheSameNameToComeWhereCaseIsFolded) {
  const FoldingMedium card({"/Card", "/Card/Photos", "/Card/Photos/a.dng", "/Card/empty"});
  EXPECT_TRUE(isSameEntry("/Card/Photos/New", "/Card/photos/NEW", card)) << "the folder's other names answer";
  EXPECT_TRUE(isSameEntry("/Card/new/one", "/Card/New/ONE", card)) << "the folder is to come too";
  EXPECT_FALSE(isSameEntry("/Card/Photos/New", "/Card/Photos/Newer", card));
}

TEST(SameEntry, KeepsSpellingsApartWhereCaseCounts) {
  const tests::TemporaryFolder folder;
  writeText(folder / "a", "");
  EXPECT_FALSE(isSameEntry(folder / "a", folder / "A")) << "one of them does not exist";
  EXPECT_FALSE(isSameEntry(folder / "new", folder / "NEW"));
  writeText(folder / "A", "");
  EXPECT_FALSE(isSameEntry(folder / "a", folder / "A"));
  EXPECT_FALSE(isSameEntry(folder / "new", folder / "NEW")) << "both spellings of the only name are there";
}

TEST(SameEntry, IsFoundByInodeAndThroughLinks) {
  const tests::TemporaryFolder folder;
  writeText(folder / "file", "");
  fs::create_hard_link(folder / "file", folder / "hard");
  fs::create_symlink("file", folder / "soft");
  fs::create_symlink("to come", folder / "dangling");
  fs::create_directory_symlink(folder.path(), folder / "again");
  EXPECT_TRUE(isSameEntry(folder / "file", folder / "hard"));
  EXPECT_TRUE(isSameEntry(folder / "file", folder / "soft"));
  EXPECT_TRUE(isSameEntry(folder / "to come", folder / "again" / "to come"));
  EXPECT_TRUE(isSameEntry(folder / "to come", folder / "dangling"));
  EXPECT_TRUE(isSameEntry(folder / "no/../to come", folder / "to come"));
  EXPECT_FALSE(isSameEntry(folder / "file", folder / "to come"));
}

}  // namespace
}  // namespace tessaly
