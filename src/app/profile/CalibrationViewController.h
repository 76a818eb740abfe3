// The tab "1. Create Camera Profile": from a folder of calibration frames to a saved camera profile.
//
// A thin controller: what is detected, included, checked and said is decided below this folder. The analysis and the
// inspection run on a thread of their own, one at a time; everything else, and every field, is user-interface thread
// only. Coordinates that are typed or shown are active coordinates; candidates hold raw ones.
#pragma once

#include "app/preview/CandidateStore.h"
#include "app/widgets/BackgroundTask.h"
#include "app/widgets/FollowsLanguage.h"
#include "app/widgets/LocalizedLabel.h"
#include "app/widgets/Panels.h"
#include "calibration/CalibrationRecords.h"

#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QWidget>
#include <exception>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

class QSplitter;

namespace tessaly {

class CalibrationPreviewView;
class CalibrationSourcePanel;
class CandidatePanel;
class CandidateTable;
class ManualAdditionsPanel;
class PreviewPanel;
class SavePanel;
struct CameraProfile;

class CalibrationViewController : public QWidget {
  Q_OBJECT

 public:
  explicit CalibrationViewController(Panels& panels, QWidget* parent = nullptr);
  ~CalibrationViewController() override;

  [[nodiscard]] const std::optional<std::filesystem::path>& folderURL() const { return folderURL_; }
  [[nodiscard]] const std::optional<CalibrationResult>& result() const { return result_; }
  [[nodiscard]] const std::vector<CalibrationCandidate>& candidates() const { return store_.candidates(); }
  [[nodiscard]] std::set<UUID> accepted() const { return store_.accepted(); }

  /// Whether an analysis or an inspection runs.
  [[nodiscard]] bool isBusy() const { return isBusy_; }

  void chooseFolder();
  void setFolder(const std::filesystem::path& folder);
  void analyze();
  void acceptStrongCandidates();
  void addManualPixel();
  void addManualLine();
  void addManualSpot();
  void loadInspectionDNG();
  void inspect(const std::filesystem::path& file);
  void showBrightFieldPreview();
  void saveReport();
  void saveProfile();

  /// Keeps the divided widths and the table's columns between launches.
  void saveState() const;

  LocalizedLabel* folderLabel;
  LocalizedLabel* statusLabel;
  QProgressBar* progress;
  QPushButton* analyzeButton;
  QLineEdit* profileName;
  CandidateTable* table;
  CalibrationPreviewView* previewView;
  QSlider* zoomSlider;
  QLineEdit* manualX;
  QLineEdit* manualY;
  QLineEdit* spotRadius;
  QLineEdit* confidenceThreshold;

 signals:
  void profileSaved(const UUID& id);

 private:
  void layOut();
  void connectControls();
  void connectPreview();
  void addShortcuts();
  void addDropTargets();
  void setFocusOrder();

  [[nodiscard]] double currentConfidenceThreshold() const;
  [[nodiscard]] const DNGMetadata* resultMetadata() const { return result_ ? &result_->metadata : nullptr; }
  void add(CalibrationCandidate candidate);
  void removeSelected();
  void candidateClicked(int row);
  void coordinateClicked(std::int64_t x, std::int64_t y);
  void guideMoved(std::int64_t x);
  void guideRemoved();
  void selectionChanged();

  void clearResult();
  void showCamera();
  void setBusy(bool busy);
  void showProgress(const CalibrationProgress& report);
  void analyzed(CalibrationResult result);
  void showOpinion();
  void inclusionRefused(int row);
  void writeReport(const std::filesystem::path& file);
  void inspected(const std::filesystem::path& file, const RawPreviewImage& preview);
  void keepProfile(const CameraProfile& profile);
  void workFailed(const std::exception_ptr& failure, const std::string& subject);
  void requireResultForInspection() const;

  /// What the status line says until the next event; work that fails returns to it.
  void setStatus(TextSource text);
  void showWork(TextSource text);

  /// Runs a step of the user's; what it refuses is shown.
  template <typename Step>
  void attempt(Step step);

  template <typename Work, typename Done>
  void startWork(const std::filesystem::path& subject, Work work, Done done);

  Panels& panels_;
  CandidateStore store_;
  std::optional<std::filesystem::path> folderURL_;
  std::optional<CalibrationResult> result_;
  TextSource status_;         ///< of the last event
  TextSource completion_;     ///< of the result
  TextSource pictureStatus_;  ///< what the status says of the picture that is shown
  bool isBusy_ = false;

  CalibrationSourcePanel* source_;
  CandidatePanel* candidatePanel_;
  PreviewPanel* preview_;
  ManualAdditionsPanel* manual_;
  SavePanel* save_;
  QSplitter* splitter_;

  BackgroundTask work_;  ///< last, so that it is gone before what its results touch
};

}  // namespace tessaly
