// Calibration through the command line, on a small simulated body.
#include "cli/ProgramTest.h"
#include "profile/CameraProfileJSON.h"
#include "support/CaughtSignals.h"
#include "tools/SensorSimulator.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;
using tools::DNGBuilder;

/// Takes nothing until it is emptied: a program is held where it writes into it.
class FullPipe {
 public:
  FullPipe() {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0) throw std::runtime_error("Cannot make a pipe");
    const std::string filling(static_cast<std::size_t>(fcntl(ends_[1], F_GETPIPE_SZ)), ' ');
    if (write(ends_[1], filling.data(), filling.size()) < 0) throw std::runtime_error("Cannot fill a pipe");
  }
  FullPipe(const FullPipe&) = delete;
  FullPipe& operator=(const FullPipe&) = delete;
  ~FullPipe() { close(ends_[0]); }

  void become(int descriptor) const { dup2(ends_[1], descriptor); }

  /// Reads until nobody writes any more.
  void empty() const {
    close(ends_[1]);
    std::array<char, 4096> dropped{};
    while (read(ends_[0], dropped.data(), dropped.size()) > 0) {
    }
  }

 private:
  std::array<int, 2> ends_{};
};

/// Three bright and three dark frames at each of two exposures, with three hot pixels.
class CalibrateTest : public ProgramTest {
 protected:
  static tools::SensorSimulator body() {
    tools::SensorDescription sensor;
    sensor.width = 300;
    sensor.height = 80;
    sensor.activeX = 8;
    sensor.activeY = 4;
    sensor.activeWidth = 284;
    sensor.activeHeight = 72;
    tools::PlantedDefects defects;
    for (const std::int64_t x : {60, 120, 200})
      defects.pixels.push_back({x, 40, tools::PlantedPixel::Kind::stuck, 0.9});
    return {sensor, defects};
  }

  /// Written once: rendering is the slow part.
  static const fs::path& sharedFrames() {
    static const TemporaryFolder shared;
    static const bool written = [] {
      writeFrames(shared.path());
      return true;
    }();
    static_cast<void>(written);
    return shared.path();
  }

  static void writeFrames(const fs::path& target) {
    const tools::SensorSimulator sensor = body();
    std::uint64_t number = 0;
    for (const std::int64_t iso : {100, 200}) {
      writeGroup(sensor, target, {iso, {1, 60}}, tools::flatField(284, 72, 0.5), number);
      writeGroup(sensor, target, {iso, {1, 4}}, tools::darkness(), number);
    }
  }

  /// `number` counts the frames that were written before.
  static void writeGroup(const tools::SensorSimulator& sensor, const fs::path& target, const tools::Exposure& exposure,
                         const tools::Scene& scene, std::uint64_t& number) {
    for (int i = 0; i < 3; ++i) {
      const auto samples = sensor.render(scene, exposure, ++number, tools::Condition::damaged);
      sensor.file(exposure, samples).write(target / ("IMG_" + std::to_string(number) + ".dng"));
    }
  }

  void SetUp() override { fs::copy(sharedFrames(), frames); }

  nlohmann::ordered_json result() { return nlohmann::ordered_json::parse(readText(folder / "result.json")); }

  fs::path frames = folder / "frames";
};

TEST_F(CalibrateTest, PrintsTheCompletionLineAndALineAFrame) {
  const ProgramResult printed = run({"calibrate", "frames"});
  EXPECT_EQ(printed.status, 0);
  EXPECT_THAT(printed.output, StartsWith("Complete: 6 bright-field, 6 dark, "));
  EXPECT_THAT(printed.output, testing::EndsWith(". Review at high zoom before saving.\n"));
  const auto lines = linesOf(printed.errors);
  ASSERT_THAT(lines, SizeIs(12));
  EXPECT_THAT(lines.front(), StartsWith("1/12  Analyzing IMG_"));
  EXPECT_THAT(lines.back(), StartsWith("12/12  Analyzing IMG_"));
}

