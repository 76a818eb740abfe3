// The settings: shows the preferences, stores every edit at once, and brings camera profiles in and out.
//
// One window, beside the main one and not modal. User-interface thread only.
#pragma once

#include "app/widgets/LocalizedLabel.h"
#include "app/widgets/Panels.h"
#include "preferences/AppPreferences.h"
#include "profile/CameraProfile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <vector>

class QGridLayout;
class QScrollArea;

namespace tessaly {

class SettingsWindowController : public QDialog {
  Q_OBJECT

 public:
  SettingsWindowController(Panels& panels, QWidget& mainWindow);

  /// Brings the window forward.
  void showWindow();

  /// Makes the whole content anew, in the interface's language.
  void rebuild();

  /// Stores what every control says and tells the application.
  void changed();

  void chooseOutput();
  void reset();
  void importProfile();
  void exportProfile();

  // Of the content that is shown now; made anew by rebuild().
  QComboBox* language;
  QComboBox* appearance;
  QComboBox* workers;
  QComboBox* output;
  QPushButton* chooseOutputButton;
  LocalizedLabel* outputPath;
  QComboBox* collision;
  QCheckBox* autoOpen;
  QCheckBox* saveLog;
  QComboBox* profiles;
  QPushButton* exportButton;
  QPushButton* importButton;
  QPushButton* resetButton;
  QPushButton* doneButton;

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void makeControls();
  void showPreferences();
  void connectControls();
  [[nodiscard]] QWidget* layOut();
  void addLanguageSection(QGridLayout& grid);
  void addProcessingSection(QGridLayout& grid);
  void addProfileSection(QGridLayout& grid);
  [[nodiscard]] QWidget* layOutButtons();
  void fitToContent();
  void preferencesChanged();
  void showOutputPath();
  void reloadProfiles();
  void importFrom(const std::filesystem::path& file);
  void tell(std::string english);

  AppPreferences& prefs_ = AppPreferences::shared();
  Panels& panels_;
  QScrollArea* area_;
  std::vector<CameraProfile> loaded_;
  AppPreferences::Registration observation_;
};

}  // namespace tessaly
