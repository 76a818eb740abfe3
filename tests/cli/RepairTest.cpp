#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

#include <nlohmann/json.hpp>
#include <sys/ioctl.h>
#include <sys/resource.h>

#include <chrono>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using tools::DNGBuilder;

/// Photographs of one body whose photosite at column 10, row 12 is stuck.
class RepairTest : public ProgramTest {
 protected:
  static DNGBuilder photograph() {
    std::vector<std::uint16_t> values(std::size_t{64} * 48, 1000);
    values[12 * 64 + 10] = 60000;
    return DNGBuilder().size(64, 48).uniqueModel("Body").serial("SN-1").samples(values);
  }

  void SetUp() override {
    fs::create_directory(photos);
    photograph().write(photos / "L1.DNG");
    profile = CameraProfile::empty("Body", DNGReader::readMetadata(photos / "L1.DNG"));
    profile.pixels = {{10, 12, 1.0, "stuck"}};
    writeText(folder / "p.json", encodeProfile(profile));
  }

  static std::vector<std::string> namesIn(const fs::path& listed) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(listed))
      names.push_back(entry.path().filename());
    return names;
  }

  static std::uint16_t sampleOf(const fs::path& file) { return DNGReader::readPlane(file).samples[12 * 64 + 10]; }

  nlohmann::ordered_json summary() { return nlohmann::ordered_json::parse(readText(folder / "summary.json")); }

  CameraProfile profile;
  fs::path photos = folder / "photos";
  fs::path results = photos / "Tessaly Results";
};

