#include "app/preview/PreviewPanel.h"

#include "app/widgets/Icons.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/WrapLayout.h"

#include <QBoxLayout>
#include <QSignalBlocker>
#include <cmath>

namespace tessaly {
namespace {

constexpr int sliderSteps = 1000;

}  // namespace

PreviewPanel::PreviewPanel(const CandidateStore& store, QWidget* parent)
    : QWidget(parent),
      inspectButton(Controls::button("Inspect a DNG…")),
      brightFieldButton(Controls::button("Show Bright-Field Preview")),
      previewView(new CalibrationPreviewView(store)),
      zoomSlider(new QSlider(Qt::Horizontal)),
      fitButton(Controls::button("Fit to Window")),
      percent_(new QLabel) {
  brightFieldButton->hide();
  previewView->setMinimumHeight(Metrics::scaled(160));
  zoomSlider->setRange(0, sliderSteps);
  zoomSlider->setPageStep(sliderSteps / 10);
  zoomSlider->setSingleStep(sliderSteps / 50);
  fitButton->setIcon(tintedIcon("fit"));
  percent_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  percent_->setMinimumWidth(percent_->fontMetrics().horizontalAdvance(QStringLiteral("1600 %")));
  layOut();
  connect(zoomSlider, &QSlider::valueChanged, this,
          [this](int value) { previewView->setZoomPosition(static_cast<double>(value) / sliderSteps); });
  connect(fitButton, &QPushButton::clicked, previewView, &CalibrationPreviewView::fitToWindow);
  connect(previewView, &CalibrationPreviewView::zoomChanged, this, &PreviewPanel::showZoom);
  showZoom();
}

void PreviewPanel::layOut() {
  auto* heading = new LocalizedLabel("Raw Bright-Field Preview");
  makeHeading(*heading);
  auto* pictures = new WrapLayout;
  pictures->addWidget(inspectButton);
  pictures->addWidget(brightFieldButton);
  auto* zoom = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  zoom->addWidget(Controls::caption("Zoom", *zoomSlider));
  zoom->addWidget(zoomSlider, 1);
  zoom->addWidget(percent_);
  zoom->addWidget(fitButton);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Metrics::grid);
  column->addWidget(heading);
  column->addLayout(pictures);
  column->addWidget(previewView, 1);
  column->addLayout(zoom);
}

void PreviewPanel::addBelow(QWidget& widget) {
  layout()->addWidget(&widget);
}

void PreviewPanel::showZoom() {
  const PreviewNavigation& navigation = previewView->navigation();
  const bool shows = previewView->hasPreview();
  zoomSlider->setEnabled(shows);
  fitButton->setEnabled(shows);
  const QSignalBlocker blocker(zoomSlider);
  zoomSlider->setValue(shows ? static_cast<int>(std::lround(navigation.positionOf(navigation.zoom()) * sliderSteps))
                             : 0);
  percent_->setText(shows ? QStringLiteral("%1 %").arg(std::lround(navigation.zoom() * 100)) : QString());
}

}  // namespace tessaly
