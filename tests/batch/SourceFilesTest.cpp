#include "batch/SourceFiles.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <string>
#include <system_error>
#include <vector>

namespace tessaly {
namespace {

using tests::TemporaryFolder;
using tests::writeText;

std::vector<std::string> namesOf(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const std::filesystem::path& file : sourceFiles(folder))
    names.push_back(file.filename().native());
  return names;
}

using Names = std::vector<std::string>;

void makeSocket(const std::filesystem::path& path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ::close(descriptor);
}

TEST(SourceFiles, AreDNGsAndTheCamerasOwnFormatsInAnyLetterCase) {
  for (const char* name : {"a.dng", "a.DNG", "a.Dng", "a.nef", "a.nrw", "a.cr2", "a.cr3", "a.crw",    "a.orf", "a.arw",
                           "a.srw", "a.raf", "a.rw2", "a.pef", "a.3fr", "a.fff", "a.iiq", "a.rwl",    "a.mos", "a.x3f",
                           "a.sr2", "a.srf", "a.erf", "a.kdc", "a.dcr", "a.raw", "a.NEF", "a.old.dng"}) {
    EXPECT_TRUE(isSourceFileName(name)) << name;
  }
}

TEST(SourceFiles, AreNothingElse) {
  for (const char* name :
       {"a.tif", "a.jpg", "a.dng.xmp", "a", "dng", "a.", ".dng", "a.dng ", "a.dn", "a.dngx", "a.gpr"}) {
    EXPECT_FALSE(isSourceFileName(name)) << name;
  }
}

TEST(SourceFiles, ComeFromTheTopLevelOnly) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "sub.dng");
  for (const char* name : {"a.DNG", "b.dng", "c.NEF", "notes.txt", "sub.dng/x.dng"})
    writeText(folder / name, "");
  EXPECT_EQ(namesOf(folder.path()), (Names{"a.DNG", "b.dng", "c.NEF"}));
}

TEST(SourceFiles, LeaveOutHiddenOnes) {
  const TemporaryFolder folder;
  for (const char* name : {".a.dng", "a.dng"})
    writeText(folder / name, "");
  EXPECT_EQ(namesOf(folder.path()), Names{"a.dng"});
}

TEST(SourceFiles, LeaveOutWhateverIsNoRegularFile) {
  const TemporaryFolder folder;
  writeText(folder / "real.dng", "");
  std::filesystem::create_symlink(folder / "real.dng", folder / "link.dng");
  std::filesystem::create_symlink(folder / "nowhere", folder / "dangling.dng");
  ASSERT_EQ(::mkfifo((folder / "fifo.dng").c_str(), 0600), 0);
  makeSocket(folder / "socket.dng");
  EXPECT_EQ(namesOf(folder.path()), Names{"real.dng"});
}

TEST(SourceFiles, ComeInTheOrderOfAFileBrowser) {
  const TemporaryFolder folder;
  for (const char* name : {"l10.dng", "L2.DNG", "L1.DNG", "b.dng", "A.dng", "L02.dng"})
    writeText(folder / name, "");
  EXPECT_EQ(namesOf(folder.path()), (Names{"A.dng", "b.dng", "L1.DNG", "L02.dng", "L2.DNG", "l10.dng"}));
}

TEST(SourceFiles, KeepNamesThatAreNotUTF8) {
  const TemporaryFolder folder;
  writeText(folder / "\xFF.dng", "");
  EXPECT_EQ(namesOf(folder.path()), Names{"\xFF.dng"});
}

TEST(SourceFiles, CannotComeFromAFolderThatIsMissingOrNone) {
  const TemporaryFolder folder;
  writeText(folder / "file", "");
  EXPECT_THROW(static_cast<void>(sourceFiles(folder / "missing")), std::system_error);
  EXPECT_THROW(static_cast<void>(sourceFiles(folder / "file")), std::system_error);
}

}  // namespace
}  // namespace tessaly
