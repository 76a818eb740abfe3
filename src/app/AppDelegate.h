// The application: its menus, its windows, and when it may end.
//
// Created after QApplication and gone before it. User-interface thread only.
#pragma once

#include "app/MainWindowController.h"
#include "app/ModalShortcuts.h"
#include "app/settings/SettingsWindowController.h"
#include "app/widgets/Panels.h"
#include "app/widgets/SystemAppearance.h"
#include "preferences/AppPreferences.h"

#include <QMenuBar>
#include <QObject>
#include <QPointer>
#include <memory>

class QSessionManager;

namespace tessaly {

class AppDelegate : public QObject {
  Q_OBJECT

 public:
  explicit AppDelegate(Panels& panels);
  ~AppDelegate() override;

  std::unique_ptr<MainWindowController> windowController;
  std::unique_ptr<SettingsWindowController> settingsController;

  void applicationDidFinishLaunching();

  /// Fills the menu bar in the interface's language.
  void installMenus();

  /// Opens the settings, or says that they have to wait for the batch.
  void showSettings();
  void showAbout();

  void preferencesChanged();

  /// Whether the application may end now: no batch is running.
  [[nodiscard]] bool applicationShouldTerminate() const;
  [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

  /// Ends the application unless it should not.
  void terminate();

  /// The system or a terminal asks the application to end. A batch stops after its current files and the application
  /// ends with it; a second request gives these files up.
  void endBySignal(int signal);

  [[nodiscard]] QMenuBar& menuBar() { return *menuBar_; }

 private:
  void addApplicationMenu();
  void sessionEnds(QSessionManager& manager);
  void batchEnded();

  Panels& panels_;
  bool endsWithBatch_ = false;  ///< a signal came while it ran
  ModalShortcuts modalShortcuts_;
  QPointer<QMenuBar> menuBar_;  ///< of the main window once that exists
  AppPreferences::Registration preferences_;
  std::unique_ptr<SystemAppearanceObserver> appearance_;
};

}  // namespace tessaly
