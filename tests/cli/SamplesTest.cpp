#include "cli/ProgramTest.h"
#include "tools/DNGBuilder.h"

#include <sys/resource.h>

#include <map>
#include <numeric>

namespace tessaly::tests {
namespace {

using testing::HasSubstr;
using tools::DNGBuilder;

class SamplesTest : public ProgramTest {
 protected:
  void SetUp() override {
    std::vector<std::uint16_t> values(24);
    std::iota(values.begin(), values.end(), std::uint16_t{250});
    for (const std::uint16_t value : values) {
      expected += static_cast<char>(value & 0xFF);
      expected += static_cast<char>(value >> 8);
    }
    DNGBuilder().size(6, 4).bits(12).bigEndian().samples(values).write(folder / "a.dng");
    source = readText(folder / "a.dng");
  }

  /// The only entries of the folder are the source and, perhaps, these.
  void expectNothingElse(std::vector<std::string> others = {}) {
    others.emplace_back("a.dng");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
      names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::UnorderedElementsAreArray(others));
    EXPECT_EQ(readText(folder / "a.dng"), source);
  }

  std::string expected;
  std::string source;
};

TEST_F(SamplesTest, WritesTheRawPlaneAsLittleEndianValues) {
  const ProgramResult result = run({"samples", "a.dng", "--output", "out.raw"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(readText(folder / "out.raw"), expected);
  expectNothingElse({"out.raw"});
}

TEST_F(SamplesTest, WritesToStandardOutput) {
  const ProgramResult result = run({"samples", "a.dng", "--output", "-"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, expected);
  expectNothingElse();
}

TEST_F(SamplesTest, ReplacesAnEarlierResult) {
  writeText(folder / "out.raw", std::string(1000, 'x'));
  EXPECT_EQ(run({"samples", "a.dng", "--output", "out.raw"}).status, 0);
  EXPECT_EQ(readText(folder / "out.raw"), expected);
}

TEST_F(SamplesTest, NeverReplacesTheFileItReads) {
  std::filesystem::create_hard_link(folder / "a.dng", folder / "hard");
  std::filesystem::create_symlink("a.dng", folder / "soft");
  std::filesystem::create_directory(folder / "sub");
  for (const std::string& output : {std::string("a.dng"), std::string("./sub/../a.dng"), (folder / "a.dng").string(),
                                    std::string("hard"), std::string("soft")}) {
    const ProgramResult result = run({"samples", "a.dng", "--output", output});
    EXPECT_EQ(result.status, 2) << output;
    EXPECT_THAT(result.errors, HasSubstr("Usage: tessaly-cli samples")) << output;
  }
  expectNothingElse({"hard", "soft", "sub"});
}

TEST_F(SamplesTest, NeverReplacesAPhotograph) {
  const std::string little("II*\0....", 8);
  const std::string big("MM\0*....", 8);
  const std::map<std::string, std::string> photographs = {
      {"b.dng", "empty of meaning"}, {"c.NEF", ""}, {"d.tif", little}, {"without extension", big}, {"e.raw", little}};
  for (const auto& [name, bytes] : photographs)
    writeText(folder / name, bytes);
  std::filesystem::create_symlink("b.dng", folder / "link");
  for (const auto& [name, bytes] : photographs) {
    const ProgramResult result = run({"samples", "a.dng", "--output", name});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_THAT(result.errors, HasSubstr(name + ": Output exists\n")) << name;
    EXPECT_EQ(readText(folder / name), bytes) << name;
  }
  EXPECT_EQ(run({"samples", "a.dng", "--output", "link"}).status, 2);
  expectNothingElse({"b.dng", "c.NEF", "d.tif", "e.raw", "link", "without extension"});
}

TEST_F(SamplesTest, WritesANewFileOfAnyName) {
  EXPECT_EQ(run({"samples", "a.dng", "--output", "new.dng"}).status, 0);
  EXPECT_EQ(readText(folder / "new.dng"), expected);
}

TEST_F(SamplesTest, NeverReplacesTheSettings) {
  std::filesystem::create_directories(home / "Tessaly");
  const std::filesystem::path settings = home / "Tessaly" / "Tessaly.json";
  writeText(settings, "{}\n");
  EXPECT_EQ(run({"samples", "a.dng", "--output", settings.string()}).status, 2);
  EXPECT_EQ(readText(settings), "{}\n");
}

TEST_F(SamplesTest, LeavesNothingWhenTheFileIsRefused) {
  DNGBuilder().size(64, 48).rawTag(259, {3, {7}}).write(folder / "jpeg.dng");
  writeText(folder / "out.raw", "earlier");
  const ProgramResult result = run({"samples", "jpeg.dng", "--output", "out.raw"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors,
              HasSubstr("\nCause: Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet\n"));
  EXPECT_EQ(readText(folder / "out.raw"), "earlier");
  expectNothingElse({"jpeg.dng", "out.raw"});
}

TEST_F(SamplesTest, SaysWhyTheOutputCannotBeWritten) {
  std::filesystem::create_directory(folder / "sub");
  EXPECT_EQ(run({"samples", "a.dng", "--output", "nowhere/out.raw"}).errors,
            "out.raw: No such file or directory\nCause: No such file or directory\n");
  EXPECT_EQ(run({"samples", "a.dng", "--output", "sub"}).errors, "sub: Is a directory\nCause: Is a directory\n");
  EXPECT_EQ(run({"samples", "a.dng", "--output", "sub"}).status, 1);
  expectNothingElse({"sub"});
}

TEST_F(SamplesTest, FailsAtTheFileSizeLimitWithoutATrace) {
  const auto limit = [] {
    const rlimit bytes{16, 16};
    setrlimit(RLIMIT_FSIZE, &bytes);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
  };
  EXPECT_EQ(run({"samples", "a.dng", "--output", "out.raw"}, limit).status, 1);
  expectNothingElse();
  EXPECT_EQ(run({"samples", "a.dng", "--output", "-"}, limit).status, 1);
}

TEST_F(SamplesTest, WritesIntoADeviceInsteadOfReplacingIt) {
  EXPECT_EQ(run({"samples", "a.dng", "--output", "/dev/null"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  EXPECT_EQ(run({"samples", "a.dng", "--output", "/dev/stdout"}).output, expected);
}

TEST_F(SamplesTest, FailsWhenStandardOutputTakesNoMore) {
  EXPECT_EQ(run({"samples", "a.dng", "--output", "-"}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }).status,
            1);
  EXPECT_EQ(run({"samples", "a.dng", "--output", "-"}, [] { close(STDOUT_FILENO); }).status, 1);
}

}  // namespace
}  // namespace tessaly::tests
