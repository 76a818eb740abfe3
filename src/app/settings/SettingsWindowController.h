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
#include <filesystem>
#include <optional>
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

  /// Leaves nothing to be done but reading and closing, as long as a batch runs.
  void setLocked(bool locked);

  void chooseOutput();
  void reset();
  void setProfileAside();
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
  LocalizedLabel* profileFailure;  ///< with its button, there only while profiles cannot be loaded
  QPushButton* setAsideButton;
  QPushButton* exportButton;
  QPushButton* importButton;
  QPushButton* resetButton;
  QPushButton* doneButton;
  LocalizedLabel* lockLabel;  ///< why nothing can be changed

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void makeControls();
  void showPreferences();
  void showLock();
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
  void showProfileFailure(const TextSource& failure);
  void importFrom(const std::filesystem::path& file);
  void tell(std::string english);

  AppPreferences& prefs_ = AppPreferences::shared();
  Panels& panels_;
  QScrollArea* area_;
  QWidget* footer_ = nullptr;  ///< the buttons below it
  std::vector<CameraProfile> loaded_;
  std::optional<std::filesystem::path> unreadable_;
  bool isLocked_ = false;
  AppPreferences::Registration observation_;
};

}  // namespace tessaly
