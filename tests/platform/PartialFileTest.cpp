#include "platform/DestinationError.h"
#include "platform/PartialFile.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <regex>
#include <string>
#include <system_error>

namespace tessaly {
namespace {

using testing::ElementsAre;
using tests::bytesOf;
using tests::Call;
using tests::readText;
using tests::writeText;

int errorOf(const std::function<void()>& action) {
  try {
    action();
    return 0;
  } catch (const std::system_error& error) {
    return error.code().value();
  }
}

std::span<const std::byte> bytesIn(const std::string& text) {
  return std::as_bytes(std::span(text));
}

class PartialFileTest : public testing::Test {
 protected:
  PartialFile& partial() {
    if (!file_) file_ = std::make_unique<PartialFile>(system, folder.path());
    return *file_;
  }

  void drop() { file_.reset(); }

  std::int64_t copyAll(const InputFile& source) { return partial().copyFrom(source, {0, 0, source.size()}, buffer); }

  tests::TemporaryFolder folder;
  tests::FailingFileSystem system;
  std::vector<std::byte> buffer = std::vector<std::byte>(3);

 private:
  std::unique_ptr<PartialFile> file_;
};

TEST_F(PartialFileTest, IsHiddenUnderANewUpperCaseIdentifier) {
  const std::regex name("\\.[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.partial");
  EXPECT_TRUE(std::regex_match(partial().path().filename().string(), name)) << partial().path();
  EXPECT_EQ(partial().path().parent_path(), folder.path());
}

TEST_F(PartialFileTest, DisappearsWithItsObject) {
  const auto path = partial().path();
  EXPECT_TRUE(exists(path));
  drop();
  EXPECT_FALSE(exists(path));
}

TEST_F(PartialFileTest, DropsQuietlyWhenItCannotBeRemoved) {
  system.fail(Call::unlink, EIO);
  const auto path = partial().path();
  drop();
  EXPECT_TRUE(exists(path));
}

TEST_F(PartialFileTest, ReadsWhatWasWrittenAndNothingBehindItsEnd) {
  partial().writeAt(0, bytesIn("abcdef"));
  EXPECT_EQ(partial().readAt(1, std::span(buffer)), 3U);
  EXPECT_THAT(buffer, testing::ElementsAreArray(bytesIn("bcd")));
  EXPECT_EQ(partial().readAt(4, std::span(buffer)), 2U);
  EXPECT_EQ(partial().readAt(6, std::span(buffer)), 0U);
}

TEST_F(PartialFileTest, HasTheModeThatTheUserMaskLeaves) {
  const mode_t old = umask(027);
  struct stat status {};
  ASSERT_EQ(stat(partial().path().c_str(), &status), 0);
  umask(old);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST_F(PartialFileTest, FailsToBeMadeInAFolderThatIsNotThere) {
  EXPECT_EQ(errorOf([this] { PartialFile(system, folder / "none"); }), ENOENT);
}

TEST_F(PartialFileTest, WritesWhatShortAndInterruptedCallsLeaveOver) {
  system.writeAtMost(2);
  system.fail(Call::writeAt, EINTR, 2, 1);
  partial().writeAt(0, bytesIn("seven b"));
  partial().writeAt(6, bytesIn("x!"));
  EXPECT_EQ(readText(partial().path()), "seven x!");
}

TEST_F(PartialFileTest, PassesOnAFullDiskAndDisappears) {
  system.fail(Call::writeAt, ENOSPC, tests::FailingFileSystem::always, 1);
  system.writeAtMost(4);
  const auto path = partial().path();
  EXPECT_EQ(errorOf([this] { partial().writeAt(0, bytesIn("more than four")); }), ENOSPC);
  drop();
  EXPECT_FALSE(exists(path));
}

TEST_F(PartialFileTest, DoesNotHangWhenWritesTakeNothing) {
  system.writeAtMost(0);
  EXPECT_EQ(errorOf([this] { partial().writeAt(0, bytesIn("x")); }), EIO);
}

TEST_F(PartialFileTest, HoldsZerosWhereAReservedFileIsNotWritten) {
  partial().reserve(6);
  partial().writeAt(2, bytesIn("ab"));
  partial().writeAt(5, bytesIn("c"));
  EXPECT_EQ(readText(partial().path()), std::string("\0\0ab\0c", 6));
}

TEST_F(PartialFileTest, DoesWithoutAReservation) {
  system.fail(Call::reserve, EOPNOTSUPP);
  partial().reserve(6);
  partial().writeAt(0, bytesIn("ab"));
  EXPECT_EQ(readText(partial().path()), "ab");
}

TEST_F(PartialFileTest, KeepsTheMediumBusyWhileALongFileGrows) {
  const std::vector<std::byte> chunk(3 * 1024 * 1024, std::byte{7});
  system.fail(Call::startWriting, EINVAL);  // a hint as well
  for (int i = 0; i < 9; ++i)
    partial().writeAt(i * std::ssize(chunk), chunk);
  EXPECT_EQ(system.count(Call::startWriting), 3);
}

TEST_F(PartialFileTest, CopiesRangesToAnyOffset) {
  writeText(folder / "source", "0123456789");
  const InputFile source(folder / "source");
  EXPECT_EQ(partial().copyFrom(source, {6, 5, 4}, buffer), 4);
  EXPECT_EQ(partial().copyFrom(source, {0, 0, 2}, buffer), 2);
  EXPECT_EQ(readText(partial().path()), std::string("01\0\0\0", 5) + "6789");
}

class RefusedCopy : public PartialFileTest, public testing::WithParamInterface<int> {};

TEST_P(RefusedCopy, IsMadeByHandInSlices) {
  writeText(folder / "source", "0123456789");
  system.fail(Call::copyRange, GetParam());
  const InputFile source(folder / "source");
  EXPECT_EQ(partial().copyFrom(source, {0, 2, 10}, buffer), 10);
  EXPECT_EQ(readText(partial().path()), std::string("\0\0", 2) + "0123456789");
  EXPECT_EQ(system.count(Call::writeAt), 4);
}

INSTANTIATE_TEST_SUITE_P(PartialFile, RefusedCopy, testing::Values(EXDEV, EINVAL, ENOSYS, EOPNOTSUPP, EPERM, EIO));

TEST_F(PartialFileTest, CopiesOnWhenASignalInterrupts) {
  writeText(folder / "source", "0123456789");
  system.fail(Call::copyRange, EINTR, 2);
  EXPECT_EQ(copyAll(InputFile(folder / "source")), 10);
  EXPECT_EQ(system.count(Call::writeAt), 0);
}

TEST_F(PartialFileTest, PassesOnAFullDiskThatEndsACopy) {
  writeText(folder / "source", "0123456789");
  system.fail(Call::copyRange, ENOSPC);
  system.fail(Call::writeAt, ENOSPC);
  EXPECT_EQ(errorOf([this] { copyAll(InputFile(folder / "source")); }), ENOSPC);
}

TEST_F(PartialFileTest, TellsHowMuchItCopiedOfASourceThatShrank) {
  writeText(folder / "source", "0123456789");
  const InputFile source(folder / "source");
  resize_file(folder / "source", 4);
  EXPECT_EQ(copyAll(source), 4);
}

TEST_F(PartialFileTest, TellsWhenTheSystemCannotClone) {
  writeText(folder / "source", "0123456789");
  system.fail(Call::clone, EOPNOTSUPP);
  EXPECT_FALSE(partial().cloneFrom(InputFile(folder / "source")));
}

TEST_F(PartialFileTest, SynchronizesBeforeItDropsTheCache) {
  system.fail(Call::dropCache, EINVAL);
  partial().synchronizeAndDropCache();
  EXPECT_THAT(system.calls(), ElementsAre(Call::createNew, Call::lock, Call::synchronize, Call::dropCache));
}

TEST_F(PartialFileTest, PassesOnAMediumThatDoesNotTakeTheBytes) {
  system.fail(Call::synchronize, EIO);
  EXPECT_EQ(errorOf([this] { partial().synchronizeAndDropCache(); }), EIO);
}

TEST_F(PartialFileTest, SaysThatItIsTheDestinationThatFails) {
  system.fail(Call::writeAt, ENOSPC);
  try {
    partial().writeAt(0, bytesIn("x"));
    FAIL() << "nothing thrown";
  } catch (const DestinationError& error) {
    EXPECT_EQ(error.code().value(), ENOSPC);
    EXPECT_EQ(error.folder(), folder.path());
  }
  writeText(folder / "taken", "");
  EXPECT_THROW(partial().moveTo(folder / "taken"), DestinationError);
}

TEST_F(PartialFileTest, IsItsOwnersAloneWhenAsked) {
  const mode_t old = umask(0);
  const PartialFile file(system, folder.path(), Access::ownerOnly);
  umask(old);
  struct stat status {};
  ASSERT_EQ(stat(file.path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(PartialFileTest, StaysUnderItsFinalName) {
  partial().writeAt(0, bytesIn("kept"));
  const auto path = partial().path();
  partial().moveTo(folder / "final");
  drop();
  EXPECT_EQ(readText(folder / "final"), "kept");
  EXPECT_FALSE(exists(path));
  EXPECT_THAT(system.calls(), ElementsAre(Call::createNew, Call::lock, Call::writeAt, Call::renameWithoutReplacing,
                                          Call::synchronizeFolder));
}

TEST_F(PartialFileTest, StaysWhenTheFolderCannotBeSynchronized) {
  system.fail(Call::synchronizeFolder, EINVAL);
  partial().moveTo(folder / "final");
  EXPECT_TRUE(exists(folder / "final"));
}

TEST_F(PartialFileTest, IsRemovedWhenItsFinalNameIsTaken) {
  writeText(folder / "final", "somebody else's");
  const auto path = partial().path();
  EXPECT_EQ(errorOf([this] { partial().moveTo(folder / "final"); }), EEXIST);
  drop();
  EXPECT_EQ(readText(folder / "final"), "somebody else's");
  EXPECT_FALSE(exists(path));
}

TEST_F(PartialFileTest, ReplacesAnOldFileWhenToldTo) {
  writeText(folder / "final", "old");
  partial().writeAt(0, bytesIn("new"));
  partial().replace(folder / "final");
  drop();
  EXPECT_EQ(readText(folder / "final"), "new");
}

TEST_F(PartialFileTest, IsRemovedWhenTheProcessGivesUp) {
  writeText(folder / "final", "somebody else's");
  EXPECT_EXIT(
      {
        const PartialFile one(system, folder.path());
        PartialFile other(system, folder.path());
        other.moveTo(folder / "other");
        PartialFile::removeAllAndExit(143);
      },
      testing::ExitedWithCode(143), "");
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    names.push_back(entry.path().filename());
  EXPECT_THAT(names, testing::UnorderedElementsAre("final", "other"));
}

TEST(FolderOf, IsTheWorkingFolderForABareName) {
  EXPECT_EQ(folderOf("name.dng"), ".");
  EXPECT_EQ(folderOf("a/name.dng"), "a");
  EXPECT_EQ(folderOf("/name.dng"), "/");
}

}  // namespace
}  // namespace tessaly
