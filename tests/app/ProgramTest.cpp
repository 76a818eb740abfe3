// The program itself: its arguments, and how it ends.
#include "app/support/AppTest.h"
#include "support/CaughtSignals.h"

#include <signal.h>

#include <QProcess>
#include <QRegularExpression>
#include <fstream>
#include <iterator>

namespace tessaly::tests {
namespace {

constexpr int patience = 120'000;

struct Ended {
  int status = -1;
  QString output;
  QString errors;
};

Ended run(const QStringList& arguments) {
  QProcess program;
  program.start(QStringLiteral(TESSALY_PROGRAM), arguments);
  if (!program.waitForFinished(patience)) return {};
  return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
          QString::fromUtf8(program.readAllStandardError())};
}

TEST(Program, TellsItsVersionAndItsArguments) {
  const Ended version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(QRegularExpression("^tessaly \\d+\\.\\d+\\.\\d+\n$").match(version.output).hasMatch());
  const Ended help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* argument : {"--sample FOLDER", "--language en|zh-Hans|fr", "--version", "--help"})
    EXPECT_TRUE(help.output.contains(QLatin1String(argument))) << argument;
}

TEST(Program, RefusesWhatItDoesNotUnderstandInOneLine) {
  for (const QStringList& arguments :
       {QStringList{"--nonsense"}, QStringList{"folder"}, QStringList{"--language", "de"},
        QStringList{"--sample", "/no/such/folder"}, QStringList{"--sample"}}) {
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.status, 2) << arguments.join(' ').toStdString();
    EXPECT_EQ(ended.errors.count('\n'), 1) << ended.errors.toStdString();
    EXPECT_TRUE(ended.errors.startsWith("tessaly: ")) << ended.errors.toStdString();
    EXPECT_EQ(ended.output, "");
  }
}

QProcessEnvironment environmentIn(const TemporaryFolder& home) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("TESSALY_HOME", QString::fromStdString(home.path().native()));
  return environment;
}

bool listens(const QProcess& program, int number) {
  return catches(static_cast<pid_t>(program.processId()), number);
}

TEST(Program, LeavesASecondStartToTheWindowThatIsThere) {
  const TemporaryFolder home;
  QProcess first;
  QProcess second;
  for (QProcess* program : {&first, &second}) {
    program->setProcessEnvironment(environmentIn(home));
    program->setChildProcessModifier([] { ::signal(SIGTERM, SIG_DFL); });
  }
  first.start(QStringLiteral(TESSALY_PROGRAM), QStringList());
  ASSERT_TRUE(waitUntil([&] { return listens(first, SIGTERM); }));
  second.start(QStringLiteral(TESSALY_PROGRAM), QStringList());
  ASSERT_TRUE(second.waitForFinished(patience));
  EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_EQ(first.state(), QProcess::Running);
  first.terminate();
  ASSERT_TRUE(first.waitForFinished(patience));
}

class RunningProgram : public testing::TestWithParam<int> {
 protected:
  RunningProgram() {
    program.setProcessEnvironment(environmentIn(home));
    program.setChildProcessModifier([] {  // what these tests were started with may ignore some of them
      for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        ::signal(number, SIG_DFL);
    });
    program.start(QStringLiteral(TESSALY_PROGRAM), {"--language", "fr"});
    program.waitForStarted(patience);
  }

  TemporaryFolder home;
  QProcess program;
};

TEST_P(RunningProgram, EndsInOrderWhenItIsAskedTo) {
  ASSERT_TRUE(waitUntil([&] { return listens(program, GetParam()); }));
  ::kill(static_cast<pid_t>(program.processId()), GetParam());
  ASSERT_TRUE(program.waitForFinished(patience));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 0);
  std::string settings;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
    std::ifstream file(entry.path());
    if (entry.is_regular_file()) settings.append(std::istreambuf_iterator<char>(file), {});
  }
  EXPECT_NE(settings.find("Tessaly.window.place"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Signals, RunningProgram, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT));

}  // namespace
}  // namespace tessaly::tests
