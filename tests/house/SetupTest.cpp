// What tools/setup.sh, which ./run and ./test share, shows of a build.
#include "support/FileBytes.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>

namespace tessaly::house {
namespace {

using testing::HasSubstr;

class SetupTest : public testing::Test {
 protected:
  /// Everything that these commands print, with the script read before.
  [[nodiscard]] static std::string printed(const std::string& commands) {
    return tests::outputOf("bash -c " + tests::quoted("source " TESSALY_SOURCE_FOLDER "/tools/setup.sh; " + commands));
  }

  tests::TemporaryFolder folder;
  std::string log = (folder / "build.log").string();
};

TEST_F(SetupTest, TellsHowManyTargetsOfABuildAreDone) {
  const std::string build =
      "(echo -- Configuring done; for i in {1..20}; do echo \"[$i/20] Building CXX object $i.o\"; done)";
  EXPECT_EQ(printed(build + " | show_progress " + log),
            "  2 of 20\n  4 of 20\n  6 of 20\n  8 of 20\n  10 of 20\n  12 of 20\n  14 of 20\n  16 of 20\n"
            "  18 of 20\n  20 of 20\n");
  EXPECT_THAT(tests::readText(log), HasSubstr("-- Configuring done\n[1/20] Building CXX object 1.o\n"));
}

TEST_F(SetupTest, ShowsOnlyWhatWentWrong) {
  tests::writeText(log, "[1/2] Building CXX object 1.o\n[2/2] Linking CXX executable x\nld: no such thing\n");
  EXPECT_EQ(printed("show_failure " + log + "; echo $?"), "ld: no such thing\n1\n");
}

TEST_F(SetupTest, SaysHowLongTheFirstBuildTakesAndOnlyThen) {
  const std::string root = "root=" + folder.path().string() + "; nproc() { echo 4; }; ";
  EXPECT_EQ(printed(root + "first_build release"), " The first time takes about 2 min on 4 processors.\n");
  EXPECT_EQ(printed(root + "mkdir -p $root/build/release; touch $root/build/release/.ninja_log; first_build release"),
            "");
  EXPECT_EQ(printed(root + "first_build tsan"), "") << "not known";
}

}  // namespace
}  // namespace tessaly::house
