#include "platform/MoveFile.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <system_error>

namespace tessaly {
namespace {

using testing::ElementsAre;
using tests::Call;
using tests::readText;
using tests::writeText;

class MoveFile : public testing::Test {
 protected:
  MoveFile() { writeText(from, "complete"); }

  /// The error number with which the move fails; 0 when it does not.
  int move() {
    try {
      moveWithoutReplacing(system, from, to);
      return 0;
    } catch (const std::system_error& error) {
      return error.code().value();
    }
  }

  void refuse(std::initializer_list<Call> calls, int error) {
    for (const Call call : calls)
      system.fail(call, error);
  }

  void expectMoved() {
    EXPECT_EQ(move(), 0);
    EXPECT_FALSE(exists(from));
    EXPECT_EQ(readText(to), "complete");
  }

  void expectUnmoved(int error, const std::string& destination) {
    EXPECT_EQ(move(), error);
    EXPECT_EQ(readText(from), "complete");
    EXPECT_EQ(readText(to), destination);
  }

  tests::TemporaryFolder folder;
  std::filesystem::path from = folder / "from";
  std::filesystem::path to = folder / "to";
  tests::FailingFileSystem system;
};

TEST_F(MoveFile, RenamesInOneCall) {
  expectMoved();
  EXPECT_THAT(system.calls(), ElementsAre(Call::renameWithoutReplacing));
}

TEST_F(MoveFile, LeavesAFileThatBearsTheNameAlone) {
  writeText(to, "somebody else's");
  expectUnmoved(EEXIST, "somebody else's");
}

TEST_F(MoveFile, LeavesADanglingLinkThatBearsTheNameAlone) {
  create_symlink(folder / "nowhere", to);
  EXPECT_EQ(move(), EEXIST);
  EXPECT_TRUE(is_symlink(symlink_status(to)));
}

class RefusedRename : public MoveFile, public testing::WithParamInterface<int> {};

TEST_P(RefusedRename, LinksInstead) {
  refuse({Call::renameWithoutReplacing}, GetParam());
  expectMoved();
  EXPECT_THAT(system.calls(), ElementsAre(Call::renameWithoutReplacing, Call::link, Call::unlink));
}

TEST_P(RefusedRename, LinksWithoutReplacing) {
  refuse({Call::renameWithoutReplacing}, GetParam());
  writeText(to, "somebody else's");
  expectUnmoved(EEXIST, "somebody else's");
}

TEST_P(RefusedRename, ReplacesAPlaceholderOfItsOwnWhereLinksAreRefusedToo) {
  refuse({Call::renameWithoutReplacing, Call::link}, GetParam());
  expectMoved();
  EXPECT_THAT(system.calls(),
              ElementsAre(Call::renameWithoutReplacing, Call::link, Call::createNew, Call::renameReplacing));
}

TEST_P(RefusedRename, MakesNoPlaceholderInThePlaceOfAFile) {
  refuse({Call::renameWithoutReplacing, Call::link}, GetParam());
  writeText(to, "somebody else's");
  expectUnmoved(EEXIST, "somebody else's");
}

INSTANTIATE_TEST_SUITE_P(MoveFile, RefusedRename, testing::Values(EINVAL, ENOSYS, EOPNOTSUPP, EPERM));

TEST_F(MoveFile, PassesOnEveryOtherRefusalOfTheRename) {
  refuse({Call::renameWithoutReplacing}, EIO);
  EXPECT_EQ(move(), EIO);
  EXPECT_FALSE(exists(to));
  EXPECT_EQ(system.count(Call::link), 0);
}

TEST_F(MoveFile, PassesOnEveryOtherRefusalOfTheLink) {
  refuse({Call::renameWithoutReplacing}, EINVAL);
  refuse({Call::link}, ENOSPC);
  EXPECT_EQ(move(), ENOSPC);
  EXPECT_FALSE(exists(to));
  EXPECT_EQ(system.count(Call::createNew), 0);
}

TEST_F(MoveFile, TriesAgainWhenASignalInterrupts) {
  system.fail(Call::renameWithoutReplacing, EINTR, 3);
  expectMoved();
}

TEST_F(MoveFile, StandsWhenTheOldNameCannotBeRemovedAfterTheLink) {
  refuse({Call::renameWithoutReplacing}, EINVAL);
  refuse({Call::unlink}, EIO);
  EXPECT_EQ(move(), 0);
  EXPECT_EQ(readText(to), "complete");
}

TEST_F(MoveFile, RemovesThePlaceholderWhenItCannotBeReplaced) {
  refuse({Call::renameWithoutReplacing, Call::link}, EINVAL);
  refuse({Call::renameReplacing}, EIO);
  EXPECT_EQ(move(), EIO);
  EXPECT_FALSE(exists(to));
  EXPECT_EQ(readText(from), "complete");
}

TEST_F(MoveFile, LeavesAPlaceholderAloneThatSomebodyHasFilledMeanwhile) {
  refuse({Call::renameWithoutReplacing, Call::link}, EINVAL);
  refuse({Call::renameReplacing}, EIO);
  system.before(Call::renameReplacing, [](const auto& path) { writeText(path, "somebody else's"); });
  expectUnmoved(EIO, "somebody else's");
}

TEST_F(MoveFile, LeavesAFileAloneThatHasTakenThePlaceOfThePlaceholder) {
  refuse({Call::renameWithoutReplacing, Call::link}, EINVAL);
  refuse({Call::renameReplacing}, EIO);
  system.before(Call::renameReplacing, [this](const auto& path) {
    writeText(folder / "other", "somebody else's");
    rename(folder / "other", path);
  });
  expectUnmoved(EIO, "somebody else's");
}

TEST_F(MoveFile, RefusesWhenTheFolderIsReadOnlyOrGone) {
  refuse({Call::renameWithoutReplacing, Call::link}, EINVAL);
  refuse({Call::createNew}, EROFS);
  EXPECT_EQ(move(), EROFS);
  EXPECT_EQ(readText(from), "complete");
}

}  // namespace
}  // namespace tessaly
