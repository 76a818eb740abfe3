// What the program accepts, what it says about itself, and in which language it speaks.
#include "cli/ProgramTest.h"
#include "support/Program.h"
#include "tools/DNGBuilder.h"

namespace tessaly::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using tools::DNGBuilder;

class GrammarTest : public ProgramTest {};

TEST_F(GrammarTest, PrintsItsVersion) {
  const ProgramResult result = run({"--version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, testing::MatchesRegex("tessaly-cli [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(result.errors, "");
}

TEST_F(GrammarTest, PrintsItsHelp) {
  const ProgramResult result = run({"--help"});
  EXPECT_EQ(result.status, 0);
  for (const char* command : {"inspect", "samples", "calibrate", "repair", "repair-file", "profiles"})
    EXPECT_THAT(result.output, HasSubstr(command));
  EXPECT_EQ(result.errors, "");
}

TEST_F(GrammarTest, DescribesACommandAfterItsName) {
  const ProgramResult result = run({"calibrate", "--help"});
  EXPECT_EQ(result.status, 0);
  for (const char* option : {"FOLDER_OR_FILES", "--result", "--preview", "--inspect", "--name", "--profile", "--save",
                             "--pixel-confidence", "--include", "--language"})
    EXPECT_THAT(result.output, HasSubstr(option));
  EXPECT_THAT(run({"profiles", "list", "--help"}).output, HasSubstr("--language"));
}

TEST_F(GrammarTest, RefusesAWrongCommandLineWithItsUsage) {
  const Arguments wrong[] = {
      {},
      {"develop"},
      {"--colour"},
      {"inspect"},
      {"inspect", "a.dng", "b.dng"},
      {"inspect", "a.dng", "--output", "x"},
      {"samples", "a.dng"},
      {"samples", "--output", "x"},
      {"repair-file", "a.dng", "--profile", "p"},
      {"repair-file", "a.dng", "b.dng"},
      {"repair", "folder"},
      {"repair", "folder", "--profile", "p", "--workers", "two"},
      {"repair", "folder", "--profile", "p", "--workers", "1.5"},
      {"repair", "folder", "--profile", "p", "--existing", "overwrite"},
      {"calibrate"},
      {"calibrate", "folder", "--include", "some"},
      {"calibrate", "folder", "--save"},
      {"calibrate", "folder", "--profile", "p.json"},
      {"calibrate", "folder", "--pixel-confidence", "49"},
      {"calibrate", "folder", "--pixel-confidence", "101"},
      {"calibrate", "folder", "--pixel-confidence", "many"},
      {"profiles"},
      {"profiles", "show"},
      {"profiles", "rename", "a"},
      {"profiles", "validate", "p"},
      {"inspect", "a.dng", "--language", "de"},
      {"inspect", "a.dng", "--language", "system"},
      {"inspect", "a.dng", "--language"},
  };
  for (const Arguments& arguments : wrong) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_THAT(result.errors, HasSubstr("Usage: tessaly-cli")) << testing::PrintToString(arguments);
    EXPECT_EQ(result.output, "") << testing::PrintToString(arguments);
  }
}

TEST_F(GrammarTest, NamesWhatItDoesNotKnow) {
  const auto reason = [this](const Arguments& arguments) { return linesOf(run(arguments).errors).front(); };
  EXPECT_EQ(reason({"develop"}), "tessaly-cli: Unknown command: develop");
  EXPECT_EQ(reason({"--colour"}), "tessaly-cli: Unknown option: --colour");
  EXPECT_EQ(reason({"profiles", "rename", "a"}), "tessaly-cli: Unknown command: rename");
  EXPECT_EQ(reason({"repair", "folder", "--profil", "p"}), "tessaly-cli: Unknown option: --profil");
  EXPECT_EQ(reason({"help", "develop"}), "tessaly-cli: Unknown command: develop");
  EXPECT_EQ(reason({"profiles"}), "tessaly-cli: A subcommand is required");
}

TEST_F(GrammarTest, HelpsByAWordToo) {
  EXPECT_EQ(run({"help"}).output, run({"--help"}).output);
  EXPECT_EQ(run({"help", "calibrate"}).output, run({"calibrate", "--help"}).output);
  EXPECT_EQ(run({"help", "profiles", "list"}).output, run({"profiles", "list", "--help"}).output);
  EXPECT_EQ(run({"help"}).status, 0);
  EXPECT_EQ(run({"-V"}).output, run({"--version"}).output);
}

TEST_F(GrammarTest, ShowsTheUsageOfTheCommandThatWasMeant) {
  EXPECT_THAT(run({"samples", "a.dng"}).errors, HasSubstr("Usage: tessaly-cli samples"));
  EXPECT_THAT(run({"calibrate", "x", "--save"}).errors, HasSubstr("Usage: tessaly-cli calibrate"));
}

TEST_F(GrammarTest, ExplainsAWrongConfidenceInTheChosenLanguage) {
  EXPECT_THAT(run({"calibrate", "x", "--pixel-confidence", "49", "--language", "fr"}).errors,
              HasSubstr("Saisissez une valeur de confiance des pixels de 50 à 100, par exemple 95 ou 98."));
}

TEST_F(GrammarTest, SpeaksTheLanguageThatIsChosenOnAnyCommand) {
  const Arguments commands[] = {
      {"inspect", "missing.dng"}, {"samples", "missing.dng", "--output", "out"}, {"calibrate", "missing.dng"}};
  for (const Arguments& command : commands) {
    Arguments behind = command;
    behind.insert(behind.end(), {"--language", "fr"});
    EXPECT_THAT(run(behind).errors, StartsWith("missing.dng: Tessaly n’a pas pu ouvrir ce fichier."));
    Arguments before{"--language", "zh-Hans"};
    before.insert(before.end(), command.begin(), command.end());
    EXPECT_THAT(run(before).errors, StartsWith("missing.dng: Tessaly 无法打开此文件。"));
    EXPECT_EQ(run(before).status, 1);
  }
}

TEST_F(GrammarTest, TakesTheLanguageOnACommandOfACommand) {
  for (const Arguments& arguments :
       {Arguments{"profiles", "list", "--language", "en"}, Arguments{"profiles", "--language=en", "list"},
        Arguments{"--language", "en", "profiles", "list"}}) {
    EXPECT_EQ(run(arguments).status, 0);
  }
}

TEST_F(GrammarTest, SpeaksTheSavedLanguageWithoutAChoice) {
  std::filesystem::create_directories(home / "Tessaly");
  writeText(home / "Tessaly" / "Tessaly.json", R"({"Tessaly.settings.language": "fr"})");
  EXPECT_THAT(run({"inspect", "missing.dng"}).errors, HasSubstr("Tessaly n’a pas pu ouvrir"));
  EXPECT_THAT(run({"inspect", "missing.dng", "--language", "en"}).errors, HasSubstr("Tessaly couldn't open"));
}

TEST_F(GrammarTest, SpeaksTheFirstLanguageOfTheSystemThatItKnows) {
  environment = {{"LANG", "de_CH.UTF-8"}, {"LANGUAGE", "de_CH:fr_FR:en_US"}};
  EXPECT_THAT(run({"inspect", "missing.dng"}).errors, HasSubstr("Tessaly n’a pas pu ouvrir"));
  environment = {{"LANG", "zh_TW.UTF-8"}};
  EXPECT_THAT(run({"inspect", "missing.dng"}).errors, HasSubstr("Tessaly 无法打开此文件"));
  environment = {{"LANG", "pt_BR.UTF-8"}};
  EXPECT_THAT(run({"inspect", "missing.dng"}).errors, HasSubstr("Tessaly couldn't open"));
}

TEST_F(GrammarTest, KeepsTheCauseInEnglish) {
  const auto lines = linesOf(run({"inspect", "missing.dng", "--language", "zh-Hans"}).errors);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1], "Cause: Unable to read: No such file or directory");
}

TEST_F(GrammarTest, TakesAFileWhoseNameIsACommandOrAnOption) {
  DNGBuilder().write(folder / "samples");
  DNGBuilder().write(folder / "--help");
  EXPECT_EQ(run({"inspect", "samples"}).status, 0);
  const ProgramResult result = run({"inspect", "--", "--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, StartsWith("{"));
}

// It takes longer to load than most of what is asked of the program.
TEST_F(GrammarTest, IsReadWithoutTheToolkitOfTheWindow) {
  const std::string libraries = outputOf("ldd " + quoted(TESSALY_CLI));
  EXPECT_THAT(libraries, HasSubstr("libc.so"));
  EXPECT_THAT(libraries, Not(HasSubstr("Qt")));
}

TEST_F(GrammarTest, TakesAFolderInBracketsBehindAFlag) {
  EXPECT_THAT(run({"calibrate", "--second-opinion", "[c,d]"}).errors, StartsWith("[c,d]: "));
}

}  // namespace
}  // namespace tessaly::tests
