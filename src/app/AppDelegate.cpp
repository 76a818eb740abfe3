#include "app/AppDelegate.h"

#include "app/widgets/QtText.h"
#include "app/widgets/QtTranslation.h"
#include "app/widgets/Theme.h"
#include "localization/Localization.h"
#include "platform/PartialFile.h"
#include "platform/TerminationSignals.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QSessionManager>
#include <utility>

namespace tessaly {
namespace {

constexpr const char* aboutLine = "Repairs fixed sensor defects in DNG files. Original files are only ever read.";

/// One of the editing commands that every field understands by its key.
struct EditCommand {
  const char* title;
  QKeySequence::StandardKey standard;
  Qt::Key key;
};

constexpr EditCommand editCommands[] = {
    {"Cut", QKeySequence::Cut, Qt::Key_X},
    {"Copy", QKeySequence::Copy, Qt::Key_C},
    {"Paste", QKeySequence::Paste, Qt::Key_V},
    {"Select All", QKeySequence::SelectAll, Qt::Key_A},
};

void sendToFocus(Qt::Key key) {
  QWidget* focus = QApplication::focusWidget();
  if (!focus) return;
  QKeyEvent press(QEvent::KeyPress, key, Qt::ControlModifier);
  QApplication::sendEvent(focus, &press);
}

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
  windowController->showWindow();
}

// Clearing a menu bar leaves its menus behind.
void AppDelegate::installMenus() {
  menuBar_->clear();
  for (QMenu* menu : menuBar_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly))
    menu->deleteLater();
  addApplicationMenu();
  addEditMenu();
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

void AppDelegate::addEditMenu() {
  QMenu* menu = menuBar_->addMenu(localized("Edit"));
  for (const EditCommand& command : editCommands) {
    QAction* action = menu->addAction(localized(command.title), this, [key = command.key] { sendToFocus(key); });
    action->setShortcut(command.standard);
  }
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