TEST_F(CalibrateTest, SpeaksFrench) {
  const ProgramResult printed = run({"calibrate", "frames", "--language", "fr"});
  EXPECT_THAT(printed.output, StartsWith("Terminé : 6 images claires, 6 images noires, "));
  EXPECT_THAT(linesOf(printed.errors).front(), StartsWith("1/12  Analyse de IMG_"));
}

TEST_F(CalibrateTest, WritesTheResultInItsOrder) {
  ASSERT_EQ(run({"calibrate", "frames", "--result", "result.json"}).status, 0);
  EXPECT_THAT(keysOf(result()), ElementsAre("metadata", "brightFrameCount", "darkFrameCount", "lineEvidenceFrameCount",
                                            "lineExposureGroupCount", "candidates", "included", "preview"));
  EXPECT_EQ(result()["brightFrameCount"], 6);
  EXPECT_EQ(result()["lineExposureGroupCount"], 2);
  EXPECT_EQ(result()["preview"].dump(), R"({"width":284,"height":72})");
  EXPECT_EQ(result()["included"].size(), result()["candidates"].size());
  const auto candidates = result()["candidates"];
  const auto hot =
      std::ranges::find_if(candidates, [](const auto& one) { return one["kind"] == "pixel" && one["x"] == 60; });
  ASSERT_NE(hot, candidates.end());
  EXPECT_FALSE(hot->contains("evidenceSigma")) << "absent optionals are omitted";
  EXPECT_EQ((*hot)["yStart"], 40);
}