TEST_F(RepairTest, OfOneFileWritesTheNamedCopyAndPrintsWhatWasDone) {
  const ProgramResult result = run({"repair-file", "photos/L1.DNG", "copies/new.dng", "--profile", "p.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(sampleOf(folder / "copies" / "new.dng"), 1000);
  EXPECT_EQ(sampleOf(photos / "L1.DNG"), 60000);
  const auto json = nlohmann::ordered_json::parse(result.output);
  EXPECT_THAT(keysOf(json), ElementsAre("destination", "report", "sourceBytes"));
  EXPECT_THAT(json["destination"], HasSubstr("copies/new.dng"));
  EXPECT_EQ(json["report"].dump(), R"({"changedSamples":1,"pointSamples":1,"lineSamples":0,"spotSamples":0})");
  EXPECT_EQ(json["sourceBytes"], fs::file_size(photos / "L1.DNG"));
}

TEST_F(RepairTest, OfOneFileNeverReplacesAnything) {
  writeText(folder / "taken.dng", "mine");
  for (const char* destination : {"taken.dng", "photos/L1.DNG", "p.json", "photos"}) {
    const ProgramResult result = run({"repair-file", "photos/L1.DNG", destination, "--profile", "p.json"});
    EXPECT_EQ(result.status, 1) << destination;
    EXPECT_THAT(result.errors, StartsWith("L1.DNG: ")) << destination;
    EXPECT_THAT(result.errors, HasSubstr("\nCause: Invalid DNG structure: Output exists or equals source\n"));
    EXPECT_EQ(result.output, "") << destination;
  }
  EXPECT_EQ(readText(folder / "taken.dng"), "mine");
}

TEST_F(RepairTest, OfOneFileRefusesAnotherBodysProfile) {
  profile.cameraSerial = "SN-2";
  writeText(folder / "p.json", encodeProfile(profile));
  const ProgramResult result = run({"repair-file", "photos/L1.DNG", "new.dng", "--profile", "p.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, HasSubstr("\nCause: Camera profile mismatch: Camera serial differs or is missing\n"));
  EXPECT_FALSE(fs::exists(folder / "new.dng"));
}

TEST_F(RepairTest, OfAFolderWritesCopiesALogAndASummary) {
  photograph().write(photos / "L2.DNG");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--summary", "summary.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(sampleOf(results / "L1.DNG"), 1000);
  EXPECT_EQ(sampleOf(results / "L2.DNG"), 1000);
  const std::string log = summary()["logURL"];
  EXPECT_EQ(result.output, "Processing complete\n\nSuccess: 2\nFailed: 0\nSkipped: 0\n\nLog: " + log + "\n");
  EXPECT_THAT(readText(log), StartsWith("File,Status,Repaired Samples,Details\n\"L"));
  EXPECT_THAT(keysOf(summary()),
              ElementsAre("total", "succeeded", "failed", "skipped", "cancelled", "failures", "logURL"));
}

TEST_F(RepairTest, PrintsOneLineAFileInItsOrder) {
  photograph().write(photos / "L2.DNG");
  photograph().write(photos / "L10.DNG");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--workers", "1"});
  EXPECT_THAT(linesOf(result.errors),
              ElementsAre("1/3  Success 1  Failed 0  Skipped 0  L1.DNG", "2/3  Success 2  Failed 0  Skipped 0  L2.DNG",
                          "3/3  Success 3  Failed 0  Skipped 0  L10.DNG"));
}

TEST_F(RepairTest, PrintsTwoLinesAFailedFileAndGoesOn) {
  writeText(photos / "L0.DNG", "too short to be one");
  writeText(photos / "x.NEF", "");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--workers", "1", "--no-log"});
  EXPECT_EQ(result.status, 1);
  const auto lines = linesOf(result.errors);
  ASSERT_THAT(lines, SizeIs(5));
  EXPECT_THAT(lines[0], StartsWith("L0.DNG: "));
  EXPECT_THAT(lines[1], StartsWith("Cause: Invalid DNG structure: "));
  EXPECT_EQ(lines[2], "2/3  Success 1  Failed 1  Skipped 0  L1.DNG");
  EXPECT_THAT(lines[3], StartsWith("x.NEF: This camera RAW format"));
  EXPECT_EQ(lines[4], "Cause: Unsupported DNG: Proprietary RAW");
  EXPECT_THAT(result.output, HasSubstr("Success: 1\nFailed: 2\nSkipped: 0\n\nDetails:\nL0.DNG: L0.DNG: "));
  EXPECT_THAT(result.output, HasSubstr("\n\nLog: No log generated\n"));
}

TEST_F(RepairTest, SkipsOrNumbersCopiesThatExist) {
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--no-log"}).status, 0);
  const ProgramResult skipped = run({"repair", "photos", "--profile", "p.json", "--no-log"});
  EXPECT_EQ(skipped.status, 0);
  EXPECT_THAT(skipped.output, HasSubstr("Skipped: 1"));
  EXPECT_EQ(skipped.errors, "1/1  Success 0  Failed 0  Skipped 1  L1.DNG\n");
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--no-log", "--existing", "numberedCopy"}).status, 0);
  EXPECT_THAT(namesIn(results), UnorderedElementsAre("L1.DNG", "L1-2.DNG"));
}

TEST_F(RepairTest, FollowsThePreferencesUnlessTold) {
  fs::create_directories(home / "Tessaly");
  writeText(home / "Tessaly" / "Tessaly.json",
            R"({"Tessaly.settings.collision": "numberedCopy", "Tessaly.settings.saveLog": false,)"
            R"( "Tessaly.settings.language": "fr"})");
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json"}).status, 0);
  EXPECT_THAT(run({"repair", "photos", "--profile", "p.json"}).output,
              "Traitement terminé\n\nRéussis: 1\nÉchecs: 0\nIgnorés: 0\n\nJournal: Aucun journal généré\n");
  EXPECT_THAT(namesIn(results), UnorderedElementsAre("L1.DNG", "L1-2.DNG"));
  EXPECT_THAT(run({"repair", "photos", "--profile", "p.json", "--existing", "skip"}).output, HasSubstr("Ignorés: 1"));
}

TEST_F(RepairTest, WritesIntoTheCustomFolderOfThePreferences) {
  fs::create_directory(folder / "custom");
  fs::create_directories(home / "Tessaly");
  writeText(home / "Tessaly" / "Tessaly.json",
            R"({"Tessaly.settings.customOutput": true, "Tessaly.settings.outputBookmark": ")" +
                (folder / "custom").string() + "\"}");
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--no-log"}).status, 0);
  EXPECT_THAT(namesIn(folder / "custom"), ElementsAre("L1.DNG"));
  fs::remove_all(folder / "custom");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--language", "zh-Hans"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors,
            "已保存的输出文件夹需要重新授权。请在“设置”中重新选择该文件夹，或为本次批处理选择一个输出文件夹。\n"
            "Cause: The saved output folder needs permission again. Choose it in Settings or choose an output folder "
            "for this batch.\n");
}

TEST_F(RepairTest, OfAFileIsABatchOfExactlyThatFile) {
  photograph().write(photos / "L2.DNG");
  const ProgramResult result = run({"repair", "photos/L2.DNG", "--profile", "p.json", "--summary", "summary.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(sampleOf(results / "L2.DNG"), 1000);
  EXPECT_FALSE(fs::exists(results / "L1.DNG"));
  EXPECT_EQ(summary()["total"], 1);
  EXPECT_TRUE(summary().contains("logURL"));
  EXPECT_EQ(run({"repair", "L2.DNG", "--profile", "../p.json", "--output", "../out"},
                [] { static_cast<void>(chdir("photos")); })
                .status,
            0);
  EXPECT_TRUE(fs::exists(folder / "out" / "L2.DNG"));
}

TEST_F(RepairTest, OfAFileWithAnyNameIsTried) {
  photograph().write(photos / "no extension");
  EXPECT_EQ(run({"repair", "photos/no extension", "--profile", "p.json"}).status, 0);
  EXPECT_TRUE(fs::exists(results / "no extension"));
}

TEST_F(RepairTest, ThatCannotStartTellsWhyTwiceAndWritesItsSummary) {
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--output", "photos/.", "--summary",
                                    "summary.json", "--language", "fr"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors,
            "Les dossiers d’entrée et de sortie ne peuvent pas être identiques\n"
            "Cause: Input and output folders cannot be the same\n");
  EXPECT_THAT(result.output, HasSubstr("Détails:\nLes dossiers d’entrée et de sortie ne peuvent pas être identiques"));
  EXPECT_EQ(summary()["failures"].dump(),
            R"([{"filename":"","message":"Input and output folders cannot be the same"}])");
  EXPECT_THAT(namesIn(photos), ElementsAre("L1.DNG"));
}

TEST_F(RepairTest, OfAFolderWithoutPhotographsFails) {
  fs::create_directory(folder / "empty");
  const ProgramResult result = run({"repair", "empty", "--profile", "p.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, StartsWith("No DNG files were found at the top level of the selected folder."));
  EXPECT_THAT(namesIn(folder / "empty"), IsEmpty());
}

TEST_F(RepairTest, OfWhatIsMissingFailsWithItsName) {
  const ProgramResult result = run({"repair", "nowhere", "--profile", "p.json", "--summary", "summary.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "nowhere: No such file or directory\nCause: No such file or directory\n");
  EXPECT_THAT(result.output, StartsWith("Processing complete\n\nSuccess: 0\nFailed: 1\n"));
  EXPECT_EQ(summary()["failed"], 1);
}

TEST_F(RepairTest, IntoWhatIsNoFolderFailsWithItsName) {
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--output", "p.json/out"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "out: Not a directory\nCause: Not a directory\n");
}

TEST_F(RepairTest, NamesEntriesThatCannotBeLookedAtAndFails) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can become another user";
  for (const fs::path& way : {folder.path(), scratch.path(), home})
    fs::create_directories(way), fs::permissions(way, fs::perms::all);
  fs::permissions(photos, fs::perms::group_read | fs::perms::others_read);  // names, but nothing about them
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--output", "out"}, [] {
    if (setresgid(65534, 65534, 65534) != 0 || setresuid(65534, 65534, 65534) != 0) _exit(125);
  });
  fs::permissions(photos, fs::perms::all);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, HasSubstr("Tessaly couldn't look at “L1.DNG” and left it out: Permission denied\n"
                                       "Cause: Permission denied\n"));
}

TEST_F(RepairTest, TellsThatTheDestinationIsFullAndNotThatThePhotographIsBroken) {
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json"}, [] {
    const rlimit bytes{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &bytes);
  });
  EXPECT_EQ(result.status, 1);
  const std::string told = "L1.DNG: Tessaly couldn't write to the folder “" + fs::canonical(results).string() +
                           "”: the file is too large for it. Choose another folder, then retry.";
  EXPECT_EQ(result.errors, told + "\nCause: Unable to read: File too large\n");
  EXPECT_THAT(result.output, HasSubstr("Details:\nL1.DNG: " + told + "\n"));
}

TEST_F(RepairTest, OfOneFileOntoAnExistingOneRefusesAsEver) {
  writeText(folder / "taken.dng", "mine");
  const ProgramResult result = run({"repair-file", "photos/L1.DNG", "taken.dng", "--profile", "p.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors,
            "L1.DNG: This DNG appears incomplete or has invalid image information. Copy the original file again from "
            "your card or backup and retry. For help, email support@tessaly.example with your camera model and we'll "
            "look at adding support.\nCause: Invalid DNG structure: Output exists or equals source\n");
  EXPECT_EQ(readText(folder / "taken.dng"), "mine");
}

TEST_F(RepairTest, OfOneFileNamesTheFolderThatCannotTakeTheCopy) {
  const ProgramResult result =
      run({"repair-file", "photos/L1.DNG", "out/" + std::string(300, 'a') + ".dng", "--profile", "p.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, HasSubstr("/out”: the file's name is too long there."));
  EXPECT_THAT(result.errors, HasSubstr("\nCause: Unable to read: File name too long\n"));
}

TEST_F(RepairTest, NamesTheUnfinishedCopyThatItLeaves) {
  const std::string name = ".0F1E2D3C-4B5A-4978-8796-A5B4C3D2E1F0.partial";
  fs::create_directory(results);
  writeText(results / name, "");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.errors, HasSubstr("Unfinished copy left in place: "));
  EXPECT_THAT(result.errors, HasSubstr(name + " (it changed within the last day)\n"));
  fs::last_write_time(results / name, fs::file_time_type::clock::now() - std::chrono::hours(25));
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json"}).errors.find("Unfinished"), std::string::npos);
  EXPECT_FALSE(fs::exists(results / name));
}

TEST_F(RepairTest, WithoutAProfileTouchesNothing) {
  EXPECT_EQ(run({"repair", "photos", "--profile", "Nobody", "--summary", "summary.json"}).status, 1);
  EXPECT_FALSE(fs::exists(results));
  EXPECT_FALSE(fs::exists(folder / "summary.json"));
}

TEST_F(RepairTest, TakesAStoredProfile) {
  EXPECT_EQ(run({"profiles", "import", "p.json"}).status, 0);
  EXPECT_EQ(run({"repair", "photos", "--profile", "Body"}).status, 0);
  EXPECT_EQ(sampleOf(results / "L1.DNG"), 1000);
}

TEST_F(RepairTest, NeverWritesItsSummaryOverAFileItReadsOrMakes) {
  for (const char* output : {"p.json", "photos/L1.DNG", "photos/Tessaly Results/L1.DNG"}) {
    EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--summary", output}).status, 2) << output;
  }
  EXPECT_FALSE(fs::exists(results)) << "nothing written";
  EXPECT_EQ(readText(folder / "p.json"), encodeProfile(profile));
}

TEST_F(RepairTest, NeverWritesItsSummaryUnderTheNameOfACopy) {
  for (const char* output : {"l1.dng", "L1-2.DNG", "L1-17.dng"}) {
    const ProgramResult result = run(
        {"repair", "photos", "--profile", "p.json", "--summary", "photos/./Tessaly Results/" + std::string(output)});
    EXPECT_EQ(result.status, 2) << output;
    EXPECT_THAT(result.errors, HasSubstr(": a copy has or gets this name\n")) << output;
  }
  EXPECT_FALSE(fs::exists(results)) << "nothing written";
  fs::create_directory(results);
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--summary", "photos/Tessaly Results/L1-x.DNG"}).status, 0);
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--summary", "L1-2.DNG"}).status, 0) << "another folder";
}

TEST_F(RepairTest, NeverWritesItsSummaryOverAPhotograph) {
  writeText(folder / "other.dng", "somebody's");
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--summary", "other.dng"}).status, 2);
  EXPECT_EQ(readText(folder / "other.dng"), "somebody's");
  EXPECT_FALSE(fs::exists(results));
}

TEST_F(RepairTest, WritesItsSummaryToStandardOutputAndItsTextToTheOther) {
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--summary", "-"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(nlohmann::ordered_json::parse(result.output)["succeeded"], 1);
  EXPECT_THAT(result.errors, HasSubstr("Processing complete\n\nSuccess: 1\n"));
}

TEST_F(RepairTest, SaysHowManyWorkersItUses) {
  const auto errors = [this](const char* workers) {
    return linesOf(run({"repair", "photos", "--profile", "p.json", "--workers", workers}).errors).front();
  };
  EXPECT_EQ(errors("9"), "4 workers are used instead of 9.");
  EXPECT_EQ(errors("-3"), "One worker is used instead of -3.");
  EXPECT_THAT(errors("4"), StartsWith("1/1  "));
  EXPECT_THAT(errors("0"), StartsWith("1/1  "));
}

TEST_F(RepairTest, OfNothingHasASubject) {
  const ProgramResult result = run({"repair", "", "--profile", "p.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "\"\": No such file or directory\nCause: No such file or directory\n");
  EXPECT_THAT(run({"inspect", ""}).errors, StartsWith("\"\": Tessaly couldn't open this file."));
}

TEST_F(RepairTest, ThatCannotWriteItsSummaryFailsAfterItsText) {
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--summary", "nowhere/summary.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, StartsWith("Processing complete\n\nSuccess: 1\n"));
  EXPECT_THAT(result.errors, HasSubstr("summary.json: No such file or directory\nCause: No such file or directory\n"));
}

TEST_F(RepairTest, ThatCannotWriteItsLogSaysSoAndFails) {
  // The copy exists already, so that the log is the only thing that the limit refuses.
  ASSERT_EQ(run({"repair", "photos", "--profile", "p.json", "--no-log"}).status, 0);
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json"}, [] {
    const rlimit bytes{16, 16};
    setrlimit(RLIMIT_FSIZE, &bytes);
    int ends[2];
    if (pipe(ends) != 0) _exit(125);
    dup2(ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
  });
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(namesIn(results), ElementsAre("L1.DNG"));
}

TEST_F(RepairTest, ShowsANameThatIsNotUTF8WithReplacementCharacters) {
  photograph().write(photos / "L\xff.DNG");
  const ProgramResult result = run({"repair", "photos", "--profile", "p.json", "--workers", "1", "--no-log"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.errors, HasSubstr("L\xEF\xBF\xBD.DNG\n"));
  EXPECT_TRUE(fs::exists(results / "L\xff.DNG"));
}

/// A terminal on standard error, of so many columns.
class Terminal {
 public:
  explicit Terminal(unsigned short columns) : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    name_ = ptsname(master_);
    kept_ = open(name_.c_str(), O_RDWR | O_NOCTTY);  // so that what was written can be read after the program
    const winsize size{24, columns, 0, 0};
    ioctl(kept_, TIOCSWINSZ, &size);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    close(kept_);
    close(master_);
  }

  [[nodiscard]] std::function<void()> asStandardError() const {
    return [name = name_] { dup2(open(name.c_str(), O_RDWR | O_NOCTTY), STDERR_FILENO); };
  }

  /// What was written so far: everything before a mark that is written now.
  [[nodiscard]] std::string shown() const {
    if (write(kept_, "$", 1) != 1) return {};
    std::string text;
    for (char character = 0; read(master_, &character, 1) == 1 && character != '$';)
      text += character;
    return text;
  }

 private:
  int master_;
  std::string name_;
  int kept_ = -1;
};

TEST_F(RepairTest, ShowsABarOnATerminalAndTheLinesOfFailures) {
  writeText(photos / "L0.DNG", "too short to be one");
  const Terminal terminal(80);
  const ProgramResult result =
      run({"repair", "photos", "--profile", "p.json", "--workers", "1", "--no-log"}, terminal.asStandardError());
  EXPECT_EQ(result.status, 1);
  const std::string shown = terminal.shown();
  EXPECT_THAT(shown, HasSubstr("] 0/2  Preparing…"));
  EXPECT_THAT(shown, HasSubstr("L0.DNG: This DNG"));
  EXPECT_THAT(shown, testing::ContainsRegex("#] 2/2( [0-9.]+/s [0-9:]+)?  L1.DNG"));
  EXPECT_THAT(shown, testing::EndsWith("\r\x1b[K")) << "the bar is removed";
}

TEST_F(RepairTest, KeepsItsBarWithinTheColumns) {
  photograph().write(photos / "a long name that has no room beside the bar.DNG");
  const Terminal terminal(30);
  run({"repair", "photos", "--profile", "p.json", "--no-log"}, terminal.asStandardError());
  std::string line;
  int lines = 0;
  for (const char character : terminal.shown()) {
    line = character == '\r' ? "" : line + character;
    if (line.starts_with("\x1b[K[")) ++lines;
    EXPECT_LT(line.size(), 30U + std::string("\x1b[K").size() + std::string("…").size()) << line;
  }
  EXPECT_GT(lines, 0) << "a bar is there";
}

TEST_F(RepairTest, DrawsNothingOnATerminalThatTakesNoLineBack) {
  const Terminal terminal(80);
  environment["TERM"] = "dumb";
  EXPECT_EQ(run({"repair", "photos", "--profile", "p.json", "--no-log"}, terminal.asStandardError()).status, 0);
  EXPECT_EQ(terminal.shown(), "");
}

}  // namespace
}  // namespace tessaly::tests
