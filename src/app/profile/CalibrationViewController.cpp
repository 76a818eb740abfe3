#include "app/profile/CalibrationViewController.h"

#include "app/preview/CalibrationPreviewView.h"
#include "app/preview/PreviewPanel.h"
#include "app/profile/CalibrationSourcePanel.h"
#include "app/profile/CandidatePanel.h"
#include "app/profile/ManualAdditionsPanel.h"
#include "app/profile/SavePanel.h"
#include "app/widgets/QtText.h"
#include "batch/SourceFiles.h"
#include "calibration/CalibrationEngine.h"
#include "calibration/review/Inspection.h"
#include "calibration/review/InvalidInput.h"
#include "calibration/review/ManualAdditions.h"
#include "calibration/review/NumberParsing.h"
#include "calibration/review/Preselection.h"
#include "calibration/review/ProfileBuilding.h"
#include "calibration/review/Proposals.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/CalibrationStart.h"
#include "presentation/CalibrationTexts.h"
#include "presentation/DuplicateColumns.h"
#include "presentation/ReviewTexts.h"
#include "store/ProfileStore.h"

#include <algorithm>
#include <utility>

namespace tessaly {
namespace {

constexpr const char* readyText = "Ready to analyze. Source files are read-only and will not be modified.";
constexpr const char* noFolderText = "Choose a calibration folder, then click Find Sensor Defects.";

const FilePanel folderPanel{
    .title = "Choose a Folder Containing Calibration DNG Files",
    .purpose = "calibration",
    .filterName = {},
    .globs = {},
    .proposedName = {},
};

const FilePanel inspectionPanel{
    .title = "Choose a Source DNG That Shows the Defective Column",
    .purpose = "inspection",
    .filterName = "DNG files",
    .globs = {"*.dng", "*.DNG"},
    .proposedName = {},
};

/// Ends work whose owner does not want it any more.
struct Unwanted {};

TextSource translated(const char* english) {
  return [english] { return L(english); };
}

CalibrationResult analyzeFolder(const std::filesystem::path& folder, CalibrationEngine::Opinions opinions,
                                const CalibrationProgressHandler& progress) {
  std::vector<std::filesystem::path> files = sourceFiles(folder);
  if (const auto reason = CalibrationStart::tooFewFiles(files)) throw InvalidInput(Localization::original(*reason));
  return CalibrationEngine::analyze(std::move(files), progress, opinions);
}

/// The stored profile that says the same under the same name. Profiles that cannot be loaded stop nobody from saving.
std::optional<UUID> storedTwin(CameraProfile profile) {
  try {
    for (const CameraProfile& stored : ProfileStore::loadAll()) {
      profile.id = stored.id;
      profile.createdAt = stored.createdAt;
      if (profile == stored) return stored.id;
    }
  } catch (const std::exception&) {
  }
  return std::nullopt;
}

}  // namespace

template <typename Step>
void CalibrationViewController::attempt(Step step) {
  try {
    step();
  } catch (const std::exception&) {
    panels_.showAlert(*this, failureAlert(std::current_exception(), fromQt(profileName->text().trimmed())));
  }
}

// What `work` returns is handed to `done` on this thread.
template <typename Work, typename Done>
void CalibrationViewController::startWork(const std::filesystem::path& subject, Work work, Done done) {
  setBusy(true);
  work_.start([this, name = displayName(subject), work = std::move(work), done = std::move(done)](
                  const std::stop_token& stop, const BackgroundTask::Deliver& deliver) {
    try {
      auto outcome = std::make_shared<decltype(work(stop, deliver))>(work(stop, deliver));
      deliver([this, outcome, done] {
        setBusy(false);
        done(std::move(*outcome));
        statusLabel->announce();
      });
    } catch (const Unwanted&) {
    } catch (const std::exception&) {
      deliver([this, name, failure = std::current_exception()] { workFailed(failure, name); });
    }
  });
}

// ---- Choosing the folder

void CalibrationViewController::chooseFolder() {
  panels_.chooseFolder(*this, folderPanel, [this](const std::filesystem::path& folder) { setFolder(folder); });
}

void CalibrationViewController::setFolder(const std::filesystem::path& folder) {
  if (isBusy_) return;
  folderURL_ = folder;
  folderLabel->setName(displayName(folder), displayText(folder.native()));
  setStatus(translated(readyText));
  clearResult();
}

// What was found in one folder must not be saved as the camera of another.
void CalibrationViewController::clearResult() {
  result_.reset();
  store_.reset({}, {}, {});
  previewView->clear();
  preview_->brightFieldButton->hide();
  manual_->clear();
  progress->setValue(0);
  showCamera();
  showOpinion();
}

void CalibrationViewController::showCamera() {
  save_->cameraLabel->setVisible(result_.has_value());
  save_->cameraLabel->setName(result_ ? CalibrationTexts::camera(result_->metadata) : "");
}

// ---- Analysis

void CalibrationViewController::analyze() {
  if (isBusy_) return;
  if (!folderURL_) return panels_.showAlert(*this, sentence(Alert::Style::informational, noFolderText));
  progress->setValue(0);
  showWork(translated("Reading calibration frames…"));
  using CalibrationEngine::Opinions;
  const Opinions opinions = source_->secondOpinionBox->isChecked() ? Opinions::both : Opinions::documented;
  const auto work = [this, folder = *folderURL_, opinions](const std::stop_token& stop,
                                                           const BackgroundTask::Deliver& deliver) {
    return analyzeFolder(folder, opinions, [this, &stop, &deliver](const CalibrationProgress& report) {
      if (stop.stop_requested()) throw Unwanted();
      deliver([this, report] { showProgress(report); });
    });
  };
  startWork(*folderURL_, work, [this](CalibrationResult result) { analyzed(std::move(result)); });
}

void CalibrationViewController::showProgress(const CalibrationProgress& report) {
  progress->setRange(0, static_cast<int>(std::max<std::int64_t>(report.total, 1)));
  progress->setValue(static_cast<int>(report.completed));
  showWork([report] { return CalibrationTexts::progress(report); });
}

void CalibrationViewController::analyzed(CalibrationResult result) {
  const double threshold = CandidateSelection::parseConfidence(fromQt(confidenceThreshold->text()))
                               .value_or(CandidateSelection::defaultPixelConfidence);
  result_ = std::move(result);
  store_.reset(result_->metadata, result_->candidates, CandidateSelection::preselected(result_->candidates, threshold));
  if (result_->secondOpinion)
    store_.setOpinion({CandidateSelection::proposals(*result_), result_->secondOpinion->confirmed});
  showOpinion();
  completion_ = [this, threshold] {
    return DuplicateColumns::behind(CalibrationTexts::completion(*result_, threshold), " ",
                                    DuplicateColumns::count(*result_));
  };
  progress->setValue(progress->maximum());
  showCamera();
  previewView->setManualGuideX(std::nullopt);
  showBrightFieldPreview();
}

void CalibrationViewController::showBrightFieldPreview() {
  if (!result_) return;
  previewView->setPreview(result_->preview, result_->metadata);
  preview_->brightFieldButton->hide();
  pictureStatus_ = completion_;
  setStatus(pictureStatus_);
}

void CalibrationViewController::workFailed(const std::exception_ptr& failure, const std::string& subject) {
  setBusy(false);
  progress->setValue(0);
  setStatus(status_);
  panels_.showAlert(*this, failureAlert(failure, subject));
}

// A control that is disabled would hand its focus to whatever comes next.
void CalibrationViewController::setBusy(bool busy) {
  isBusy_ = busy;
  if (busy && source_->isAncestorOf(focusWidget())) table->setFocus();
  if (busy && preview_->inspectButton->hasFocus()) previewView->setFocus();
  source_->setBusy(busy);
  preview_->inspectButton->setEnabled(!busy);
  previewView->setDimmed(busy);
  if (busy) statusLabel->announce();
}

void CalibrationViewController::setStatus(TextSource text) {
  status_ = std::move(text);
  statusLabel->setComposed(status_);
}

void CalibrationViewController::showWork(TextSource text) {
  statusLabel->setComposed(std::move(text));
}

// ---- Inspecting a photograph

void CalibrationViewController::loadInspectionDNG() {
  attempt([this] {
    requireResultForInspection();
    panels_.chooseFile(*this, inspectionPanel, [this](const std::filesystem::path& file) { inspect(file); });
  });
}

void CalibrationViewController::requireResultForInspection() const {
  if (!result_) throw InvalidInput("Run defect detection on the calibration frames before loading a problem DNG.");
}

void CalibrationViewController::inspect(const std::filesystem::path& file) {
  if (isBusy_) return;
  attempt([this, &file] {
    requireResultForInspection();
    showWork(translated("Generating an enhanced defective-column preview…"));
    startWork(
        file,
        [file, calibrated = result_->metadata](const std::stop_token&, const BackgroundTask::Deliver&) {
          return inspectionOf(file, calibrated);
        },
        [this, file](const RawPreviewImage& preview) { inspected(file, preview); });
  });
}

void CalibrationViewController::inspected(const std::filesystem::path& file, const RawPreviewImage& preview) {
  previewView->setPreview(preview, result_->metadata);
  preview_->brightFieldButton->show();
  pictureStatus_ = [name = displayName(file)] { return ReviewTexts::inspecting(name); };
  setStatus(pictureStatus_);
}

// ---- Review

double CalibrationViewController::currentConfidenceThreshold() const {
  return CandidateSelection::requireConfidence(fromQt(confidenceThreshold->text()));
}

void CalibrationViewController::acceptStrongCandidates() {
  attempt([this] {
    const double threshold = currentConfidenceThreshold();
    store_.includeMatchingPixels(threshold);
    setStatus([threshold] { return ReviewTexts::matchingPixelsIncluded(threshold); });
  });
}

void CalibrationViewController::candidateClicked(int row) {
  const CalibrationCandidate candidate = store_.at(row);
  manual_->fill(CandidateSelection::fieldsFromCandidate(candidate, store_.metadata()));
  setStatus([candidate, metadata = store_.metadata()] { return ReviewTexts::candidateClicked(candidate, metadata); });
  table->selectCandidate(row);
}

void CalibrationViewController::coordinateClicked(std::int64_t x, std::int64_t y) {
  manual_->fill({x, y, std::nullopt});
  setStatus([x] { return ReviewTexts::columnClicked(x); });
}

void CalibrationViewController::guideMoved(std::int64_t x) {
  manual_->setX(x);
  setStatus([x] { return ReviewTexts::columnClicked(x); });
}

void CalibrationViewController::guideRemoved() {
  setStatus(pictureStatus_);
}

void CalibrationViewController::selectionChanged() {
  previewView->setSelection(table->selectedCandidates(), table->currentCandidate());
}

// ---- Additions by hand

void CalibrationViewController::addManualPixel() {
  attempt([this] { add(CandidateSelection::manualPixel(resultMetadata(), manual_->x(), manual_->y())); });
}

void CalibrationViewController::addManualLine() {
  attempt([this] { add(CandidateSelection::manualColumn(resultMetadata(), manual_->x())); });
}

void CalibrationViewController::addManualSpot() {
  attempt(
      [this] { add(CandidateSelection::manualSpot(resultMetadata(), manual_->x(), manual_->y(), manual_->radius())); });
}

void CalibrationViewController::add(CalibrationCandidate candidate) {
  const std::optional<int> present = store_.rowOfSamePlace(candidate);
  setStatus([candidate, metadata = store_.metadata(), isNew = !present] {
    return isNew ? ReviewTexts::added(candidate, metadata) : ReviewTexts::addedBefore(candidate, metadata);
  });
  if (present) {
    store_.setIncluded({*present}, true);
  } else {
    store_.append(std::move(candidate));
  }
  candidatePanel_->select(present.value_or(store_.count() - 1));
}

// From the last one on, so that the rows before it keep their numbers.
void CalibrationViewController::removeSelected() {
  const std::set<int> selected = table->selectedCandidates();
  if (selected.empty()) return;
  std::vector<CalibrationCandidate> removed;
  for (auto row = selected.rbegin(); row != selected.rend() && store_.isAddedByHand(*row); ++row) {
    removed.push_back(store_.at(*row));
    store_.remove(*row);
  }
  selectionChanged();
  setStatus([removed, metadata = store_.metadata()] { return ReviewTexts::removed(removed, metadata); });
}

// ---- Saving

void CalibrationViewController::saveProfile() {
  attempt([this] {
    const CameraProfile profile =
        CandidateSelection::makeProfile(resultMetadata(), fromQt(profileName->text()), candidates(), accepted());
    if (const auto id = storedTwin(profile)) {
      setStatus([name = profile.name] { return ReviewTexts::savedBefore(name); });
      emit profileSaved(*id);
    } else {
      keepProfile(profile);
    }
  });
}

void CalibrationViewController::keepProfile(const CameraProfile& profile) {
  const std::filesystem::path file = ProfileStore::save(profile);
  source_->guide->setProfilesExist(true);
  Alert alert;
  alert.text = [profile, file] {
    return DuplicateColumns::behind(CalibrationTexts::saved(profile, file), "\n\n",
                                    DuplicateColumns::linesInsideColumns(profile));
  };
  panels_.showAlert(*this, std::move(alert));
  emit profileSaved(profile.id);
}

}  // namespace tessaly
