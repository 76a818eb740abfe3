#include "platform/FileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tessaly {
namespace {

// In a child process, because a limit or a signal's disposition is the whole process's.
int errorOfAWriteBeyondTheLimit(const std::filesystem::path& path) {
  FileSystem& system = FileSystem::system();
  const rlimit limit{100, 100};
  setrlimit(RLIMIT_FSIZE, &limit);
  const int descriptor = system.createNew(path, 0666);
  const std::array<std::byte, 8> bytes{};
  return system.writeAt(descriptor, 200, bytes) < 0 ? errno : 0;
}

TEST(FileSystem, SurvivesAFileSizeLimit) {
  const tests::TemporaryFolder folder;
  EXPECT_EXIT(_exit(errorOfAWriteBeyondTheLimit(folder / "new")), testing::ExitedWithCode(EFBIG), "");
}

TEST(FileSystem, CreatesAFileOnlyWhereThereIsNone) {
  const tests::TemporaryFolder folder;
  tests::writeText(folder / "old", "kept");
  EXPECT_EQ(FileSystem::system().createNew(folder / "old", 0666), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(tests::readText(folder / "old"), "kept");
}

TEST(FileSystem, CreatesAllMissingFoldersAndAcceptsExistingOnes) {
  const tests::TemporaryFolder folder;
  EXPECT_EQ(FileSystem::system().createFolders(folder / "a" / "b"), 0);
  EXPECT_EQ(FileSystem::system().createFolders(folder / "a" / "b"), 0);
  EXPECT_TRUE(is_directory(folder / "a" / "b"));
}

TEST(FileSystem, CreatesNoFolderBelowAFile) {
  const tests::TemporaryFolder folder;
  tests::writeText(folder / "file", "");
  EXPECT_EQ(FileSystem::system().createFolders(folder / "file" / "below"), -1);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST(FileSystem, SynchronizesAFolderOnlyWhenItIsOne) {
  const tests::TemporaryFolder folder;
  EXPECT_EQ(FileSystem::system().synchronizeFolder(folder.path()), 0);
  EXPECT_EQ(FileSystem::system().synchronizeFolder(folder / "none"), -1);
  EXPECT_EQ(errno, ENOENT);
}

}  // namespace
}  // namespace tessaly
