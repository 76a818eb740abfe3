#include "preferences/UserFolders.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <map>
#include <string>

namespace tessaly {
namespace {

/// The environment as the test wants it: the named variables and none of the others that matter.
class UserFoldersTest : public testing::Test {
 protected:
  void environment(const std::map<std::string, std::string>& variables) {
    for (const char* name : {"TESSALY_HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "HOME"}) {
      const auto found = variables.find(name);
      if (found == variables.end()) {
        unsetenv(name);
      } else {
        setenv(name, found->second.c_str(), 1);
      }
    }
  }
};

TEST_F(UserFoldersTest, LieBelowTheHomeFolder) {
  environment({{"HOME", "/home/ana"}});
  EXPECT_EQ(applicationSupportFolder(), "/home/ana/.local/share");
  EXPECT_EQ(preferencesFile(), "/home/ana/.config/Tessaly/Tessaly.json");
}

TEST_F(UserFoldersTest, FollowTheBaseFoldersOfTheEnvironment) {
  environment({{"HOME", "/home/ana"}, {"XDG_DATA_HOME", "/data"}, {"XDG_CONFIG_HOME", "/config"}});
  EXPECT_EQ(applicationSupportFolder(), "/data");
  EXPECT_EQ(preferencesFile(), "/config/Tessaly/Tessaly.json");
}

TEST_F(UserFoldersTest, IgnoreBaseFoldersThatAreEmptyOrRelative) {
  environment({{"HOME", "/home/ana"}, {"XDG_DATA_HOME", ""}, {"XDG_CONFIG_HOME", "config"}});
  EXPECT_EQ(applicationSupportFolder(), "/home/ana/.local/share");
  EXPECT_EQ(preferencesFile(), "/home/ana/.config/Tessaly/Tessaly.json");
}

TEST_F(UserFoldersTest, LieInTessalyHomeWhenItIsSet) {
  environment({{"HOME", "/home/ana"}, {"XDG_DATA_HOME", "/data"}, {"TESSALY_HOME", "/portable"}});
  EXPECT_EQ(applicationSupportFolder(), "/portable");
  EXPECT_EQ(preferencesFile(), "/portable/Tessaly/Tessaly.json");
}

TEST_F(UserFoldersTest, HoldTheEarlierSettingsBesideThePresentOnes) {
  environment({{"HOME", "/home/ana"}});
  EXPECT_EQ(earlierPreferencesFile(), "/home/ana/.config/Tessaly/Tessaly.ini");
}

TEST_F(UserFoldersTest, TakeAnEmptyTessalyHomeForNone) {
  environment({{"HOME", "/home/ana"}, {"TESSALY_HOME", ""}});
  EXPECT_EQ(applicationSupportFolder(), "/home/ana/.local/share");
}

TEST_F(UserFoldersTest, AreAbsoluteInARelativeTessalyHome) {
  environment({{"TESSALY_HOME", "portable"}});
  EXPECT_EQ(applicationSupportFolder(), std::filesystem::current_path() / "portable");
}

TEST_F(UserFoldersTest, AreFoundWithoutAnEnvironment) {
  environment({});
  EXPECT_TRUE(applicationSupportFolder().is_absolute());
}

}  // namespace
}  // namespace tessaly
