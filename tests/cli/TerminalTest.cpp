// Names from files on a terminal, which must not obey them, and in files and pipes, which get them as they are.
#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

#include <array>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A terminal that a program can be given, and what was written to it.
class PseudoTerminal {
 public:
  PseudoTerminal() : terminal_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (grantpt(terminal_) != 0 || unlockpt(terminal_) != 0) throw std::runtime_error("No terminal can be had");
    name_ = ptsname(terminal_);
    kept_ = open();
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() {
    close(kept_);
    close(terminal_);
  }

  [[nodiscard]] int open() const { return ::open(name_.c_str(), O_RDWR | O_NOCTTY); }

  /// Everything written so far. What is written last of all tells that all has come: it passes through in order, but
  /// not at once.
  [[nodiscard]] std::string shown() const {
    const std::string last = "[that was all]";
    if (write(kept_, last.data(), last.size()) < 0) throw std::runtime_error("The terminal takes nothing");
    std::string text;
    while (text.find(last) == std::string::npos) {
      std::array<char, 4096> piece;
      const ssize_t length = read(terminal_, piece.data(), piece.size());
      if (length <= 0) break;
      text.append(piece.data(), static_cast<std::size_t>(length));
    }
    return text.substr(0, text.find(last));
  }

 private:
  int terminal_;
  std::string name_;
  int kept_ = -1;  ///< so that what was written stays when the program has closed it
};

class TerminalTest : public ProgramTest {
 protected:
  static constexpr const char* hostileName = "a\x1B[31m\a\nb\u202Egnd.DNG";
  static constexpr const char* visibleName = "a␛[31m␇␊b<U+202E>gnd.DNG";

  void SetUp() override {
    fs::create_directory(photos);
    tools::DNGBuilder().uniqueModel("Body").write(folder / "like.dng");
    writeText(folder / "p.json",
              encodeProfile(CameraProfile::empty("Body", DNGReader::readMetadata(folder / "like.dng"))));
    writeText(photos / hostileName, "no photograph");
  }

  ProgramResult runOn(const PseudoTerminal& terminal, const Arguments& arguments) {
    return run(arguments, [&terminal] {
      dup2(terminal.open(), STDOUT_FILENO);
      dup2(terminal.open(), STDERR_FILENO);
    });
  }

  const Arguments repairAll{"repair", "photos", "--profile", "p.json", "--workers", "1"};
  fs::path photos = folder / "photos";
};

TEST_F(TerminalTest, ShowsHostileNamesAndObeysNone) {
  const PseudoTerminal terminal;
  EXPECT_EQ(runOn(terminal, repairAll).status, 1);
  const std::string shown = terminal.shown();
  EXPECT_THAT(shown, HasSubstr("\n" + std::string(visibleName) + ": " + visibleName + ": ")) << "in the summary";
  EXPECT_THAT(shown, AllOf(Not(HasSubstr("\x1B[31m")), Not(HasSubstr("\a")), Not(HasSubstr("\u202E"))));
}

TEST_F(TerminalTest, ShowsWhatAFileSaysOfItself) {
  tools::DNGBuilder().uniqueModel("Body\u202E\u009B31m").write(folder / "odd.dng");
  const PseudoTerminal terminal;
  EXPECT_EQ(runOn(terminal, {"inspect", "odd.dng"}).status, 0);
  EXPECT_THAT(terminal.shown(), HasSubstr("Body<U+202E><U+009B>31m"));
}

TEST_F(TerminalTest, OnlyATerminalGetsThem) {
  const ProgramResult result = run(repairAll);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr(std::string("\n") + hostileName + ": " + hostileName + ": "));
  tools::DNGBuilder().uniqueModel("Body\u202E").write(folder / "odd.dng");
  EXPECT_THAT(run({"inspect", "odd.dng"}).output, HasSubstr("Body\u202E"));
}

TEST_F(TerminalTest, AnotherOutputThereTurnsTheSentencesToTheOther) {
  Arguments arguments = repairAll;
  arguments.insert(arguments.end(), {"--summary", "-"});
  const PseudoTerminal terminal;
  const ProgramResult result = run(arguments, [&terminal] { dup2(terminal.open(), STDERR_FILENO); });
  EXPECT_EQ(nlohmann::json::parse(result.output)["failures"][0]["filename"], hostileName);
  EXPECT_THAT(terminal.shown(), AllOf(HasSubstr("\n" + std::string(visibleName) + ": "), Not(HasSubstr("\x1B[31m"))));
}

}  // namespace
}  // namespace tessaly::tests
