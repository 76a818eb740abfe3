#include "app/settings/SettingsWindowController.h"

#include "app/widgets/Controls.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/QtText.h"
#include "app/widgets/StoredProfiles.h"
#include "app/widgets/Theme.h"
#include "batch/OutputFolderAccess.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "platform/VisibleText.h"
#include "store/ProfileStore.h"

#include <QBoxLayout>
#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <array>
#include <utility>

namespace tessaly {
namespace {

constexpr std::array appearances{AppAppearance::system, AppAppearance::light, AppAppearance::dark};

constexpr const char* profileFiles = "Camera profile files";
constexpr std::size_t resetAnswer = 0;

const FilePanel outputPanel{
    .title = "Choose a default output folder",
    .purpose = "output",
    .filterName = {},
    .globs = {},
    .proposedName = {},
};

const FilePanel importPanel{
    .title = "Choose a Camera Profile to Import",
    .purpose = "profiles",
    .filterName = profileFiles,
    .globs = {"*.json"},
    .proposedName = {},
};

const FilePanel exportPanel{
    .title = "Export Camera Profile",
    .purpose = "profiles",
    .filterName = profileFiles,
    .globs = {"*.json"},
    .proposedName = "Tessaly-Profile.json",
};

template <typename Case, std::size_t count>
int indexOf(const std::array<Case, count>& cases, Case wanted) {
  return static_cast<int>(std::ranges::find(cases, wanted) - std::begin(cases));
}

template <typename Case, std::size_t count>
Case caseAt(const std::array<Case, count>& cases, int index) {
  return cases[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(count) - 1))];
}

}  // namespace

SettingsWindowController::SettingsWindowController(Panels& panels, QWidget& mainWindow)
    : QDialog(&mainWindow), panels_(panels), area_(new QScrollArea(this)) {
  area_->setFrameShape(QFrame::NoFrame);
  area_->setWidgetResizable(true);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area_->setFocusPolicy(Qt::NoFocus);
  auto* column = Controls::onGrid<QVBoxLayout>(0);
  column->addWidget(area_);
  setLayout(column);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_W, [this] { done(Accepted); });
  rebuild();
  observation_ = prefs_.observe([this] { preferencesChanged(); });
}

void SettingsWindowController::showWindow() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

// The controls that are replaced may be in the middle of a signal: the scroll area deletes them, but not yet.
void SettingsWindowController::rebuild() {
  const int offset = area_->verticalScrollBar()->value();
  const bool wasShown = isVisible();
  setWindowTitle(localized("Settings"));
  if (QWidget* old = area_->takeWidget()) old->deleteLater();
  delete std::exchange(footer_, nullptr);
  makeControls();
  area_->setWidget(layOut());
  layout()->addWidget(footer_ = layOutButtons());
  showPreferences();
  connectControls();
  showLock();
  fitToContent();
  area_->verticalScrollBar()->setValue(offset);
  if (wasShown) language->setFocus();
}

void SettingsWindowController::showPreferences() {
  language->setCurrentIndex(indexOf(languageChoices, prefs_.language()));
  appearance->setCurrentIndex(indexOf(appearances, prefs_.appearance()));
  workers->setCurrentIndex(static_cast<int>(prefs_.workers()));
  output->setCurrentIndex(prefs_.useCustomOutput() ? 1 : 0);
  collision->setCurrentIndex(prefs_.existingOutputPolicy() == ExistingOutputPolicy::numberedCopy ? 1 : 0);
  autoOpen->setChecked(prefs_.openAfterCompletion());
  saveLog->setChecked(prefs_.saveLog());
  showOutputPath();
  reloadProfiles();
}

void SettingsWindowController::connectControls() {
  using Self = SettingsWindowController;
  for (QComboBox* popUp : {language, appearance, workers, output, collision})
    connect(popUp, &QComboBox::currentIndexChanged, this, &Self::changed);
  for (QCheckBox* box : {autoOpen, saveLog})
    connect(box, &QCheckBox::toggled, this, &Self::changed);
  connect(chooseOutputButton, &QPushButton::clicked, this, &Self::chooseOutput);
  connect(exportButton, &QPushButton::clicked, this, &Self::exportProfile);
  connect(setAsideButton, &QPushButton::clicked, this, &Self::setProfileAside);
  connect(importButton, &QPushButton::clicked, this, &Self::importProfile);
  connect(resetButton, &QPushButton::clicked, this, &Self::reset);
  connect(doneButton, &QPushButton::clicked, this, [this] { done(Accepted); });
}

void SettingsWindowController::setLocked(bool locked) {
  isLocked_ = locked;
  showLock();
}

// A control that is disabled would hand its focus to whatever comes next.
void SettingsWindowController::showLock() {
  if (isLocked_) doneButton->setFocus();
  for (QWidget* control :
       std::initializer_list<QWidget*>{language, appearance, workers, output, chooseOutputButton, collision, autoOpen,
                                       saveLog, profiles, exportButton, importButton, setAsideButton, resetButton})
    control->setDisabled(isLocked_);
  lockLabel->setStringValue(isLocked_ ? "Settings are unavailable during a batch repair." : "");
}

// ---- Edits

