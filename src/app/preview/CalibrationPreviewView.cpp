#include "app/preview/CalibrationPreviewView.h"

#include "app/preview/PreviewAccessible.h"
#include "app/widgets/Icons.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/Theme.h"
#include "presentation/CandidateTexts.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaly {
namespace {

constexpr double hitRadius = 6;  ///< logical pixels
constexpr const char* emptyText = "Choose a calibration folder, then click Find Sensor Defects.";

}  // namespace

CalibrationPreviewView::CalibrationPreviewView(const CandidateStore& store, QWidget* parent)
    : QAbstractScrollArea(parent), store_(store) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(localized("Raw Bright-Field Preview"));
  viewport()->setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  installPreviewAccessibility();
  const auto changed = [this] {
    index_.rebuild(store_);
    viewport()->update();
  };
  connect(&store_, &CandidateStore::aboutToReset, this, [this] { setSelection({}, std::nullopt); });
  connect(&store_, &CandidateStore::wasReset, this, changed);
  connect(&store_, &CandidateStore::appended, this, changed);
  connect(&store_, &CandidateStore::removed, this, [this] { setSelection({}, std::nullopt); });
  connect(&store_, &CandidateStore::removed, this, changed);
  connect(&store_, &CandidateStore::inclusionChanged, viewport(), qOverload<>(&QWidget::update));
}

void CalibrationPreviewView::setPreview(const RawPreviewImage& preview, const DNGMetadata& metadata) {
  const QSizeF before = navigation_.contentSize() / navigation_.zoom();
  const QSizeF after(static_cast<double>(metadata.activeWidth), static_cast<double>(metadata.activeHeight));
  const bool sameSensor = hasPreview() && before == after;
  picture_.set(preview, metadata);
  if (!sameSensor) navigation_.setImage(metadata.activeWidth, metadata.activeHeight);
  navigation_.setView(deviceView().size(), QSizeF(maximumViewportSize()) * ratio());
  navigationChanged();
}

void CalibrationPreviewView::clear() {
  picture_.clear();
  pressed_.reset();
  panning_ = false;
  setManualGuideX(std::nullopt);
  navigationChanged();
}

void CalibrationPreviewView::setDimmed(bool dimmed) {
  dimmed_ = dimmed;
  viewport()->update();
}

void CalibrationPreviewView::setManualGuideX(std::optional<std::int64_t> column) {
  guide_ = column;
  viewport()->update();
}

void CalibrationPreviewView::setZoomPosition(double position) {
  navigation_.zoomTo(navigation_.zoomAt(position));
  navigationChanged();
}

void CalibrationPreviewView::fitToWindow() {
  navigation_.fit();
  navigationChanged();
}

void CalibrationPreviewView::setSelection(std::set<int> rows, std::optional<int> current) {
  selected_ = std::move(rows);
  const bool moved = current != current_;
  current_ = current;
  if (current_ && moved) navigation_.reveal(coveredArea(store_.at(*current_), store_.metadata()));
  describeCurrent();
  navigationChanged();
}

void CalibrationPreviewView::centreOn(int row, double zoom) {
  navigation_.centreOn(coveredArea(store_.at(row), store_.metadata()), zoom);
  navigationChanged();
}

void CalibrationPreviewView::refreshLanguage() {
  setAccessibleName(localized("Raw Bright-Field Preview"));
  describeCurrent();
  viewport()->update();
}

void CalibrationPreviewView::describeCurrent() {
  const QString before = std::exchange(currentDescription_, QString());
  if (current_) {
    const CalibrationCandidate& candidate = store_.at(*current_);
    currentDescription_ = toQt(CandidateTexts::kind(candidate, store_.metadata()) + ", " +
                               CandidateTexts::position(candidate, store_.metadata()));
  }
  if (before != currentDescription_) announcePreviewValue(*this, currentDescription_);
}

QRectF CalibrationPreviewView::deviceView() const {
  return {QPointF(), QSizeF(viewport()->size()) * ratio()};
}

QRectF CalibrationPreviewView::imageArea() const {
  return {navigation_.transform().origin, navigation_.contentSize()};
}

void CalibrationPreviewView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), QColor::fromRgb(MeaningColor::previewBackground));
  if (!hasPreview()) paintEmpty(painter);
  painter.scale(1 / ratio(), 1 / ratio());
  hasPreview() ? paintPicture(painter) : paintFocus(painter);
}

void CalibrationPreviewView::paintPicture(QPainter& painter) {
  const PreviewTransform transform = navigation_.transform();
  picture_.draw(painter, transform, deviceView());
  drawMarkers(painter, {store_, index_, selected_}, transform, deviceView());
  if (guide_) drawGuide(painter, *guide_, transform, imageArea() & deviceView());
  constexpr QColor shade(0, 0, 0, 120);
  if (dimmed_) painter.fillRect(deviceView(), shade);
  paintFocus(painter);
}

