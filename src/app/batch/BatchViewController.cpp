#include "app/batch/BatchViewController.h"

#include "app/widgets/QtText.h"
#include "app/widgets/StoredProfiles.h"
#include "batch/OutputFolderAccess.h"
#include "batch/SourceFiles.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "platform/VisibleText.h"
#include "preferences/AppPreferences.h"
#include "presentation/AlertPage.h"
#include "presentation/BatchStart.h"
#include "presentation/BatchTexts.h"
#include "presentation/FailureText.h"
#include "store/ProfileStore.h"

#include <QApplication>
#include <algorithm>
#include <system_error>
#include <utility>

namespace tessaly {
namespace {

constexpr const char* noProfileText = "Create a profile from calibration DNG files before batch repair.";

const FilePanel inputPanel{
    .title = "Choose Source DNG Folder",
    .purpose = "source",
    .filterName = {},
    .globs = {},
    .proposedName = {},
};

const FilePanel outputPanel{
    .title = "Choose Repaired Files Folder",
    .purpose = "output",
    .filterName = {},
    .globs = {},
    .proposedName = {},
};

/// The place of the profile that was selected: by its id, else by its index, else the first.
int selectionAmong(const std::vector<CameraProfile>& profiles, const std::optional<UUID>& id, int index) {
  const auto same = std::ranges::find_if(profiles, [&](const CameraProfile& profile) { return profile.id == id; });
  if (same != profiles.end()) return static_cast<int>(same - profiles.begin());
  return index >= 0 && index < static_cast<int>(profiles.size()) ? index : 0;
}

/// What the status says about a folder that was just chosen; the count is that of the batch.
TextSource contentsOf(const std::filesystem::path& folder) {
  try {
    const auto count = static_cast<std::int64_t>(sourceFiles(folder).size());
    return [count] { return BatchTexts::foundFiles(count); };
  } catch (const std::system_error& error) {
    return [error, folder] { return visibleText(failureText(error, displayName(folder)).description); };
  }
}

bool isExistingFolder(const std::optional<std::filesystem::path>& folder) {
  std::error_code error;
  return folder && std::filesystem::is_directory(*folder, error);
}

}  // namespace

BatchViewController::~BatchViewController() {
  if (processor_) processor_->cancel();
}

// ---- Profiles

void BatchViewController::reloadProfiles() {
  const int index = profilePopUp->currentIndex();
  const std::optional<UUID> id = wantedProfile();
  loadProfiles();
  fillProfiles(selectionAmong(profiles_, id, index));
}

void BatchViewController::chooseProfile(const UUID& id) {
  savedProfile_ = id;
  if (isProcessing()) return;
  reloadProfiles();
  if (!profiles_.empty()) showNextStep();
}

std::optional<UUID> BatchViewController::wantedProfile() {
  if (savedProfile_) return std::exchange(savedProfile_, std::nullopt);
  const CameraProfile* selected = selectedProfile();
  return selected ? std::optional(selected->id) : std::nullopt;
}

void BatchViewController::loadProfiles() {
  const bool saidSo = std::exchange(profilesFailed_, false) || statusLabel->sourceText() == noProfileText;
  StoredProfiles stored = StoredProfiles::load();
  profiles_ = std::move(stored.profiles);
  unreadable_ = stored.unreadable;
  setAsideButton->setVisible(unreadable_.has_value());
  profilesFailed_ = stored.failure != nullptr;
  if (profilesFailed_) return statusLabel->setComposed(stored.failure);
  if (profiles_.empty() || saidSo) showNextStep();
}

void BatchViewController::setProfileAside() {
  if (!unreadable_) return;
  try {
    ProfileStore::setAside(*unreadable_);
  } catch (const std::exception&) {
    panels_.showAlert(*this, failureAlert(std::current_exception(), displayText(unreadable_->native())));
  }
  reloadProfiles();
  AppPreferences::shared().notify();
}

// What is missing before a batch can start, else what it would be about.
void BatchViewController::showNextStep() {
  if (profiles_.empty()) return statusLabel->setStringValue(noProfileText);
  inputURL_ ? countFiles() : statusLabel->setStringValue("Choose an input folder.");
}

void BatchViewController::fillProfiles(int selection) {
  profilePopUp->clear();
  for (const CameraProfile& profile : profiles_)
    profilePopUp->addItem(toQt(visibleText(profile.name)));
  if (profiles_.empty()) profilePopUp->addItem(localized("No Camera Profiles"));
  profilePopUp->setCurrentIndex(selection);
}

const CameraProfile* BatchViewController::selectedProfile() const {
  const int index = profilePopUp->currentIndex();
  if (index < 0 || index >= static_cast<int>(profiles_.size())) return nullptr;
  return &profiles_[static_cast<std::size_t>(index)];
}

// ---- Folders

void BatchViewController::chooseInput() {
  panels_.chooseFolder(*this, inputPanel, [this](const std::filesystem::path& folder) { setInput(folder); });
}

void BatchViewController::setInput(const std::filesystem::path& folder) {
  if (isProcessing()) return;
  inputURL_ = folder;
  inputLabel->setName(displayText(folder.native()));
  showOutput();
  progress->setValue(0);
  countFiles();
}

void BatchViewController::countFiles() {
  count_.start([this, folder = *inputURL_](const std::stop_token&, const BackgroundTask::Deliver& deliver) {
    deliver([this, text = contentsOf(folder)] { statusLabel->setComposed(text); });
  });
}

void BatchViewController::chooseOutput() {
  panels_.chooseFolder(*this, outputPanel, [this](const std::filesystem::path& folder) { setOutput(folder); });
}

void BatchViewController::setOutput(const std::filesystem::path& folder) {
  if (isProcessing()) return;
  outputURL_ = folder;
  outputWasChosenManually_ = true;
  openButton->setEnabled(true);
  showOutput();
}

void BatchViewController::useDefaultOutput() {
  outputURL_.reset();
  outputWasChosenManually_ = false;
  showOutput();
}

void BatchViewController::showOutput() {
  if (outputWasChosenManually_) return outputLabel->setName(displayText(outputURL_->native()));
  if (AppPreferences::shared().useCustomOutput()) return showCustomOutput(AppPreferences::shared().outputPath());
  outputLabel->setComposed([folder = inputURL_.value_or("")] { return BatchTexts::defaultOutput(folder); });
}

// Without a folder the batch will be refused; that is told before it is started.
void BatchViewController::showCustomOutput(const std::string& path) {
  path.empty() ? outputLabel->setStringValue("No custom output folder selected") : showDefaultOutput(path);
}

void BatchViewController::showDefaultOutput(const std::string& path) {
  outputLabel->setComposed([path] { return LF("Default: %@", {path}); });
}

// ---- Starting

void BatchViewController::startBatch() {
  if (isProcessing()) return;
  const CameraProfile* profile = selectedProfile();
  if (const auto missing = BatchStart::missingChoice(profile != nullptr, inputURL_.has_value()))
    return refuse(*missing);
  try {
    const auto chosen = outputWasChosenManually_ ? outputURL_ : std::nullopt;
    outputURL_ = BatchStart::outputFolder(chosen, *inputURL_);
  } catch (const std::exception&) {
    return panels_.showAlert(*this, failureAlert(std::current_exception(), displayName(*inputURL_)));
  }
  if (!outputWasChosenManually_) showDefaultOutput(displayText(outputURL_->native()));
  if (const auto same = BatchStart::sameFolder(*inputURL_, *outputURL_)) return refuse(*same);
  run(*profile);
}

void BatchViewController::refuse(const std::string& reason) {
  panels_.showAlert(*this, sentence(Alert::Style::informational, Localization::original(reason)));
}

void BatchViewController::run(const CameraProfile& profile) {
  count_.forget();
  resultsURL_ = outputURL_;
  openAfterCompletion_ = AppPreferences::shared().openAfterCompletion();
  display_ = BatchProgressDisplay();
  processor_ = std::make_unique<BatchProcessor>();
  setRunning(true);
  openButton->setEnabled(false);
  showDisplay();
  statusLabel->announce();
  const auto onThisThread = [this](auto step) {
    QMetaObject::invokeMethod(this, std::move(step), Qt::QueuedConnection);
  };
  processor_->process(
      *inputURL_, *outputURL_, profile, BatchStart::workers(workersPopUp->currentIndex()), BatchStart::options(),
      [this, onThisThread](const BatchProgress& snapshot) {
        onThisThread([this, snapshot] {
          if (display_.show(snapshot)) showDisplay();
        });
      },
      [this, onThisThread](const BatchSummary& summary) { onThisThread([this, summary] { finished(summary); }); });
}

void BatchViewController::showDisplay() {
  progress->setRange(0, static_cast<int>(display_.barMaximum()));
  progress->setValue(static_cast<int>(display_.barValue()));
  statusLabel->setComposed([this] { return display_.status(); });
}

// The focus goes to what can be done next: a control that is disabled would hand it to whatever comes after it.
void BatchViewController::setRunning(bool running) {
  QPushButton& next = running ? *stopButton : *startButton;
  next.setEnabled(true);
  if (hasFocusInside()) next.setFocus();
  for (QWidget* control : folderControls_)
    control->setEnabled(!running);
  startButton->setEnabled(!running);
  stopButton->setEnabled(running);
  emit runningChanged(running);
}

bool BatchViewController::hasFocusInside() const {
  const QWidget* focus = QApplication::focusWidget();
  return focus && isAncestorOf(focus);
}

// ---- Stopping and the end

void BatchViewController::cancelBatch() {
  if (!isProcessing()) return;
  processor_->cancel();
  stopButton->setEnabled(false);
  display_.stopRequested();
  showDisplay();
}

void BatchViewController::finished(const BatchSummary& summary) {
  const BatchSummary shown = BatchTexts::visible(summary);
  processor_.reset();
  setRunning(false);
  if (savedProfile_) reloadProfiles();
  openButton->setEnabled(BatchTexts::canOpenResults(summary, *resultsURL_));
  statusLabel->setComposed([shown] { return BatchTexts::statusLine(shown); });
  statusLabel->announce();
  emit ended();
  Alert alert;
  alert.style = BatchTexts::isWarning(summary) ? Alert::Style::warning : Alert::Style::informational;
  alert.text = [shown] { return BatchTexts::alertText(shown); };
  alert.page = [shown] { return batchEndPage(shown); };
  // Not before it is read: the file browser would come up over it.
  panels_.showAlert(*this, std::move(alert),
                    [this, folder = *resultsURL_, opens = openAfterCompletion_ && summary.succeeded > 0](std::size_t) {
                      if (opens) static_cast<void>(panels_.openFolder(folder));
                    });
}

void BatchViewController::openOutputFolder() {
  const std::optional<std::filesystem::path> folder = resultsURL_ ? resultsURL_ : outputURL_;
  if (!isExistingFolder(folder)) {
    openButton->setEnabled(false);
    return refuse("The output folder has not been created. Complete a batch repair first.");
  }
  if (panels_.openFolder(*folder)) return;
  Alert alert;
  alert.text = [folder] { return BatchTexts::cannotOpen(*folder); };
  panels_.showAlert(*this, std::move(alert));
}

// ---- Preferences

void BatchViewController::preferencesChanged() {
  if (isProcessing()) return;
  followWorkers();
  reloadProfiles();
  showOutput();
}

// A number that was chosen for the next batch only is left alone.
void BatchViewController::followWorkers() {
  const auto workers = static_cast<int>(AppPreferences::shared().workers());
  if (workersPopUp->currentIndex() == knownWorkers_) workersPopUp->setCurrentIndex(workers);
  knownWorkers_ = workers;
}

void BatchViewController::refreshLanguage() {
  if (profiles_.empty()) profilePopUp->setItemText(0, localized("No Camera Profiles"));
}

}  // namespace tessaly
