#include "platform/FolderNames.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <system_error>

namespace tessaly {
namespace {

TEST(FolderNames, AreThoseOfAllEntriesByteForByte) {
  const tests::TemporaryFolder folder;
  for (const char* name : {"a.dng", ".hidden", "line\nbreak", "not\xFFutf8"})
    tests::writeText(folder / name, "");
  std::filesystem::create_directory(folder / "sub");
  std::filesystem::create_symlink("nowhere", folder / "link");
  EXPECT_THAT(namesInFolder(folder.path()),
              testing::UnorderedElementsAre("a.dng", ".hidden", "line\nbreak", "not\xFFutf8", "sub", "link"));
  EXPECT_THAT(namesInFolder(folder / "sub"), testing::IsEmpty());
}

TEST(FolderNames, OfWhatCannotBeListedAreAnErrorWithThePath) {
  const tests::TemporaryFolder folder;
  tests::writeText(folder / "file", "");
  for (const auto& [name, error] :
       {std::pair("file", std::errc::not_a_directory), std::pair("missing", std::errc::no_such_file_or_directory)}) {
    try {
      static_cast<void>(namesInFolder(folder / name));
      ADD_FAILURE() << name;
    } catch (const std::filesystem::filesystem_error& refused) {
      EXPECT_EQ(refused.code(), error);
      EXPECT_EQ(refused.path1(), folder / name);
    }
  }
}

}  // namespace
}  // namespace tessaly
