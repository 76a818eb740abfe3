#include "app/AppDelegate.h"

#include "app/EditMenu.h"
#include "app/widgets/QtText.h"
#include "app/widgets/QtTranslation.h"
#include "app/widgets/Theme.h"
#include "localization/Localization.h"
#include "platform/PartialFile.h"
#include "platform/TerminationSignals.h"

#include <QApplication>
#include <QMenu>
#include <QSessionManager>
#include <utility>

namespace tessaly {
namespace {

constexpr const char* aboutLine = "Repairs fixed sensor defects in DNG files. Original files are only ever read.";

}  // namespace

AppDelegate::AppDelegate(Panels& panels) : panels_(panels), menuBar_(new QMenuBar) {}

AppDelegate::~AppDelegate() {
  settingsController.reset();
  windowController.reset();
  delete menuBar_;
}

void AppDelegate::applicationDidFinishLaunching() {
  applyAppAppearance();
  applyQtLanguage();
  installMenus();
  preferences_ = AppPreferences::shared().observe([this] { preferencesChanged(); });
  appearance_ = std::make_unique<SystemAppearanceObserver>(applyAppAppearance);
  QApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
  connect(qApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::sessionEnds);
  windowController = std::make_unique<MainWindowController>(panels_);
  windowController->setMenuBar(menuBar_);
  connect(windowController.get(), &MainWindowController::settingsRequested, this, &AppDelegate::showSettings);
  connect(&windowController->batch(), &BatchViewController::ended, this, &AppDelegate::batchEnded);
  connect(windowController.get(), &MainWindowController::closed, this, [this] {
    if (settingsController) settingsController->close();
  });
  connect(&windowController->batch(), &BatchViewController::runningChanged, this, [this](bool running) {
    if (settingsController) settingsController->setLocked(running);
  });
  windowController->showWindow();
}

// Clearing a menu bar leaves its menus behind.
void AppDelegate::installMenus() {
  menuBar_->clear();
  for (QMenu* menu : menuBar_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly))
    menu->deleteLater();
  addApplicationMenu();
  menuBar_->addMenu(new EditMenu(menuBar_));
}

void AppDelegate::addApplicationMenu() {
  QMenu* menu = menuBar_->addMenu(localized("Tessaly"));
  QAction* about = menu->addAction(localized("About Tessaly"), this, &AppDelegate::showAbout);
  about->setMenuRole(QAction::AboutRole);
  menu->addSeparator();
  QAction* settings = menu->addAction(localized("Settings"), this, &AppDelegate::showSettings);
  settings->setMenuRole(QAction::PreferencesRole);
  settings->setShortcut(Qt::CTRL | Qt::Key_Comma);
  menu->addSeparator();
  QAction* quit = menu->addAction(localized("Quit Tessaly"), this, &AppDelegate::terminate);
  quit->setMenuRole(QAction::QuitRole);
  quit->setShortcut(Qt::CTRL | Qt::Key_Q);
  for (QAction* action : {settings, quit})
    action->setShortcutContext(Qt::ApplicationShortcut);
}

void AppDelegate::showSettings() {
  if (windowController->isProcessing()) {
    return panels_.showAlert(*windowController,
                             sentence(Alert::Style::informational, "Settings are unavailable during a batch repair."));
  }
  if (!settingsController) settingsController = std::make_unique<SettingsWindowController>(panels_, *windowController);
  settingsController->showWindow();
}

void AppDelegate::showAbout() {
  Alert alert;
  alert.style = Alert::Style::plain;
  alert.text = [version = fromQt(QApplication::applicationVersion())] {
    return L("Tessaly") + "\n" + LF("Version %@", {version});
  };
  alert.informativeText = aboutLine;
  panels_.showAlert(*windowController, std::move(alert));
}

void AppDelegate::preferencesChanged() {
  applyQtLanguage();
  installMenus();
  if (!windowController) return;
  windowController->refreshLanguage();
  windowController->batch().preferencesChanged();
}

bool AppDelegate::applicationShouldTerminate() const {
  return !windowController || !windowController->isProcessing();
}

void AppDelegate::terminate() {
  if (!applicationShouldTerminate()) return windowController->showRunningBatch();
  if (windowController) windowController->close();
  QApplication::quit();
}

// Nobody may be there to answer, so nothing is asked.
void AppDelegate::endBySignal(int signal) {
  if (applicationShouldTerminate()) return terminate();
  if (std::exchange(endsWithBatch_, true)) PartialFile::removeAllAndExit(statusEndedBy(signal));
  windowController->batch().cancelBatch();
}

void AppDelegate::batchEnded() {
  if (endsWithBatch_) terminate();
}

void AppDelegate::sessionEnds(QSessionManager& manager) {
  if (applicationShouldTerminate()) return;
  manager.cancel();
  windowController->showRunningBatch();
}

}  // namespace tessaly
