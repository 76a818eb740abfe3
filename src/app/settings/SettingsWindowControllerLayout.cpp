// How the settings window is put together: three sections on one grid, so that all controls line up.
#include "app/settings/SettingsWindowController.h"
#include "app/widgets/Controls.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>

namespace tessaly {
namespace {

constexpr int windowWidth = 600;
constexpr double mostOfScreen = 0.9;

QCheckBox* checkBox(const char* title) {
  auto* box = new QCheckBox(localized(title));
  return box;
}

/// Adds rows below one another.
class Rows {
 public:
  explicit Rows(QGridLayout& grid) : grid_(grid), row_(grid.rowCount()) {}

  void section(const char* title) {
    if (row_ > 1) {
      grid_.addWidget(Controls::separator(), row_++, 0, 1, 2);
      grid_.setRowMinimumHeight(row_++, Metrics::grid / 2);
    }
    auto* heading = new LocalizedLabel(title);
    makeHeading(*heading);
    grid_.addWidget(heading, row_++, 0, 1, 2);
  }

  void control(const char* title, QWidget& control) {
    auto* caption = Controls::caption(title, control);
    caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid_.addWidget(caption, row_, 0);
    wide(control);
  }

  void wide(QWidget& widget) { grid_.addWidget(&widget, row_++, 1); }

  void note(const char* text) {
    auto* label = new LocalizedLabel(text);
    makeNote(*label);
    wide(*label);
  }

 private:
  QGridLayout& grid_;
  int row_;
};

QWidget* line(std::initializer_list<QWidget*> widgets) {
  auto* row = new QWidget;
  auto* layout = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  for (QWidget* widget : widgets)
    layout->addWidget(widget);
  row->setLayout(layout);
  return row;
}

QWidget* leftAligned(QWidget& widget) {
  QWidget* row = line({&widget});
  static_cast<QHBoxLayout*>(row->layout())->addStretch(1);
  return row;
}

}  // namespace

void SettingsWindowController::makeControls() {
  language = Controls::popUp("Language", {"Follow System"});
  for (const SpokenLanguage& each : spokenLanguages)
    language->addItem(QString::fromUtf8(each.ownName));
  appearance = Controls::popUp("Appearance", {"Follow System", "Light", "Dark"});
  workers = Controls::concurrentFilesPopUp("Default concurrent files");
  output = Controls::popUp("Default output", {"Inside source folder", "Selected folder"});
  chooseOutputButton = Controls::folderButton("Choose Folder…");
  outputPath = Controls::pathLabel();
  collision = Controls::popUp("Existing output files", {"Skip existing files", "Create numbered copies"});
  autoOpen = checkBox("Open output folder when finished");
  saveLog = checkBox("Save a CSV repair log");
  profiles = Controls::namesPopUp("Camera Profiles");
  profileFailure = Controls::statusLabel();
  setAsideButton = Controls::button("Set Aside", "Renames the unreadable file so that the other profiles load.");
  exportButton = Controls::button("Export Profile…");
  importButton = Controls::button("Import Profile…");
  resetButton = Controls::button("Reset Preferences…");
  doneButton = Controls::button("Done");
  lockLabel = Controls::statusLabel();
  Controls::setMainAction(*doneButton, true);
}

QWidget* SettingsWindowController::layOut() {
  auto* grid = Controls::onGrid<QGridLayout>(Metrics::grid);
  grid->setHorizontalSpacing(Metrics::groupSpacing);
  grid->setColumnStretch(1, 1);
  addLanguageSection(*grid);
  addProcessingSection(*grid);
  addProfileSection(*grid);
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(Metrics::windowMargin, Metrics::windowMargin, Metrics::windowMargin,
                             Metrics::windowMargin);
  column->setSpacing(Metrics::groupSpacing);
  column->addLayout(grid);
  column->addStretch(1);
  return content;
}

void SettingsWindowController::addLanguageSection(QGridLayout& grid) {
  Rows rows(grid);
  rows.section("Language & Appearance");
  rows.control("Language", *language);
  rows.control("Appearance", *appearance);
  rows.note("Changes apply immediately. Your current work stays in place.");
}

void SettingsWindowController::addProcessingSection(QGridLayout& grid) {
  Rows rows(grid);
  rows.section("Processing & Output");
  rows.control("Default concurrent files", *workers);
  rows.note("Automatic balances memory and speed. You can override it for each batch.");
  rows.control("Default output", *output);
  rows.wide(*leftAligned(*chooseOutputButton));
  rows.wide(*outputPath);
  rows.note("A Tessaly Results subfolder keeps originals separate. Custom folders need your permission.");
  rows.control("Existing output files", *collision);
  rows.note("Originals and existing results are never overwritten.");
  rows.wide(*autoOpen);
  rows.wide(*saveLog);
  rows.note("Preferences apply to the next batch. Active jobs keep their starting options.");
}

void SettingsWindowController::addProfileSection(QGridLayout& grid) {
  Rows rows(grid);
  rows.section("Camera Profiles");
  rows.wide(*profiles);
  rows.wide(*line({profileFailure, setAsideButton}));
  rows.wide(*line({exportButton, importButton}));
  rows.note("Back up profiles or move them to another Mac. Imported copies keep their camera identity.");
}

// Below what scrolls: always in view.
QWidget* SettingsWindowController::layOutButtons() {
  auto* buttons = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  buttons->setContentsMargins(Metrics::windowMargin, 0, Metrics::windowMargin, 0);
  buttons->addWidget(resetButton);
  buttons->addWidget(lockLabel, 1);
  buttons->addWidget(doneButton);
  auto* footer = new QWidget;
  auto* column = new QVBoxLayout(footer);
  column->setContentsMargins(0, 0, 0, Metrics::windowMargin);
  column->setSpacing(Metrics::groupSpacing);
  column->addWidget(Controls::separator());
  column->addLayout(buttons);
  return footer;
}

// The width is fixed, the height that of the content, as far as the screen goes; beyond that it scrolls.
void SettingsWindowController::fitToContent() {
  const QWidget& content = *area_->widget();
  const int width =
      std::max({Metrics::scaled(windowWidth), content.minimumSizeHint().width(), footer_->minimumSizeHint().width()});
  const int height = std::max(content.layout()->totalHeightForWidth(width), content.minimumSizeHint().height());
  const int footer = footer_->sizeHint().height();
  const int limit = static_cast<int>(screen()->availableGeometry().height() * mostOfScreen) - footer;
  // Where all fits, a bar must not come and take the width that makes it fit.
  area_->setVerticalScrollBarPolicy(height <= limit ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
  setFixedWidth(width);
  resize(width, std::min(height, limit) + footer);
}

}  // namespace tessaly