TEST_F(CalibrateTest, IncludesWhatItIsAskedTo) {
  const auto included = [this](const Arguments& more) {
    Arguments arguments{"calibrate", "frames", "--result", "result.json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(run(arguments).status, 0);
    const auto flags = result()["included"].get<std::vector<bool>>();
    return std::count(flags.begin(), flags.end(), true);
  };
  EXPECT_EQ(included({"--include", "none"}), 0);
  EXPECT_EQ(included({"--include", "all"}), static_cast<std::ptrdiff_t>(result()["candidates"].size()));
  EXPECT_GE(included({"--pixel-confidence", " 50% "}), included({"--include", "preselected"}));
}

TEST_F(CalibrateTest, TellsTheSecondOpinionOnlyWhenAsked) {
  ASSERT_EQ(run({"calibrate", "frames", "--result", "result.json", "--include", "all"}).status, 0);
  const auto alone = result();
  ASSERT_EQ(run({"calibrate", "frames", "--result", "result.json", "--include", "all", "--second-opinion"}).status, 0);
  auto both = result();
  ASSERT_TRUE(both.contains("secondOpinion"));
  EXPECT_EQ(both["included"].size(), both["candidates"].size()) << "findings are never included";
  EXPECT_TRUE(std::ranges::any_of(both["secondOpinion"], [](const auto& one) {
    return one["kind"] == "pixel" && one["x"] == 60 && one["yStart"] == 40 && one.contains("finder");
  }));
  both.erase("secondOpinion");
  ASSERT_EQ(both["candidates"].size(), alone["candidates"].size());
  for (std::size_t i = 0; i < both["candidates"].size(); ++i) {
    EXPECT_FALSE(alone["candidates"][i].contains("confirmed"));
    EXPECT_EQ(both["candidates"][i]["confirmed"], true);
    both["candidates"][i].erase("confirmed");
    both["candidates"][i]["id"] = alone["candidates"][i]["id"];
  }
  EXPECT_EQ(both.dump(), alone.dump());
}

TEST_F(CalibrateTest, WritesASensorReportAndNothingOfItIntoTheResult) {
  const auto outcome = run({"calibrate", "frames", "--result", "result.json", "--report", "report.html"});
  ASSERT_EQ(outcome.status, 0);
  EXPECT_FALSE(result().contains("secondOpinion"));
  EXPECT_THAT(readText(folder / "report.html"), StartsWith("<!DOCTYPE html>\n<html lang=\"en\">"));
  EXPECT_THAT(readText(folder / "report.html"), HasSubstr("<h1>Sensor Report</h1>"));
  EXPECT_THAT(outcome.errors, HasSubstr("Second opinion: "));
}

TEST_F(CalibrateTest, WritesThePreviewAsPGM) {
  ASSERT_EQ(run({"calibrate", "frames", "--preview", "p.pgm"}).status, 0);
  const std::string picture = readText(folder / "p.pgm");
  EXPECT_THAT(picture, StartsWith("P5\n284 72\n255\n"));
  EXPECT_EQ(picture.size(), std::string("P5\n284 72\n255\n").size() + std::size_t{284} * 72);
}

TEST_F(CalibrateTest, WritesTheInspectionPreviewInstead) {
  ASSERT_EQ(run({"calibrate", "frames", "--preview", "bright.pgm", "--result", "result.json"}).status, 0);
  ASSERT_EQ(run({"calibrate", "frames", "--preview", "dark.pgm", "--inspect", "frames/IMG_12.dng"}).status, 0);
  EXPECT_THAT(readText(folder / "dark.pgm"), StartsWith("P5\n284 72\n255\n"));
  EXPECT_NE(readText(folder / "dark.pgm"), readText(folder / "bright.pgm"));
}

TEST_F(CalibrateTest, InspectsOnlyAPhotographOfTheSameBody) {
  DNGBuilder().size(300, 80).serial("another").write(folder / "other.dng");
  const ProgramResult printed = run({"calibrate", "frames", "--inspect", "other.dng", "--result", "result.json"});
  EXPECT_EQ(printed.status, 1);
  EXPECT_THAT(printed.errors, HasSubstr("The problem DNG does not match the calibration camera or sensor dimensions\n"
                                        "Cause: The problem DNG does not match"));
  EXPECT_EQ(result()["brightFrameCount"], 6) << "the analysis stands";
}

TEST_F(CalibrateTest, MakesAProfileOfTheIncludedCandidates) {
  const ProgramResult printed = run({"calibrate", "frames", "--name", "  My body \n", "--profile", "p.json", "--save",
                                     "--include", "all", "--result", "result.json"});
  EXPECT_EQ(printed.status, 0);
  const CameraProfile profile = decodeProfile(readText(folder / "p.json"));
  EXPECT_EQ(profile.name, "My body");
  EXPECT_EQ(profile.pixels.size() + profile.lines.size() + profile.spots->size(), result()["candidates"].size());
  EXPECT_THAT(printed.errors, HasSubstr("Saved “My body”: "));
  EXPECT_THAT(linesOf(printed.output), SizeIs(1));
  EXPECT_EQ(run({"profiles", "show", "My body"}).output, readText(folder / "p.json"));
  EXPECT_EQ(run({"profiles", "validate", "p.json", "frames/IMG_1.dng"}).status, 0);
}

TEST_F(CalibrateTest, RefusesAProfileWithoutACandidate) {
  const ProgramResult printed =
      run({"calibrate", "frames", "--name", "x", "--save", "--include", "none", "--language", "fr"});
  EXPECT_EQ(printed.status, 1);
  EXPECT_THAT(printed.errors,
              HasSubstr("Incluez au moins un pixel défectueux, une colonne défectueuse ou une tache fixe confirmés.\n"
                        "Cause: Include at least one confirmed defective pixel, column, or fixed spot.\n"));
  EXPECT_EQ(run({"profiles", "list"}).output, "");
}

TEST_F(CalibrateTest, RefusesABlankNameBeforeTheWork) {
  const ProgramResult printed = run({"calibrate", "frames", "--name", " ", "--save"});
  EXPECT_EQ(printed.status, 1);
  EXPECT_EQ(printed.errors, "Enter a camera profile name.\nCause: Enter a camera profile name.\n");
}

TEST_F(CalibrateTest, RefusesAFolderWithFewerThanThreeFiles) {
  fs::create_directory(folder / "two");
  for (const char* name : {"a.dng", "b.dng"})
    DNGBuilder().write(folder / "two" / name);
  writeText(folder / "two" / ".c.dng", "hidden");
  const ProgramResult printed = run({"calibrate", "two", "--language", "zh-Hans"});
  EXPECT_EQ(printed.status, 1);
  EXPECT_EQ(printed.errors,
            "该文件夹中的 DNG 文件少于三个\n"
            "Cause: Invalid DNG structure: At least three calibration DNG files are required\n");
}

TEST_F(CalibrateTest, DescribesAnErrorOfNoFileWithTheFoldersName) {
  for (const Arguments& arguments :
       {Arguments{"calibrate", "frames/IMG_1.dng", "frames/IMG_2.dng"},
        Arguments{"calibrate", "frames/IMG_4.dng", "frames/IMG_5.dng", "frames/IMG_6.dng"}}) {
    const ProgramResult printed = run(arguments);
    EXPECT_EQ(printed.status, 1);
    const auto lines = linesOf(printed.errors);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_THAT(lines[lines.size() - 2], StartsWith("frames: There aren't enough usable calibration frames."));
    EXPECT_THAT(lines.back(), StartsWith("Cause: Invalid DNG structure: "));
  }
}

TEST_F(CalibrateTest, DescribesAnErrorOfAFileWithItsName) {
  writeText(frames / "IMG_7b.dng", "too short to be one");
  EXPECT_THAT(run({"calibrate", "frames"}).errors, HasSubstr("IMG_7b.dng: This DNG appears incomplete"));
  fs::remove(frames / "IMG_7b.dng");
  writeText(frames / "x.NEF", "");
  EXPECT_THAT(run({"calibrate", "frames"}).errors, HasSubstr("Cause: Unsupported DNG: Proprietary RAW\n"));
}

TEST_F(CalibrateTest, FailsForWhatIsMissing) {
  const ProgramResult printed = run({"calibrate", "nowhere"});
  EXPECT_EQ(printed.status, 1);
  EXPECT_THAT(printed.errors, StartsWith("nowhere: Tessaly couldn't open this file."));
  EXPECT_THAT(printed.errors, HasSubstr("\nCause: Unable to read: No such file or directory\n"));
}

TEST_F(CalibrateTest, TakesAFolderInBracketsForAFolder) {
  fs::rename(frames, folder / "[a,b]");
  EXPECT_EQ(run({"calibrate", "[a,b]"}).status, 0);
  const ProgramResult printed = run({"calibrate", "--name", "[a,b]", "--save", "--include", "all", "[a,b]"});
  EXPECT_THAT(printed.errors, HasSubstr("Saved “[a,b]”: "));
}

TEST_F(CalibrateTest, NeverReplacesAFileItReads) {
  for (const char* option : {"--result", "--preview", "--profile", "--report"}) {
    EXPECT_EQ(run({"calibrate", "frames", option, "frames/IMG_1.dng", "--name", "x"}).status, 2) << option;
    EXPECT_EQ(run({"calibrate", "frames", option, "i.dng", "--inspect", "i.dng", "--name", "x"}).status, 2) << option;
  }
  EXPECT_EQ(run({"calibrate", "frames", "--result", "same", "--preview", "./same"}).status, 2);
  EXPECT_FALSE(fs::exists(folder / "same"));
}

TEST_F(CalibrateTest, NeverReplacesAPhotograph) {
  writeText(folder / "photo.dng", "somebody's");
  for (const char* option : {"--result", "--preview", "--profile"}) {
    const ProgramResult printed = run({"calibrate", "frames", "--name", "x", option, "photo.dng"});
    EXPECT_EQ(printed.status, 2) << option;
    EXPECT_THAT(printed.errors, HasSubstr("photo.dng: Output exists\n")) << option;
  }
  EXPECT_EQ(readText(folder / "photo.dng"), "somebody's");
}

TEST_F(CalibrateTest, WritesOneOfItsResultsToStandardOutputAndSpeaksOnTheOther) {
  ASSERT_EQ(run({"calibrate", "frames", "--preview", "p.pgm"}).status, 0);
  const ProgramResult preview = run({"calibrate", "frames", "--preview", "-"});
  EXPECT_EQ(preview.output, readText(folder / "p.pgm"));
  EXPECT_THAT(linesOf(preview.errors).back(), StartsWith("Complete: 6 bright-field, 6 dark, "));
  const ProgramResult json = run({"calibrate", "frames", "--result", "-"});
  EXPECT_EQ(nlohmann::ordered_json::parse(json.output)["brightFrameCount"], 6);
  const ProgramResult profile = run({"calibrate", "frames", "--name", "x", "--include", "all", "--profile", "-"});
  EXPECT_EQ(decodeProfile(profile.output).name, "x");
  EXPECT_FALSE(fs::exists(folder / "-"));
}

TEST_F(CalibrateTest, HasOneStandardOutput) {
  const ProgramResult printed = run({"calibrate", "frames", "--result", "-", "--preview", "-"});
  EXPECT_EQ(printed.status, 2);
  EXPECT_EQ(printed.output, "");
  EXPECT_THAT(printed.errors, StartsWith("tessaly-cli: -: only one output can be standard output\n"));
}

TEST_F(CalibrateTest, SaysThatANameAloneKeepsNothing) {
  EXPECT_EQ(linesOf(run({"calibrate", "frames", "--name", "x"}).errors).back(),
            "No profile was kept. Add --save or --profile to keep one.");
  EXPECT_THAT(run({"calibrate", "frames", "--name", "x", "--save", "--include", "all"}).errors,
              testing::Not(HasSubstr("No profile was kept")));
}

TEST_F(CalibrateTest, NamesTheFramesOfTheSmallerSideBesideTheErrorOfAForeignOne) {
  for (const char* name : {"A_1.dng", "A_2.dng"})
    DNGBuilder().size(300, 80).serial("another").write(frames / name);
  const ProgramResult printed = run({"calibrate", "frames"});
  EXPECT_EQ(printed.status, 1);
  const auto lines = linesOf(printed.errors);
  ASSERT_GE(lines.size(), 3U);
  EXPECT_THAT(lines[lines.size() - 3], StartsWith("IMG_1.dng: "));
  EXPECT_EQ(lines[lines.size() - 2],
            "Cause: Camera profile mismatch: Calibration files contain different cameras or DNG layouts");
  EXPECT_EQ(lines.back(), "Of another camera or layout than the rest: A_1.dng, A_2.dng");
}

/// A column so far from its neighbours that its own end looks like a fixed pixel with a trail.
TEST_F(CalibrateTest, TellsThatOneColumnLiesInsideAnother) {
  tools::SensorDescription sensor;
  sensor.width = sensor.activeWidth = 300;
  sensor.height = sensor.activeHeight = 400;
  sensor.activeX = sensor.activeY = 0;
  tools::PlantedDefects defects;
  defects.lines.push_back({150, 0, 399, 1, 0.02});
  const tools::SensorSimulator broken(sensor, defects);
  fs::create_directory(folder / "broken");
  std::uint64_t number = 0;
  for (const std::int64_t iso : {100, 200}) {
    writeGroup(broken, folder / "broken", {iso, {1, 60}}, tools::flatField(300, 400, 0.5), number);
    writeGroup(broken, folder / "broken", {iso, {1, 4}}, tools::darkness(), number);
  }
  const ProgramResult printed = run({"calibrate", "broken", "--name", "x", "--save", "--include", "all"});
  EXPECT_THAT(linesOf(printed.output), ElementsAre(StartsWith("Complete: 6 bright-field, 6 dark, ")));
  const auto lines = linesOf(printed.errors);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "One column lies inside another."), 2) << "saved, and found";
  EXPECT_THAT(run({"calibrate", "frames"}).errors, testing::Not(HasSubstr("lies inside"))) << "there are none";
}

TEST_F(CalibrateTest, StopsAtOnceOnCtrlC) {
  for (int i = 0; i < 3000; ++i)
    fs::create_hard_link(frames / "IMG_1.dng", frames / ("X_" + std::to_string(i) + ".dng"));
  const FullPipe errors;
  const pid_t process =
      start({"calibrate", "frames", "--result", "result.json"}, [&] { errors.become(STDERR_FILENO); });
  while (!catches(process, SIGINT))
    usleep(1000);
  kill(process, SIGINT);
  errors.empty();
  EXPECT_EQ(finish(process).status, 130);
  EXPECT_FALSE(fs::exists(folder / "result.json"));
}

}  // namespace
}  // namespace tessaly::tests
