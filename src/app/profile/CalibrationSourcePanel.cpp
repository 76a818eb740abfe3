#include "app/profile/CalibrationSourcePanel.h"

#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WindowState.h"

#include <QBoxLayout>
#include <chrono>

namespace tessaly {
namespace {

constexpr const char* opinionKey = "secondOpinion";

}  // namespace

CalibrationSourcePanel::CalibrationSourcePanel(QWidget* parent)
    : QWidget(parent),
      folderButton(Controls::folderButton("Calibration Folder…")),
      folderLabel(Controls::pathLabel()),
      progress(Controls::progressBar()),
      analyzeButton(Controls::button("Find Sensor Defects")),
      statusLabel(Controls::statusLabel()),
      secondOpinionBox(new QCheckBox(localized("Also look for: soft shadows, weak columns, unsteady pixels"))),
      opinionLabel(new LocalizedLabel),
      reportButton(Controls::button("Sensor Report…",
                                    "The sensor's noise and defects as a page to keep. It needs an "
                                    "analysis that also looked for soft shadows.")),
      guide(new CalibrationGuide) {
  using namespace std::chrono_literals;
  folderLabel->setStringValue("No calibration folder selected");
  statusLabel->setStringValue("Choose a calibration folder, then click Find Sensor Defects.");
  Controls::setMainAction(*analyzeButton, true);
  busyDelay_.setSingleShot(true);
  busyDelay_.setInterval(300ms);
  connect(&busyDelay_, &QTimer::timeout, this, [this] { setCursor(Qt::BusyCursor); });
  secondOpinionBox->setChecked(WindowState::value(opinionKey, false).toBool());
  connect(secondOpinionBox, &QCheckBox::toggled, this, [](bool on) { WindowState::setValue(opinionKey, on); });
  opinionLabel->setWordWrap(true);
  opinionLabel->hide();
  reportButton->setEnabled(false);
  layOut();
}

void CalibrationSourcePanel::layOut() {
  auto* source = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  auto* title = Controls::caption("Calibration DNG", *folderButton);
  makeHeading(*title);
  source->addWidget(title);
  source->addWidget(folderButton);
  source->addWidget(folderLabel, 1);
  auto* analysis = Controls::onGrid<QHBoxLayout>(Metrics::groupSpacing);
  analysis->addWidget(progress, 1);
  analysis->addWidget(&guide->disclosure());
  analysis->addWidget(analyzeButton);
  auto* opinion = Controls::onGrid<QHBoxLayout>(Metrics::groupSpacing);
  opinion->addWidget(secondOpinionBox);
  opinion->addStretch(1);
  opinion->addWidget(reportButton);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Metrics::grid);
  column->addLayout(source);
  column->addLayout(analysis);
  column->addLayout(opinion);
  column->addWidget(statusLabel);
  column->addWidget(opinionLabel);
}

void CalibrationSourcePanel::setBusy(bool busy) {
  folderButton->setEnabled(!busy);
  analyzeButton->setEnabled(!busy);
  secondOpinionBox->setEnabled(!busy);
  if (busy) return busyDelay_.start();
  busyDelay_.stop();
  unsetCursor();
}

}  // namespace tessaly