void SettingsWindowController::changed() {
  const AppLanguage before = prefs_.language();
  prefs_.setLanguage(caseAt(languageChoices, language->currentIndex()));
  if (prefs_.language() != before) Localization::setLanguageOverride(std::nullopt);
  prefs_.setAppearance(caseAt(appearances, appearance->currentIndex()));
  prefs_.setWorkers(workers->currentIndex());
  prefs_.setUseCustomOutput(output->currentIndex() == 1);
  prefs_.setExistingOutputPolicy(collision->currentIndex() != 0 ? ExistingOutputPolicy::numberedCopy
                                                                : ExistingOutputPolicy::skip);
  prefs_.setOpenAfterCompletion(autoOpen->isChecked());
  prefs_.setSaveLog(saveLog->isChecked());
  applyAppAppearance();
  prefs_.notify();
  if (prefs_.language() != before) rebuild();
}

void SettingsWindowController::chooseOutput() {
  panels_.chooseFolder(*this, outputPanel, [this](const std::filesystem::path& folder) {
    try {
      OutputFolderAccess::save(folder);
      prefs_.notify();
    } catch (const std::exception&) {
      panels_.showAlert(*this, failureAlert(std::current_exception(), displayName(folder)));
    }
  });
}

void SettingsWindowController::reset() {
  Alert alert = sentence(Alert::Style::warning, "Reset preferences?");
  alert.informativeText = "Camera profiles and photographs will be kept.";
  alert.buttons = {"Reset", "Cancel"};
  alert.defaultButton = 1;
  panels_.showAlert(*this, std::move(alert), [this](std::size_t answer) {
    if (answer != resetAnswer) return;
    prefs_.reset();
    Localization::setLanguageOverride(std::nullopt);
    applyAppAppearance();
    prefs_.notify();
    rebuild();
  });
}

void SettingsWindowController::preferencesChanged() {
  showOutputPath();
  reloadProfiles();
}

void SettingsWindowController::showOutputPath() {
  const std::string path = prefs_.outputPath();
  path.empty() ? outputPath->setStringValue("No custom output folder selected") : outputPath->setName(path);
}

// Fonts and with them heights are certain only now.
void SettingsWindowController::showEvent(QShowEvent* event) {
  fitToContent();
  QDialog::showEvent(event);
}

// ---- Camera profiles

// A profile may have been saved while another window was in front.
void SettingsWindowController::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) reloadProfiles();
}

void SettingsWindowController::reloadProfiles() {
  const int index = profiles->currentIndex();
  const auto id = index >= 0 && index < std::ssize(loaded_) ? std::optional(loaded_[static_cast<std::size_t>(index)].id)
                                                            : std::nullopt;
  StoredProfiles stored = StoredProfiles::load();
  loaded_ = std::move(stored.profiles);
  unreadable_ = stored.unreadable;
  showProfileFailure(stored.failure);
  profiles->clear();
  for (const CameraProfile& profile : loaded_)
    profiles->addItem(toQt(visibleText(profile.name)));
  if (loaded_.empty()) profiles->addItem(localized("No Camera Profiles"));
  const auto same = std::ranges::find_if(loaded_, [&](const CameraProfile& profile) { return profile.id == id; });
  profiles->setCurrentIndex(same == loaded_.end() ? 0 : static_cast<int>(same - loaded_.begin()));
}

// The window grows and shrinks with the line.
void SettingsWindowController::showProfileFailure(const TextSource& failure) {
  const bool changes = profileFailure->isHidden() != !failure;
  profileFailure->setVisible(failure != nullptr);
  setAsideButton->setVisible(unreadable_.has_value());
  if (failure) profileFailure->setComposed(failure);
  if (changes && isVisible()) fitToContent();
}

void SettingsWindowController::setProfileAside() {
  if (!unreadable_) return;
  try {
    ProfileStore::setAside(*unreadable_);
  } catch (const std::exception&) {
    panels_.showAlert(*this, failureAlert(std::current_exception(), displayText(unreadable_->native())));
  }
  prefs_.notify();
}

void SettingsWindowController::importProfile() {
  panels_.chooseFile(*this, importPanel, [this](const std::filesystem::path& file) { importFrom(file); });
}

void SettingsWindowController::importFrom(const std::filesystem::path& file) {
  try {
    ProfileStore::importProfile(file);
    tell("Imported profile saved as a new copy.");
    prefs_.notify();
  } catch (const std::exception&) {
    panels_.showAlert(*this, failureAlert(std::current_exception(), displayName(file)));
  }
}

void SettingsWindowController::exportProfile() {
  const int index = profiles->currentIndex();
  if (index < 0 || index >= std::ssize(loaded_)) return tell("Select a profile to export.");
  const CameraProfile profile = loaded_[static_cast<std::size_t>(index)];
  panels_.chooseNewFile(*this, exportPanel, [this, profile](const std::filesystem::path& file) {
    try {
      ProfileStore::exportProfile(profile, file);
      tell("Profile exported.");
    } catch (const std::exception&) {
      panels_.showAlert(*this, failureAlert(std::current_exception(), displayName(file)));
    }
  });
}

void SettingsWindowController::tell(std::string english) {
  panels_.showAlert(*this, sentence(Alert::Style::informational, std::move(english)));
}

}  // namespace tessaly
