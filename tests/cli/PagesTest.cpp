// The manual page and the completions are what the grammar gives, and the shells take them.
#include "cli/RepairScene.h"

namespace tessaly::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PagesTest : public RepairScene {
 protected:
  static std::string inProject(const std::string& name) {
    return readText(std::filesystem::path(TESSALY_SOURCE_FOLDER) / name);
  }

  /// What bash offers when Tab is pressed behind these words.
  std::vector<std::string> offered(const std::string& words) {
    const std::string program = std::filesystem::path(TESSALY_CLI).parent_path();
    writeText(folder / "offer.sh", "PATH=" + program +
                                       ":$PATH\nsource " TESSALY_SOURCE_FOLDER
                                       "/completions/tessaly-cli.bash\nCOMP_WORDS=(tessaly-cli " +
                                       words +
                                       ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_tessaly_cli\n"
                                       "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const std::string command = "cd " + folder.path().native() + " && TESSALY_HOME=" + home.native() +
                                " bash offer.sh > offered 2> offered-errors";
    EXPECT_EQ(std::system(command.c_str()), 0) << words;
    EXPECT_EQ(readText(folder / "offered-errors"), "") << words;
    std::vector<std::string> lines = linesOf(readText(folder / "offered"));
    std::erase(lines, "");
    return lines;
  }
};

TEST_F(PagesTest, InTheProjectAreThoseOfTheGrammar) {
  EXPECT_EQ(inProject("man/tessaly-cli.1"), run({"help", "--page", "man"}).output)
      << "tools/make-pages.sh writes them anew";
  for (const char* shell : {"bash", "zsh", "fish"})
    EXPECT_EQ(inProject(std::string("completions/tessaly-cli.") + shell), run({"help", "--page", shell}).output)
        << "tools/make-pages.sh writes them anew";
}

TEST_F(PagesTest, OfferCommandsOptionsAndFixedValues) {
  EXPECT_THAT(offered("rep"), ElementsAre("repair", "repair-file"));
  EXPECT_THAT(offered("profiles im"), ElementsAre("import"));
  EXPECT_THAT(offered("repair --ex"), ElementsAre("--existing"));
  EXPECT_THAT(offered("repair --existing ''"), ElementsAre("skip", "numberedCopy"));
  EXPECT_THAT(offered("repair --workers ''"), IsEmpty());
  EXPECT_THAT(offered("inspect --language z"), ElementsAre("zh-Hans"));
}

TEST_F(PagesTest, OfferFoldersAndFiles) {
  std::filesystem::create_directory(folder / "a folder");
  writeText(folder / "a file", "");
  EXPECT_THAT(offered("repair --output a"), ElementsAre("a folder"));
  EXPECT_THAT(offered("inspect a"), testing::UnorderedElementsAre("a folder", "a file"));
}

TEST_F(PagesTest, OfferTheNamesOfStoredProfiles) {
  CameraProfile profile = CameraProfile::empty("My body", DNGReader::readMetadata(folder / "photos/L1.DNG"));
  profile.pixels = {{10, 12, 1.0, "stuck"}};
  writeText(folder / "p.json", encodeProfile(profile));
  EXPECT_THAT(offered("repair --profile My"), IsEmpty());
  ASSERT_EQ(run({"profiles", "import", "p.json"}).status, 0);
  EXPECT_THAT(offered("repair --profile My"), ElementsAre("My\\ body"));
  EXPECT_THAT(offered("profiles show My"), ElementsAre("My\\ body"));
}

}  // namespace
}  // namespace tessaly::tests
