// tessaly: the window.
#include "app/AppDelegate.h"
#include "app/Icons.h"
#include "app/Style.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <filesystem>
#include <optional>
#include <string>

namespace tessaly {
namespace {

constexpr int usageStatus = 2;

/// Nothing when the window is to be opened; else the exit status.
std::optional<int> parse(int count, char** arguments, std::string& sample) {
  CLI::App app("Removes fixed sensor defects from DNG raw files.", "tessaly");
  app.set_version_flag("--version", "tessaly " TESSALY_VERSION);
  app.add_option("--sample", sample, "Start with the folder \"calibration\" in this one as the calibration folder")
      ->type_name("FOLDER")
      ->check(CLI::ExistingDirectory);
  try {
    app.parse(count, arguments);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : usageStatus;
  }
}

void describeApplication() {
  QApplication::setApplicationName(QStringLiteral("Tessaly"));
  QApplication::setApplicationVersion(QStringLiteral(TESSALY_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("tessaly"));
  QApplication::setWindowIcon(colouredIcon("tessaly"));
  QApplication::setStyle(new Style);
}

}  // namespace
}  // namespace tessaly

int main(int count, char** arguments) {
  using namespace tessaly;
  std::string sample;
  if (const auto status = parse(count, arguments, sample)) return *status;
  QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  const QApplication application(count, arguments);
  describeApplication();
  DesktopPanels panels;
  AppDelegate delegate(panels);
  delegate.applicationDidFinishLaunching();
  if (!sample.empty())
    delegate.windowController->calibration().setFolder(std::filesystem::path(sample) / "calibration");
  return QApplication::exec();
}
