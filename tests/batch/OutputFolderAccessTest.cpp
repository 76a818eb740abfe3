#include "batch/OutputFolderAccess.h"
#include "localization/Localization.h"
#include "preferences/AppPreferences.h"
#include "support/FileBytes.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>
#include <system_error>

namespace tessaly {
namespace {

using tests::TemporaryFolder;
using tests::writeText;

const std::string permissionText =
    "The saved output folder needs permission again. Choose it in Settings or choose an output folder for this batch.";

class OutputFolderAccessTest : public testing::Test {
 protected:
  void SetUp() override { AppPreferences::shared().reset(); }

  static std::string refusal() {
    try {
      return "resolved " + OutputFolderAccess::resolve().native();
    } catch (const OutputFolderPermission& error) {
      return error.what();
    }
  }

  const TemporaryFolder folder;
};

TEST_F(OutputFolderAccessTest, GivesBackTheSavedFolder) {
  OutputFolderAccess::save(folder.path());
  EXPECT_EQ(OutputFolderAccess::resolve(), folder.path());
  EXPECT_EQ(AppPreferences::shared().outputBookmark(), folder.path().native());
  EXPECT_EQ(AppPreferences::shared().outputPath(), folder.path().native());
}

TEST_F(OutputFolderAccessTest, KeepsTheBytesOfANameThatIsNotUTF8) {
  const std::filesystem::path odd = folder / "a\xFF b";
  std::filesystem::create_directory(odd);
  OutputFolderAccess::save(odd);
  EXPECT_EQ(OutputFolderAccess::resolve(), odd);
  EXPECT_EQ(AppPreferences::shared().outputPath(), (folder / "a\uFFFD b").native());
}

TEST_F(OutputFolderAccessTest, SavesARelativePathAsAbsolute) {
  OutputFolderAccess::save(".");
  EXPECT_TRUE(OutputFolderAccess::resolve().is_absolute());
}

TEST_F(OutputFolderAccessTest, RefusesToSaveWhatIsNoFolderAndChangesNothing) {
  OutputFolderAccess::save(folder.path());
  writeText(folder / "file", "");
  EXPECT_THROW(OutputFolderAccess::save(folder / "file"), std::system_error);
  EXPECT_THROW(OutputFolderAccess::save(folder / "missing"), std::system_error);
  EXPECT_EQ(OutputFolderAccess::resolve(), folder.path());
  EXPECT_EQ(AppPreferences::shared().outputPath(), folder.path().native());
}

TEST_F(OutputFolderAccessTest, NeedsPermissionWhenNothingWasSaved) {
  EXPECT_EQ(refusal(), permissionText);
}

TEST_F(OutputFolderAccessTest, NeedsPermissionWhenTheFolderIsGoneOrNone) {
  const std::filesystem::path chosen = folder / "chosen";
  std::filesystem::create_directory(chosen);
  OutputFolderAccess::save(chosen);
  std::filesystem::remove(chosen);
  EXPECT_EQ(refusal(), permissionText);
  writeText(chosen, "a file now");
  EXPECT_EQ(refusal(), permissionText);
}

TEST_F(OutputFolderAccessTest, NeedsPermissionWhenTheFolderCannotBeWritten) {
  using std::filesystem::perms;
  const std::filesystem::path locked = folder / "locked";
  const std::filesystem::path open = folder / "open";
  std::filesystem::create_directory(locked);
  std::filesystem::create_directory(open);
  std::filesystem::permissions(locked, perms::owner_read | perms::owner_exec | perms::others_read | perms::others_exec);
  std::filesystem::permissions(open, perms::all);
  for (const std::filesystem::path& way : {folder.path(), std::filesystem::path(::getenv("TESSALY_HOME"))})
    std::filesystem::permissions(way, perms::others_read | perms::others_exec, std::filesystem::perm_options::add);
  OutputFolderAccess::save(locked);
  EXPECT_EQ(tests::asOrdinaryUser([] { return refusal() == permissionText ? 0 : 1; }), 0);
  OutputFolderAccess::save(open);
  EXPECT_EQ(tests::asOrdinaryUser([&] { return refusal() == "resolved " + open.native() ? 0 : 1; }), 0);
}

TEST_F(OutputFolderAccessTest, AsksForPermissionInTheInterfacesLanguage) {
  Localization::setLanguageOverride(AppLanguage::chinese);
  const std::string seen = refusal();
  Localization::setLanguageOverride(AppLanguage::english);
  EXPECT_EQ(seen, "已保存的输出文件夹需要重新授权。请在“设置”中重新选择该文件夹，或为本次批处理选择一个输出文件夹。");
}

}  // namespace
}  // namespace tessaly
