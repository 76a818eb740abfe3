// How the profile creation tab is put together: its panels, what they are connected to, keys and drops.
#include "app/preview/CalibrationPreviewView.h"
#include "app/preview/PreviewPanel.h"
#include "app/profile/CalibrationSourcePanel.h"
#include "app/profile/CalibrationViewController.h"
#include "app/profile/CandidatePanel.h"
#include "app/profile/ManualAdditionsPanel.h"
#include "app/profile/SavePanel.h"
#include "app/widgets/DropTarget.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/WindowState.h"
#include "localization/Localization.h"
#include "presentation/SecondOpinionTexts.h"
#include "store/ProfileStore.h"

#include <QBoxLayout>
#include <QScrollArea>
#include <QSplitter>
#include <system_error>

namespace tessaly {
namespace {

constexpr const char* splitterKey = "splitter";

// The shares of the two halves and what neither goes below.
constexpr int candidatesShare = 38;
constexpr int previewShare = 62;
constexpr int smallestCandidates = 380;
constexpr int smallestPreview = 480;

constexpr double centredZoom = 4;

// A folder that cannot be listed is told about when profiles are loaded from it.
bool haveProfiles() {
  try {
    return !ProfileStore::files().empty();
  } catch (const std::system_error&) {
    return true;
  }
}

}  // namespace

CalibrationViewController::CalibrationViewController(Panels& panels, QWidget* parent)
    : QWidget(parent),
      panels_(panels),
      source_(new CalibrationSourcePanel),
      candidatePanel_(new CandidatePanel(store_)),
      preview_(new PreviewPanel(store_)),
      manual_(new ManualAdditionsPanel),
      save_(new SavePanel),
      splitter_(new QSplitter(Qt::Horizontal)),
      work_(*this) {
  folderLabel = source_->folderLabel;
  statusLabel = source_->statusLabel;
  progress = source_->progress;
  analyzeButton = source_->analyzeButton;
  table = candidatePanel_->table;
  confidenceThreshold = candidatePanel_->confidenceThreshold;
  previewView = preview_->previewView;
  zoomSlider = preview_->zoomSlider;
  manualX = manual_->manualX;
  manualY = manual_->manualY;
  spotRadius = manual_->spotRadius;
  profileName = save_->profileName;
  setStatus([] { return L("Choose a calibration folder, then click Find Sensor Defects."); });
  layOut();
  source_->guide->setProfilesExist(haveProfiles());
  connectControls();
  connectPreview();
  addShortcuts();
  addDropTargets();
  setFocusOrder();
  localizeView(*this);
}

// Table and preview look at the candidates to their end; Qt would let them outlive those.
CalibrationViewController::~CalibrationViewController() {
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void CalibrationViewController::layOut() {
  preview_->addBelow(*manual_);
  candidatePanel_->setMinimumWidth(Metrics::scaled(smallestCandidates));
  preview_->setMinimumWidth(Metrics::scaled(smallestPreview));
  splitter_->setChildrenCollapsible(false);
  splitter_->setHandleWidth(Metrics::groupSpacing);
  splitter_->addWidget(candidatePanel_);
  splitter_->addWidget(preview_);
  splitter_->setStretchFactor(0, candidatesShare);
  splitter_->setStretchFactor(1, previewShare);
  splitter_->setSizes({candidatesShare * 100, previewShare * 100});
  const QByteArray stored = WindowState::value(splitterKey).toByteArray();
  if (!stored.isEmpty()) splitter_->restoreState(stored);

  // Where the window is too small for all of it, this part scrolls: what starts, stops and saves stays in view.
  auto* review = new QWidget;
  auto* parts = new QVBoxLayout(review);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(Metrics::groupSpacing);
  parts->addWidget(source_->guide);
  parts->addWidget(splitter_, 1);
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(review);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Metrics::windowMargin, Metrics::windowMargin, Metrics::windowMargin,
                             Metrics::windowMargin);
  column->setSpacing(Metrics::groupSpacing);
  column->addWidget(source_);
  column->addWidget(area, 1);
  column->addWidget(save_);
}

void CalibrationViewController::connectControls() {
  using Self = CalibrationViewController;
  connect(source_->folderButton, &QPushButton::clicked, this, &Self::chooseFolder);
  connect(analyzeButton, &QPushButton::clicked, this, &Self::analyze);
  connect(source_->secondOpinionBox, &QCheckBox::toggled, this, &Self::showOpinion);
  connect(source_->reportButton, &QPushButton::clicked, this, &Self::saveReport);
  connect(&store_, &CandidateStore::inclusionRefused, this, &Self::inclusionRefused);
  connect(candidatePanel_, &CandidatePanel::unconfirmedExcluded, this,
          [this](int count) { setStatus([count] { return SecondOpinionTexts::unconfirmedExcluded(count); }); });
  connect(candidatePanel_, &CandidatePanel::matchingRequested, this, &Self::acceptStrongCandidates);
  connect(preview_->inspectButton, &QPushButton::clicked, this, &Self::loadInspectionDNG);
  connect(preview_->brightFieldButton, &QPushButton::clicked, this, &Self::showBrightFieldPreview);
  connect(manual_->addPixelButton, &QPushButton::clicked, this, &Self::addManualPixel);
  connect(manual_->addColumnButton, &QPushButton::clicked, this, &Self::addManualLine);
  connect(manual_->addSpotButton, &QPushButton::clicked, this, &Self::addManualSpot);
  connect(save_->saveButton, &QPushButton::clicked, this, &Self::saveProfile);
}

void CalibrationViewController::connectPreview() {
  using Self = CalibrationViewController;
  using View = CalibrationPreviewView;
  connect(table, &CandidateTable::candidateSelectionChanged, this, &Self::selectionChanged);
  connect(table, &CandidateTable::centreRequested, this, [this](int row) { previewView->centreOn(row, centredZoom); });
  connect(previewView, &View::candidateClicked, this, &Self::candidateClicked);
  connect(previewView, &View::candidateDoubleClicked, this,
          [this](int row) { store_.setIncluded({row}, !store_.isIncluded(row)); });
  connect(previewView, &View::coordinateClicked, this, &Self::coordinateClicked);
  connect(previewView, &View::guideMoved, this, &Self::guideMoved);
  connect(previewView, &View::guideRemoved, this, &Self::guideRemoved);
  connect(previewView, &View::stepRequested, table, &CandidateTable::step);
  connect(previewView, &View::toggleRequested, table, &CandidateTable::toggleSelected);
  connect(previewView, &View::removeRequested, this, &Self::removeSelected);
  connect(table, &CandidateTable::removeRequested, this, &Self::removeSelected);
}

void CalibrationViewController::addShortcuts() {
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_O, *source_->folderButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::SHIFT | Qt::Key_O, *preview_->inspectButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_Return, *analyzeButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_Enter, *analyzeButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_S, *save_->saveButton);
}

