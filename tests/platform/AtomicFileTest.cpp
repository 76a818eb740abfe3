#include "platform/AtomicFile.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace tessaly {
namespace {

using testing::ElementsAre;
using tests::Call;
using tests::readText;
using tests::writeText;

mode_t modeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

class AtomicFile : public testing::Test {
 protected:
  int replace(const std::string& text) {
    try {
      replaceFileAtomically(path, text, system);
      return 0;
    } catch (const std::system_error& error) {
      return error.code().value();
    }
  }

  [[nodiscard]] long filesInFolder() const {
    return std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator());
  }

  tests::TemporaryFolder folder;
  std::filesystem::path path = folder / "profile.json";
  tests::FailingFileSystem system;
};

TEST_F(AtomicFile, MakesANewFileWithTheModeThatTheUserMaskLeaves) {
  const mode_t old = umask(022);
  EXPECT_EQ(replace("new"), 0);
  umask(old);
  EXPECT_EQ(readText(path), "new");
  EXPECT_EQ(modeOf(path), 0644U);
}

TEST_F(AtomicFile, IsOnTheMediumBeforeItHasItsName) {
  EXPECT_EQ(replace("new"), 0);
  EXPECT_THAT(system.calls(), ElementsAre(Call::createNew, Call::lock, Call::writeAt, Call::synchronize,
                                          Call::renameReplacing, Call::synchronizeFolder));
}

TEST_F(AtomicFile, ReplacesAnOldFileAndKeepsItsMode) {
  writeText(path, "a longer old text");
  std::filesystem::permissions(path, std::filesystem::perms(0600));
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(readText(path), "new");
  EXPECT_EQ(modeOf(path), 0600U);
}

TEST_F(AtomicFile, WritesAnEmptyFile) {
  EXPECT_EQ(replace(""), 0);
  EXPECT_EQ(readText(path), "");
}

class FailingStep : public AtomicFile, public testing::WithParamInterface<Call> {};

TEST_P(FailingStep, LeavesTheOldFileAndNothingElse) {
  writeText(path, "old");
  system.fail(GetParam(), ENOSPC);
  EXPECT_EQ(replace("new"), ENOSPC);
  EXPECT_EQ(readText(path), "old");
  EXPECT_EQ(filesInFolder(), 1);
}

INSTANTIATE_TEST_SUITE_P(AtomicFile, FailingStep,
                         testing::Values(Call::createNew, Call::writeAt, Call::synchronize, Call::renameReplacing));

TEST_F(AtomicFile, StandsWhenModeOrFolderCannotBeKept) {
  writeText(path, "old");
  system.fail(Call::setMode, EPERM);
  system.fail(Call::synchronizeFolder, EINVAL);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(readText(path), "new");
}

TEST_F(AtomicFile, ReplacesTheFileBehindALinkAndKeepsTheLink) {
  create_directory(folder / "elsewhere");
  writeText(folder / "elsewhere/real.json", "old");
  std::filesystem::create_symlink("elsewhere/real.json", path);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_TRUE(is_symlink(symlink_status(path)));
  EXPECT_EQ(readText(folder / "elsewhere/real.json"), "new");
}

TEST_F(AtomicFile, MakesTheFileThatADanglingLinkNames) {
  std::filesystem::create_symlink("later.json", path);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_TRUE(is_symlink(symlink_status(path)));
  EXPECT_EQ(readText(folder / "later.json"), "new");
}

TEST_F(AtomicFile, ReplacesALinkItselfWhereTheNameCanBeForeseen) {
  writeText(folder / "target.json", "somebody's");
  std::filesystem::create_symlink("target.json", path);
  replaceEntryAtomically(path, "new", system);
  EXPECT_TRUE(is_regular_file(symlink_status(path)));
  EXPECT_EQ(readText(path), "new");
  EXPECT_EQ(readText(folder / "target.json"), "somebody's");
}

TEST_F(AtomicFile, ReplacesADanglingLinkItselfAndMakesNothingElsewhere) {
  std::filesystem::create_symlink("nowhere.json", path);
  replaceEntryAtomically(path, "new", system);
  EXPECT_EQ(readText(path), "new");
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(AtomicFile, ReplacesAPipeUnopenedWhereTheNameCanBeForeseen) {
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);  // opening it would wait for a reader
  replaceEntryAtomically(path, "new", system);
  EXPECT_EQ(readText(path), "new");
}

TEST_F(AtomicFile, KeepsTheModeOfAFileAndLeavesAFolderAlsoWhereTheNameCanBeForeseen) {
  writeText(path, "old");
  std::filesystem::permissions(path, std::filesystem::perms(0600));
  replaceEntryAtomically(path, "new", system);
  EXPECT_EQ(modeOf(path), 0600U);
  create_directory(folder / "folder");
  EXPECT_THROW(replaceEntryAtomically(folder / "folder", "new", system), std::system_error);
}

TEST_F(AtomicFile, RefusesAFolder) {
  create_directory(path);
  EXPECT_EQ(replace("new"), EISDIR);
}

TEST_F(AtomicFile, RefusesAFolderThatIsNotThere) {
  path = folder / "none" / "profile.json";
  EXPECT_EQ(replace("new"), ENOENT);
}

TEST_F(AtomicFile, WritesIntoADeviceAndLeavesItWhereItIs) {
  path = "/dev/null";
  EXPECT_EQ(replace("new"), 0);
  EXPECT_TRUE(is_character_file(path));
  EXPECT_EQ(system.count(Call::renameReplacing), 0);
}

TEST_F(AtomicFile, PassesOnADeviceThatIsFull) {
  path = "/dev/full";
  EXPECT_EQ(replace("new"), ENOSPC);
}

}  // namespace
}  // namespace tessaly
