#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "tools/DNGBuilder.h"

#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace tessaly::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using tools::DNGBuilder;

constexpr const char* help =
    " For help, email support@tessaly.example with your camera model and we'll look at adding support.";
constexpr const char* damaged =
    "This DNG appears incomplete or has invalid image information. Copy the original file again from your card or "
    "backup and retry.";

class InspectTest : public ProgramTest {};

TEST_F(InspectTest, PrintsTheMetadataInItsDocumentedOrder) {
  DNGBuilder().size(64, 48).bits(12).model("Body").serial("SN-1").write(folder / "a.dng");
  const ProgramResult result = run({"inspect", "a.dng"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  const auto json = nlohmann::ordered_json::parse(result.output);
  EXPECT_THAT(keysOf(json), ElementsAre("sourceEncoding", "cameraSerial", "model", "rawWidth", "rawHeight", "rawOffset",
                                        "rawByteCount", "activeX", "activeY", "activeWidth", "activeHeight",
                                        "blackLevel", "whiteLevel", "bitsPerSample", "compression", "samplesPerPixel",
                                        "photometricInterpretation", "rowsPerStrip", "packing", "cfaLayout"));
  EXPECT_EQ(json["cameraSerial"], "SN-1");
  EXPECT_EQ(json["rawWidth"], 64);
  EXPECT_EQ(json["packing"], "packed12MSB");
}

TEST_F(InspectTest, DescribesACompressedFileWithAWarning) {
  DNGBuilder().size(64, 48).rawTag(259, {3, {7}}).write(folder / "a.dng");
  const ProgramResult result = run({"inspect", "a.dng"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(nlohmann::json::parse(result.output)["compression"], 7);
  EXPECT_EQ(result.errors, "Warning: Compressed (lossless JPEG) DNG is not supported yet\n");
}

TEST_F(InspectTest, TellsTheUserAndTheCauseOfAFailure) {
  DNGBuilder().size(64, 48).rawTag(256, {4, {0}}).write(folder / "a.dng");
  const ProgramResult result = run({"inspect", "a.dng"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors,
            std::string("a.dng: ") + damaged + help + "\nCause: Invalid DNG structure: Raw dimensions\n");
}

TEST_F(InspectTest, SpeaksOfTheFileByItsLastName) {
  std::filesystem::create_directory(folder / "photos");
  writeText(folder / "photos" / "a.dng", "short");
  EXPECT_EQ(run({"inspect", "photos/a.dng"}).errors,
            std::string("a.dng: ") + damaged + help + "\nCause: Invalid DNG structure: DNG size limit (2 GB)\n");
}

TEST_F(InspectTest, RefusesAFolderAPipeAndADeviceWithoutWaiting) {
  ASSERT_EQ(mkfifo((folder / "pipe.dng").c_str(), 0600), 0);
  std::filesystem::create_directory(folder / "folder.dng");
  for (const char* name : {"pipe.dng", "folder.dng", "/dev/zero", "."}) {
    const ProgramResult result = run({"inspect", name});
    EXPECT_EQ(result.status, 1) << name;
    EXPECT_THAT(result.errors, HasSubstr("\nCause: Invalid DNG structure: DNG size limit (2 GB)\n")) << name;
  }
}

TEST_F(InspectTest, RefusesACamerasOwnFormatUnread) {
  const ProgramResult result = run({"inspect", "missing.NEF"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, StartsWith("missing.NEF: This camera RAW format is not supported yet."));
  EXPECT_THAT(result.errors, HasSubstr("\nCause: Unsupported DNG: Proprietary RAW\n"));
}

TEST_F(InspectTest, ShowsANameThatIsNotUTF8WithReplacementCharacters) {
  writeText(folder / "a\xff.dng", "short");
  EXPECT_THAT(run({"inspect", "a\xff.dng"}).errors, StartsWith("a\xEF\xBF\xBD.dng: This DNG appears"));
}

TEST_F(InspectTest, KeepsToTwoLinesWhateverTheName) {
  const std::string name = "a\nCause: \x1b[31m\xC2\x9B.dng";
  writeText(folder / name, "short");
  const auto lines = linesOf(run({"inspect", name}).errors);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_THAT(lines[0], StartsWith("a Cause:  [31m .dng: This DNG appears"));
}

TEST_F(InspectTest, SurvivesBytesThatAreNoDNG) {
  const std::vector<std::byte> whole = DNGBuilder().size(64, 48).build();
  for (std::size_t length = 8; length < 400; length += 13) {
    tools::writeBytes(folder / "cut.dng", {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
    const ProgramResult result = run({"inspect", "cut.dng"});
    EXPECT_EQ(result.status, 1) << length;
    EXPECT_EQ(linesOf(result.errors).size(), 2U) << length;
  }
}

TEST_F(InspectTest, FailsWhenItsResultCannotBePrinted) {
  DNGBuilder().write(folder / "a.dng");
  const ProgramResult full = run({"inspect", "a.dng"}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.errors, "Standard output: No space left on device\nCause: No space left on device\n");
  EXPECT_EQ(run({"inspect", "a.dng"}, [] { close(STDOUT_FILENO); }).status, 1);
  EXPECT_EQ(run({"--help"}, [] { close(STDOUT_FILENO); }).status, 1);
}

TEST_F(InspectTest, NeverWritesItsResultIntoAFileThatTookTheNumberOfStandardOutput) {
  DNGBuilder().write(folder / "a.dng");
  const auto before = readBytes(folder / "a.dng");
  EXPECT_EQ(run({"inspect", "a.dng"},
                [] {
                  for (const int descriptor : {0, 1, 2})
                    close(descriptor);
                })
                .status,
            1);
  EXPECT_EQ(readBytes(folder / "a.dng"), before);
}

TEST_F(InspectTest, EndsWithAnErrorWhenNobodyReadsItsResult) {
  DNGBuilder().write(folder / "a.dng");
  const ProgramResult result = run({"inspect", "a.dng"}, [] {
    int ends[2];
    if (pipe(ends) != 0) _exit(125);
    close(ends[0]);
    dup2(ends[1], STDOUT_FILENO);
  });
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, HasSubstr("Broken pipe"));
}

}  // namespace
}  // namespace tessaly::tests
