#include "platform/AbandonedFiles.h"
#include "platform/PartialFile.h"
#include "platform/UUID.h"
#include "support/FileBytes.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace tessaly {
namespace {

using std::chrono::hours;
using testing::ElementsAre;
using testing::IsEmpty;
using Path = std::filesystem::path;
using Reason = LeftFile::Reason;

class AbandonedFiles : public testing::Test {
 protected:
  [[nodiscard]] Path newName() const { return folder / ("." + UUID::random().text() + ".partial"); }

  static void age(const Path& file, hours since) {
    last_write_time(file, std::filesystem::file_time_type::clock::now() - since);
  }

  [[nodiscard]] Path fileOfAge(hours since) const {
    Path file = newName();
    tests::writeText(file, "part of a copy");
    age(file, since);
    return file;
  }

  tests::TemporaryFolder folder;
};

TEST_F(AbandonedFiles, OfYesterdayAreRemoved) {
  const Path file = fileOfAge(hours(25));
  EXPECT_THAT(removeAbandonedFiles(folder.path()), IsEmpty());
  EXPECT_FALSE(exists(file));
}

TEST_F(AbandonedFiles, OfTodayStayAndAreNamed) {
  const Path file = fileOfAge(hours(23));
  EXPECT_THAT(removeAbandonedFiles(folder.path()), ElementsAre(LeftFile{file, Reason::recent}));
  EXPECT_TRUE(exists(file));
}

TEST_F(AbandonedFiles, ThatSomebodyStillWritesStayAndAreNamed) {
  PartialFile writer(FileSystem::system(), folder.path());
  age(writer.path(), hours(48));
  EXPECT_THAT(removeAbandonedFiles(folder.path()), ElementsAre(LeftFile{writer.path(), Reason::inUse}));
  EXPECT_TRUE(exists(writer.path()));
}

TEST_F(AbandonedFiles, MayBeReadOnlyOnes) {
  const Path file = fileOfAge(hours(48));
  permissions(file, std::filesystem::perms::owner_read);
  EXPECT_THAT(removeAbandonedFiles(folder.path()), IsEmpty());
  EXPECT_FALSE(exists(file));
}

TEST_F(AbandonedFiles, AreNeverFoldersOrLinks) {
  const Path directory = newName();
  create_directory(directory);
  age(directory, hours(48));
  const Path target = folder / "photograph.dng";
  tests::writeText(target, "precious");
  age(target, hours(48));
  const Path link = newName();
  create_symlink(target, link);
  const std::vector<LeftFile> left = removeAbandonedFiles(folder.path());
  EXPECT_THAT(
      left, testing::UnorderedElementsAre(LeftFile{directory, Reason::notRegular}, LeftFile{link, Reason::notRegular}));
  EXPECT_EQ(tests::readText(target), "precious");
}

TEST_F(AbandonedFiles, OfAnotherUserStayAndAreNamed) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser gives files away";
  const Path file = fileOfAge(hours(48));
  permissions(folder.path(), std::filesystem::perms::all);
  EXPECT_EQ(tests::asOrdinaryUser([&] {
              const auto left = removeAbandonedFiles(folder.path());
              return left == std::vector{LeftFile{file, Reason::otherUser}} ? 0 : 1;
            }),
            0);
  EXPECT_TRUE(exists(file));
}

TEST_F(AbandonedFiles, HaveExactlyTheNameOfATemporaryFile) {
  const std::string identifier = "0F1E2D3C-4B5A-4978-8796-A5B4C3D2E1F0";
  EXPECT_TRUE(isTemporaryName("." + identifier + ".partial"));
  const std::string lower = "0f1e2d3c-4b5a-4978-8796-a5b4c3d2e1f0";
  for (const std::string& name : {identifier + ".partial", "." + lower + ".partial", "." + identifier + ".part",
                                  "." + identifier + ".partial.dng", "." + identifier + "0.partial",
                                  std::string(".partial"), std::string("..partial"), std::string(".a.partial")}) {
    EXPECT_FALSE(isTemporaryName(name)) << name;
  }
}

TEST_F(AbandonedFiles, OfOtherNamesAreNeitherRemovedNorNamed) {
  for (const char* name : {".other.partial", "L1.dng", ".hidden"}) {
    tests::writeText(folder / name, "");
    age(folder / name, hours(48));
  }
  EXPECT_THAT(removeAbandonedFiles(folder.path()), IsEmpty());
  EXPECT_TRUE(exists(folder / ".other.partial"));
}

TEST_F(AbandonedFiles, AreNoneInAFolderThatIsMissing) {
  EXPECT_THAT(removeAbandonedFiles(folder / "missing"), IsEmpty());
}

}  // namespace
}  // namespace tessaly
