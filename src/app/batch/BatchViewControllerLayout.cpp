// How the batch tab is put together: its controls, what they are connected to, keys and drops.
#include "app/batch/BatchViewController.h"
#include "app/widgets/DropTarget.h"
#include "app/widgets/FittingScrollArea.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/WrapLayout.h"
#include "preferences/AppPreferences.h"

#include <QBoxLayout>
#include <QFormLayout>

namespace tessaly {
namespace {

constexpr int widestColumn = 860;
constexpr double titleSize = 1.4;

QWidget* row(std::initializer_list<QWidget*> widgets, QWidget* stretched) {
  auto* result = new QWidget;
  auto* line = new QHBoxLayout(result);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(Metrics::grid);
  for (QWidget* widget : widgets)
    line->addWidget(widget, widget == stretched ? 1 : 0);
  if (!stretched) line->addStretch(1);
  return result;
}

/// Buttons and the path that was chosen by them; the path goes below where there is no room beside them.
QWidget* pathRow(std::initializer_list<QWidget*> widgets) {
  auto* result = new QWidget;
  result->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  auto* line = new WrapLayout(result);
  line->setLastStretches();
  for (QWidget* widget : widgets)
    line->addWidget(widget);
  return result;
}

}  // namespace

BatchViewController::BatchViewController(Panels& panels, QWidget* parent)
    : QWidget(parent),
      profilePopUp(Controls::namesPopUp("Camera Profile")),
      reloadButton(Controls::button("Reload Profiles")),
      inputButton(Controls::folderButton("Source Folder…")),
      inputLabel(Controls::pathLabel()),
      outputButton(Controls::folderButton("Output Folder…")),
      defaultOutputButton(Controls::button("Use Default")),
      outputLabel(Controls::pathLabel()),
      workersPopUp(Controls::concurrentFilesPopUp("Concurrent Files")),
      progress(Controls::progressBar()),
      statusLabel(Controls::statusLabel()),
      setAsideButton(Controls::button("Set Aside", "Renames the unreadable file so that the other profiles load.")),
      startButton(Controls::button("Repair DNG Copies", "Rebuild only confirmed defective samples in new DNG copies.")),
      stopButton(Controls::button("Stop After Current Files", "Stop safely after files already in progress finish.")),
      openButton(Controls::button("Open Results")),
      panels_(panels),
      knownWorkers_(static_cast<int>(AppPreferences::shared().workers())),
      folderControls_{profilePopUp,        reloadButton, inputButton,   outputButton,
                      defaultOutputButton, workersPopUp, setAsideButton},
      count_(*this) {
  profilePopUp->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  profilePopUp->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  inputLabel->setStringValue("Not selected");
  statusLabel->setStringValue("Confirm and save defect locations in Create Camera Profile first.");
  workersPopUp->setCurrentIndex(knownWorkers_);
  stopButton->setEnabled(false);
  Controls::setMainAction(*startButton, true);
  layOut();
  connectControls();
  addDropTargets();
  showOutput();
  reloadProfiles();
  localizeView(*this);
}

void BatchViewController::layOut() {
  auto* title = new LocalizedLabel("Batch Repair DNG");
  makeHeading(*title, titleSize);
  auto* subtitle =
      new LocalizedLabel("Repaired copies keep your camera metadata. Original DNGs always stay read-only.");
  subtitle->setForegroundRole(QPalette::PlaceholderText);
  subtitle->setWordWrap(true);
  auto* choices = new QWidget;
  auto* parts = new QVBoxLayout(choices);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(Metrics::grid);
  parts->addWidget(title);
  parts->addWidget(subtitle);
  parts->addSpacing(Metrics::groupSpacing);
  parts->addLayout(layOutChoices());

  // Where the window is too low for all of it, the choices scroll: what starts, stops and tells stays in view.
  auto* column = Controls::onGrid<QVBoxLayout>(Metrics::grid);
  column->addWidget(new FittingScrollArea(*choices));
  column->addSpacing(Metrics::groupSpacing);
  column->addWidget(progress);
  column->addWidget(row({statusLabel, setAsideButton}, statusLabel));
  column->addSpacing(Metrics::grid);
  auto* actions = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  actions->addWidget(openButton);
  actions->addStretch(1);
  actions->addWidget(stopButton);
  actions->addWidget(startButton);
  column->addLayout(actions);
  column->addStretch(1);

  auto* content = new QWidget;
  content->setLayout(column);
  content->setMaximumWidth(Metrics::scaled(widestColumn));
  auto* centred = new QHBoxLayout(this);
  const int top = Metrics::windowMargin + Metrics::groupSpacing;
  centred->setContentsMargins(Metrics::windowMargin, top, Metrics::windowMargin, Metrics::windowMargin);
  centred->addStretch(1);
  centred->addWidget(content, 1000);
  centred->addStretch(1);
}

QLayout* BatchViewController::layOutChoices() {
  outputRow_ = pathRow({outputButton, defaultOutputButton, outputLabel});
  auto* form = new QFormLayout;
  form->setContentsMargins(0, 0, 0, 0);
  form->setHorizontalSpacing(Metrics::groupSpacing);
  form->setVerticalSpacing(Metrics::grid + Metrics::grid / 2);
  form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->addRow(Controls::caption("Camera Profile", *profilePopUp), row({profilePopUp, reloadButton}, profilePopUp));
  form->addRow(Controls::caption("Source DNG", *inputButton), pathRow({inputButton, inputLabel}));
  form->addRow(Controls::caption("Repaired Files", *outputButton), outputRow_);
  form->addRow(Controls::caption("Concurrent Files", *workersPopUp), row({workersPopUp}, nullptr));
  return form;
}

void BatchViewController::connectControls() {
  using Self = BatchViewController;
  connect(reloadButton, &QPushButton::clicked, this, &Self::reloadProfiles);
  connect(setAsideButton, &QPushButton::clicked, this, &Self::setProfileAside);
  connect(inputButton, &QPushButton::clicked, this, &Self::chooseInput);
  connect(outputButton, &QPushButton::clicked, this, &Self::chooseOutput);
  connect(defaultOutputButton, &QPushButton::clicked, this, &Self::useDefaultOutput);
  connect(startButton, &QPushButton::clicked, this, &Self::startBatch);
  connect(stopButton, &QPushButton::clicked, this, &Self::cancelBatch);
  connect(openButton, &QPushButton::clicked, this, &Self::openOutputFolder);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_O, *inputButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::SHIFT | Qt::Key_O, *outputButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_Return, *startButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_Enter, *startButton);
  Controls::addShortcut(*this, Qt::Key_F5, *reloadButton);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_Period, *stopButton);
  setFocusProxy(profilePopUp);
  Controls::setFocusOrder({profilePopUp, reloadButton, inputButton, outputButton, defaultOutputButton, workersPopUp,
                           setAsideButton, startButton, stopButton, openButton});
}

void BatchViewController::addDropTargets() {
  const auto accepts = [this](const std::filesystem::path& path) { return !isProcessing() && isFolder(path); };
  new DropTarget(*this, accepts, [this](const std::filesystem::path& folder) { setInput(folder); });
  new DropTarget(*outputRow_, accepts, [this](const std::filesystem::path& folder) { setOutput(folder); });
}

}  // namespace tessaly