void CalibrationViewController::addDropTargets() {
  new DropTarget(
      *this, [this](const std::filesystem::path& path) { return !isBusy_ && isFolder(path); },
      [this](const std::filesystem::path& path) { setFolder(path); });
  new DropTarget(
      *previewView, [this](const std::filesystem::path& path) { return !isBusy_ && isDNGFile(path); },
      [this](const std::filesystem::path& path) { inspect(path); });
}

void CalibrationViewController::setFocusOrder() {
  setFocusProxy(source_->folderButton);
  Controls::setFocusOrder({
      source_->folderButton,
      analyzeButton,
      &source_->guide->disclosure(),
      source_->secondOpinionBox,
      source_->reportButton,
      candidatePanel_->kindFilter,
      table,
      confidenceThreshold,
      candidatePanel_->matchingButton,
      candidatePanel_->selectAllButton,
      candidatePanel_->deselectAllButton,
      candidatePanel_->excludeUnconfirmedButton,
      preview_->inspectButton,
      preview_->brightFieldButton,
      previewView,
      zoomSlider,
      preview_->fitButton,
      manualX,
      manualY,
      spotRadius,
      manual_->addPixelButton,
      manual_->addColumnButton,
      manual_->addSpotButton,
      profileName,
      save_->saveButton,
  });
}

void CalibrationViewController::saveState() const {
  WindowState::setValue(splitterKey, splitter_->saveState());
  candidatePanel_->saveState();
}

}  // namespace tessaly
