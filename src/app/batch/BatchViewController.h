// The tab "2. Batch Repair DNG": repairs a folder with a camera profile, several files at once.
//
// A thin controller over BatchProcessor, of which it holds one while a batch runs. User-interface thread only; the
// processor's callbacks are brought to it.
#pragma once

#include "app/widgets/BackgroundTask.h"
#include "app/widgets/Controls.h"
#include "app/widgets/FollowsLanguage.h"
#include "app/widgets/LocalizedLabel.h"
#include "app/widgets/Panels.h"
#include "batch/BatchProcessor.h"
#include "presentation/BatchProgressDisplay.h"
#include "profile/CameraProfile.h"

#include <QWidget>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tessaly {

class BatchViewController : public QWidget, public FollowsLanguage {
  Q_OBJECT

 public:
  explicit BatchViewController(Panels& panels, QWidget* parent = nullptr);
  ~BatchViewController() override;

  /// Whether a batch runs.
  [[nodiscard]] bool isProcessing() const { return processor_ != nullptr; }

  [[nodiscard]] const std::vector<CameraProfile>& profiles() const { return profiles_; }
  [[nodiscard]] const std::optional<std::filesystem::path>& inputURL() const { return inputURL_; }
  [[nodiscard]] const std::optional<std::filesystem::path>& outputURL() const { return outputURL_; }

  void reloadProfiles();

  /// Selects a profile that was just saved; during a batch, when it has ended.
  void chooseProfile(const UUID& id);

  /// Takes the profile file that cannot be read out of the way of the others.
  void setProfileAside();

  void chooseInput();
  void setInput(const std::filesystem::path& folder);
  void chooseOutput();
  void setOutput(const std::filesystem::path& folder);
  void useDefaultOutput();
  void startBatch();
  void cancelBatch();
  void openOutputFolder();

  /// The preferences have changed: while no batch runs, profiles and output label are brought up to date.
  void preferencesChanged();

  void refreshLanguage() override;

  QComboBox* profilePopUp;
  QPushButton* reloadButton;
  QPushButton* inputButton;
  LocalizedLabel* inputLabel;
  QPushButton* outputButton;
  QPushButton* defaultOutputButton;
  LocalizedLabel* outputLabel;
  QComboBox* workersPopUp;
  QProgressBar* progress;
  LocalizedLabel* statusLabel;
  QPushButton* setAsideButton;  ///< there only while one profile file keeps all from being loaded
  QPushButton* startButton;
  QPushButton* stopButton;
  QPushButton* openButton;

 signals:
  void ended();  ///< a batch, before anything is said about it
  void runningChanged(bool running);

 private:
  void layOut();
  [[nodiscard]] QLayout* layOutChoices();
  void connectControls();
  void addDropTargets();
  void fillProfiles(int selection);
  void loadProfiles();
  void showNextStep();
  [[nodiscard]] const CameraProfile* selectedProfile() const;
  [[nodiscard]] std::optional<UUID> wantedProfile();
  void countFiles();
  void showOutput();
  void showCustomOutput(const std::string& path);
  void showDefaultOutput(const std::string& path);
  void refuse(const std::string& reason);
  void run(const CameraProfile& profile);
  void setRunning(bool running);
  [[nodiscard]] bool hasFocusInside() const;
  void showDisplay();
  void finished(const BatchSummary& summary);
  void followWorkers();

  Panels& panels_;
  std::vector<CameraProfile> profiles_;
  std::optional<UUID> savedProfile_;  ///< to be selected next
  bool profilesFailed_ = false;       ///< the status says why they could not be loaded
  std::optional<std::filesystem::path> unreadable_;
  std::optional<std::filesystem::path> inputURL_;
  std::optional<std::filesystem::path> outputURL_;
  bool outputWasChosenManually_ = false;
  std::optional<std::filesystem::path> resultsURL_;  ///< where the last batch wrote
  bool openAfterCompletion_ = false;
  int knownWorkers_;  ///< the preference when it was last looked at
  BatchProgressDisplay display_;
  QList<QWidget*> folderControls_;
  QWidget* outputRow_ = nullptr;
  std::unique_ptr<BatchProcessor> processor_;
  BackgroundTask count_;
};

}  // namespace tessaly
