// What the program does when it is asked to stop while it writes a file.
#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

#include <nlohmann/json.hpp>

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

constexpr const char* stopping = "Stopping after the current file…\n";

/// A batch of three photographs whose first copy is held at the gate.
class SignalsTest : public ProgramTest, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    fs::create_directory(photos);
    fs::create_directory(gate);
    for (const char* name : {"L1.DNG", "L2.DNG", "L3.DNG"})
      DNGBuilder().size(64, 48).uniqueModel("Body").serial("SN-1").write(photos / name);
    CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(photos / "L1.DNG"));
    profile.pixels = {{10, 12, 1.0, "stuck"}};
    writeText(folder / "p.json", encodeProfile(profile));
    const char* const options = getenv("ASAN_OPTIONS");
    environment = {{"LD_PRELOAD", TESSALY_GATE_LIBRARY},
                   {"TESSALY_GATE", gate.string()},
                   {"ASAN_OPTIONS", std::string(options ? options : "") + ":verify_asan_link_order=0"}};
  }

  pid_t startHeld(Arguments more = {}, const std::function<void()>& prepare = nullptr) {
    Arguments arguments{"repair", "photos", "--profile", "p.json", "--workers", "1", "--summary", "summary.json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const pid_t process = start(arguments, prepare);
    while (!fs::exists(gate / "reached"))
      usleep(1000);
    return process;
  }

  void send(pid_t process, int number, const std::string& told) const {
    kill(process, number);
    while (errorsSoFar().find(told) == std::string::npos)
      usleep(1000);
  }

  void openGate() const { writeText(gate / "open", ""); }

  [[nodiscard]] std::vector<std::string> results() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(photos / "Tessaly Results"))
      names.push_back(entry.path().filename());
    return names;
  }

  nlohmann::ordered_json summary() { return nlohmann::ordered_json::parse(readText(folder / "summary.json")); }

  fs::path photos = folder / "photos";
  fs::path gate = scratch / "gate";
};

TEST_P(SignalsTest, OnceLetTheFileInProgressFinishAndWriteLogAndSummary) {
  const pid_t process = startHeld();
  send(process, GetParam(), stopping);
  openGate();
  const ProgramResult result = finish(process);
  EXPECT_EQ(result.status, 128 + GetParam());
  EXPECT_THAT(result.output, StartsWith("Processing complete (Cancelled)\n\nSuccess: 1\nFailed: 0\nSkipped: 0\n"));
  EXPECT_THAT(linesOf(result.errors), ElementsAre("Stopping after the current file…",
                                                  "1/3  Success 1  Failed 0  Skipped 0  L1.DNG", "2 files are left."));
  EXPECT_EQ(summary()["cancelled"], true);
  EXPECT_EQ(summary()["total"], 3);
  EXPECT_EQ(summary()["succeeded"], 1);
  const fs::path log = summary()["logURL"].get<std::string>();
  EXPECT_THAT(linesOf(readText(log)), SizeIs(2));
  EXPECT_THAT(results(), UnorderedElementsAre("L1.DNG", log.filename().string()));
}

TEST_P(SignalsTest, TwiceGiveTheFileInProgressUpWithoutATrace) {
  const pid_t process = startHeld();
  EXPECT_THAT(results(), ElementsAre(testing::EndsWith(".partial")));
  send(process, GetParam(), stopping);
  kill(process, GetParam());
  EXPECT_EQ(finish(process).status, 128 + GetParam());
  EXPECT_THAT(results(), IsEmpty());
  EXPECT_FALSE(fs::exists(folder / "summary.json"));
}

TEST_P(SignalsTest, StayIgnoredWhereTheyWere) {
  const pid_t process = startHeld({}, [] { signal(GetParam(), SIG_IGN); });
  kill(process, GetParam());
  openGate();
  EXPECT_EQ(finish(process).status, 0);
  EXPECT_EQ(summary()["succeeded"], 3);
}

TEST_P(SignalsTest, OnceLetTheCopyOfOneFileFinish) {
  const pid_t process = start({"repair-file", "photos/L1.DNG", "new.dng", "--profile", "p.json"});
  while (!fs::exists(gate / "reached"))
    usleep(1000);
  kill(process, GetParam());
  openGate();
  const ProgramResult result = finish(process);
  EXPECT_EQ(result.status, 128 + GetParam());
  EXPECT_THAT(result.output, HasSubstr("\"destination\""));
  EXPECT_TRUE(fs::exists(folder / "new.dng"));
}

INSTANTIATE_TEST_SUITE_P(Each, SignalsTest, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT));

}  // namespace
}  // namespace tessaly::tests
