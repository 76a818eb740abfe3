// The main window: the two tabs, the button that opens the settings, and what of all that is kept between launches.
//
// User-interface thread only. While a batch runs it refuses to close and shows where the batch can be stopped.
#pragma once

#include "app/batch/BatchViewController.h"
#include "app/profile/CalibrationViewController.h"
#include "app/widgets/Panels.h"

#include <QMainWindow>
#include <QTabWidget>
#include <QToolButton>

namespace tessaly {

class MainWindowController : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindowController(Panels& panels);

  /// Whether the batch tab runs a batch.
  [[nodiscard]] bool isProcessing() const { return batch_->isProcessing(); }

  [[nodiscard]] CalibrationViewController& calibration() { return *calibration_; }
  [[nodiscard]] BatchViewController& batch() { return *batch_; }
  [[nodiscard]] QTabWidget& tabs() { return *tabs_; }
  [[nodiscard]] QToolButton& settingsButton() { return *settingsButton_; }

  /// Shows every text in the interface's language.
  void refreshLanguage();

  /// Comes to the front, from the task bar too.
  void comeForward();

  /// Comes to the front with the batch that has to be stopped before anything can be closed.
  void showRunningBatch();

  /// Shows the window where it was, or in the middle of the screen the first time.
  void showWindow();

 signals:
  void settingsRequested();
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void addTab(QWidget& tab, const char* title);
  void showTab(int index);
  void makeSettingsButton();
  void setSmallestSize();
  void restoreState();
  void saveState() const;

  QTabWidget* tabs_;
  CalibrationViewController* calibration_;
  BatchViewController* batch_;
  QToolButton* settingsButton_;
};

}  // namespace tessaly
