#include "batch/OutputFolder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

using tests::TemporaryFolder;

TEST(OutputFolder, IsTessalyResultsInsideTheInputFolderByDefault) {
  EXPECT_EQ(defaultOutputFolder("/photos/2026-11-15"), "/photos/2026-11-15/Tessaly Results");
  EXPECT_EQ(defaultOutputFolder("/photos/"), "/photos/Tessaly Results");
}

TEST(OutputFolder, StandardizesDotsAndSlashes) {
  EXPECT_EQ(standardized("/a/b/../b").native(), "/a/b");
  EXPECT_EQ(standardized("/a//b/./c/").native(), "/a/b/c");
  EXPECT_EQ(standardized("/").native(), "/");
  EXPECT_EQ(standardized("/..").native(), "/");
}

TEST(OutputFolder, MakesARelativePathAbsolute) {
  EXPECT_EQ(standardized("x"), std::filesystem::current_path() / "x");
  EXPECT_EQ(standardized("."), std::filesystem::current_path());
}

TEST(OutputFolder, IsTheSameHoweverItIsSpelled) {
  EXPECT_TRUE(isSameFolder("/a/b", "/a/b/../b"));
  EXPECT_TRUE(isSameFolder("/a/b", "/a/b/"));
  EXPECT_TRUE(isSameFolder("x/y", std::filesystem::current_path() / "x/./y"));
  EXPECT_FALSE(isSameFolder("/a/b", "/a/B"));
  EXPECT_FALSE(isSameFolder("/a/b", "/a/b/c"));
}

TEST(OutputFolder, IsTheSameThroughASymbolicLink) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_directory(folder / "other");
  std::filesystem::create_directory_symlink(folder / "real", folder / "link");
  EXPECT_TRUE(isSameFolder(folder / "real", folder / "link"));
  EXPECT_TRUE(isSameFolder(folder / "link/", folder / "real"));
  EXPECT_FALSE(isSameFolder(folder / "other", folder / "link"));
}

TEST(OutputFolder, StaysWhereItLeadsWhenTheWayBackCrossesASymbolicLink) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "elsewhere/inner");
  std::filesystem::create_directories(folder / "elsewhere/photos");
  std::filesystem::create_directory_symlink(folder / "elsewhere/inner", folder / "link");
  const std::filesystem::path named = folder / "link/../photos";
  EXPECT_EQ(standardized(named), named);
  EXPECT_TRUE(isSameFolder(named, folder / "elsewhere/photos"));
}

}  // namespace
}  // namespace tessaly