// White beside dark: seen on the grey and on any picture.
void CalibrationPreviewView::paintFocus(QPainter& painter) const {
  if (!hasFocus()) return;
  const double width = 2 * ratio();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setBrush(Qt::NoBrush);
  const auto drawFrame = [&](QRgb color, double inset) {
    painter.setPen(QPen(QColor::fromRgba(color), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(deviceView().adjusted(inset, inset, -inset, -inset));
  };
  drawFrame(MeaningColor::previewText, width / 2);
  drawFrame(MeaningColor::halo, width * 3 / 2);
}

void CalibrationPreviewView::paintEmpty(QPainter& painter) const {
  const int side = Metrics::scaled(56);
  const QRect area = viewport()->rect().adjusted(Metrics::grid, 0, -Metrics::grid, 0);
  const QString text = localized(emptyText);
  const int width = std::min(area.width(), Metrics::scaled(360));
  const int height = painter.fontMetrics().boundingRect(0, 0, width, area.height(), Qt::TextWordWrap, text).height();
  const int top = area.center().y() - (side + Metrics::groupSpacing + height) / 2;
  previewIcon("folder").paint(&painter, QRect(area.center().x() - side / 2, top, side, side));
  painter.setPen(QColor::fromRgb(MeaningColor::previewText));
  const QRect place(area.center().x() - width / 2, top + side + Metrics::groupSpacing, width, height);
  painter.drawText(place, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
}

void CalibrationPreviewView::resizeEvent(QResizeEvent*) {
  navigation_.setView(deviceView().size(), QSizeF(maximumViewportSize()) * ratio());
  navigationChanged();
}

void CalibrationPreviewView::navigationChanged() {
  updateScrollBars();
  updateCursor();
  viewport()->update();
  emit zoomChanged();
}

void CalibrationPreviewView::updateScrollBars() {
  if (updatingScrollBars_) return;
  updatingScrollBars_ = true;
  const QRectF view = deviceView();
  const QRectF image = imageArea();
  const auto set = [](QScrollBar* bar, double origin, double content, double page) {
    bar->setRange(0, static_cast<int>(std::ceil(std::max(content - page, 0.0))));
    bar->setPageStep(static_cast<int>(page));
    bar->setSingleStep(static_cast<int>(page / 16) + 1);
    bar->setValue(static_cast<int>(-origin));
  };
  const bool scrolls = hasPreview() && !navigation_.isFit();
  set(horizontalScrollBar(), image.left(), scrolls ? image.width() : 0, view.width());
  set(verticalScrollBar(), image.top(), scrolls ? image.height() : 0, view.height());
  updatingScrollBars_ = false;
}

void CalibrationPreviewView::scrollContentsBy(int, int) {
  if (updatingScrollBars_) return;
  const QPointF origin = navigation_.transform().origin;
  const QScrollBar& across = *horizontalScrollBar();
  const QScrollBar& down = *verticalScrollBar();
  navigation_.setOrigin({across.maximum() > 0 ? -across.value() : origin.x(),  //
                         down.maximum() > 0 ? -down.value() : origin.y()});
  navigationChanged();
}

void CalibrationPreviewView::updateCursor() {
  if (!hasPreview()) return viewport()->unsetCursor();
  if (panning_) return viewport()->setCursor(Qt::ClosedHandCursor);
  viewport()->setCursor(navigation_.isFit() ? Qt::CrossCursor : Qt::OpenHandCursor);
}

void CalibrationPreviewView::showToolTip(QPoint widget, QPoint global) {
  const QPointF sample = sampleAt(widget);
  const DNGMetadata& metadata = store_.metadata();
  const QRectF active(0, 0, static_cast<double>(metadata.activeWidth), static_cast<double>(metadata.activeHeight));
  if (!hasPreview() || !active.contains(sample)) return QToolTip::hideText();
  QString text = QStringLiteral("%1, %2").arg(std::floor(sample.x()), 0, 'f', 0).arg(std::floor(sample.y()), 0, 'f', 0);
  if (const auto row = markerAt(widget)) text += QLatin1Char('\n') + toQt(CandidateTexts::reason(store_.at(*row)));
  QToolTip::showText(global, plainToolTip(text), viewport());
}

std::optional<int> CalibrationPreviewView::markerAt(QPointF widget) const {
  return index_.hit(store_, sampleAt(widget), hitRadius * ratio() / navigation_.zoom());
}

QPointF CalibrationPreviewView::sampleAt(QPointF widget) const {
  return navigation_.transform().toSample(device(widget));
}

}  // namespace tessaly
