// tessaly: the window.
#include "app/AppDelegate.h"
#include "app/EarlierSettings.h"
#include "app/SingleInstance.h"
#include "app/TerminationNotifier.h"
#include "app/widgets/Icons.h"
#include "app/widgets/Style.h"
#include "localization/Localization.h"
#include "preferences/UserFolders.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

namespace tessaly {
namespace {

constexpr int usageStatus = 2;

struct Arguments {
  std::string sample;
  std::string language;
};

/// Nothing when the window is to be opened; else the exit status.
std::optional<int> parse(int count, char** arguments, Arguments& parsed) {
  CLI::App app("Removes fixed sensor defects from DNG raw files.", "tessaly");
  app.set_version_flag("--version", "tessaly " TESSALY_VERSION);
  app.add_option("--sample", parsed.sample,
                 "Start with the folder \"calibration\" in this one as the calibration folder")
      ->type_name("FOLDER")
      ->check(CLI::ExistingDirectory.description(""));
  app.add_option("--language", parsed.language, "Language until another is chosen in the settings")
      ->type_name(languageTagChoice())
      ->check(CLI::IsMember(languageTags()).description(""));
  try {
    app.parse(count, arguments);
    return std::nullopt;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "tessaly: " << error.what() << '\n';
    return usageStatus;
  }
}

void describeApplication() {
  QApplication::setApplicationName(QStringLiteral("Tessaly"));
  QApplication::setApplicationVersion(QStringLiteral(TESSALY_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("tessaly"));
  QApplication::setWindowIcon(colouredIcon("tessaly"));
  QApplication::setStyle(new Style);
}

void showSample(MainWindowController& window, const std::filesystem::path& sample) {
  window.calibration().setFolder(sample / "calibration");
  window.tabs().setCurrentIndex(0);
}

}  // namespace
}  // namespace tessaly

int main(int count, char** arguments) {
  using namespace tessaly;
  Arguments parsed;
  if (const auto status = parse(count, arguments, parsed)) return *status;
  Localization::setLanguageOverride(appLanguage(parsed.language));
  QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  const QApplication application(count, arguments);
  describeApplication();
  const SingleInstance instance(SingleInstance::nameHere());
  if (instance.isSecond()) return EXIT_SUCCESS;
  takeOverEarlierSettings(earlierPreferencesFile(), preferencesFile());
  DesktopPanels panels;
  AppDelegate delegate(panels);
  delegate.applicationDidFinishLaunching();
  QObject::connect(&instance, &SingleInstance::wanted, delegate.windowController.get(),
                   &MainWindowController::comeForward);
  const TerminationNotifier termination([&delegate](int signal) { delegate.endBySignal(signal); });
  if (!parsed.sample.empty()) showSample(*delegate.windowController, parsed.sample);
  return QApplication::exec();
}
