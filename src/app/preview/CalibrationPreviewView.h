// The raw preview of the profile creation tab: a grey picture with a marker for each candidate.
//
// Wheel, pinch and keys zoom; a drag pans; a click fills the manual fields. Coordinates that leave this view are active
// coordinates. It shows the candidates of a store and never changes them. User-interface thread only.
#pragma once

#include "app/preview/MarkerIndex.h"
#include "app/preview/PreviewNavigation.h"
#include "app/preview/PreviewPainter.h"
#include "app/widgets/FollowsLanguage.h"

#include <QAbstractScrollArea>
#include <optional>
#include <set>

class QNativeGestureEvent;

namespace tessaly {

class CalibrationPreviewView : public QAbstractScrollArea, public FollowsLanguage {
  Q_OBJECT

 public:
  explicit CalibrationPreviewView(const CandidateStore& store, QWidget* parent = nullptr);

  /// Shows a picture of the sensor that `metadata` describes. Another picture of the same sensor keeps the zoom.
  void setPreview(const RawPreviewImage& preview, const DNGMetadata& metadata);
  [[nodiscard]] bool hasPreview() const { return !picture_.isEmpty(); }

  /// Shows nothing, as before the first picture.
  void clear();

  /// Darkens the picture while a new one is on its way.
  void setDimmed(bool dimmed);

  [[nodiscard]] std::optional<std::int64_t> manualGuideX() const { return guide_; }
  void setManualGuideX(std::optional<std::int64_t> column);

  [[nodiscard]] const PreviewNavigation& navigation() const { return navigation_; }
  void setZoomPosition(double position);
  void fitToWindow();

  /// The selected candidates; the current one is brought into view and told to screen readers.
  void setSelection(std::set<int> rows, std::optional<int> current);
  void centreOn(int row, double zoom);
  [[nodiscard]] QString currentDescription() const { return currentDescription_; }

  void refreshLanguage() override;

 signals:
  void candidateClicked(int row);
  void candidateDoubleClicked(int row);
  void coordinateClicked(qint64 x, qint64 y);
  void guideMoved(qint64 column);
  void guideRemoved();
  void stepRequested(int rows);
  void toggleRequested();
  void removeRequested();
  void zoomChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] double ratio() const { return viewport()->devicePixelRatioF(); }
  [[nodiscard]] QPointF device(QPointF widget) const { return widget * ratio(); }
  [[nodiscard]] QRectF deviceView() const;
  [[nodiscard]] QRectF imageArea() const;
  [[nodiscard]] std::optional<int> markerAt(QPointF widget) const;
  [[nodiscard]] QPointF sampleAt(QPointF widget) const;

  void click(QPointF widget);
  void zoomBy(double factor, QPointF anchor);
  [[nodiscard]] QPointF keyAnchor() const;
  void zoomByGesture(const QNativeGestureEvent& event);
  void panByView(int horizontal, int vertical);
  void moveGuide(int columns);
  void removeGuide();
  bool handleNavigationKey(const QKeyEvent& event);
  bool handleCandidateKey(const QKeyEvent& event);
  void showToolTip(QPoint widget, QPoint global);
  void paintEmpty(QPainter& painter) const;
  void paintPicture(QPainter& painter);
  void paintFocus(QPainter& painter) const;
  void navigationChanged();
  void updateScrollBars();
  void updateCursor();
  void describeCurrent();

  const CandidateStore& store_;
  MarkerIndex index_;
  PreviewPicture picture_;
  PreviewNavigation navigation_;
  std::set<int> selected_;
  std::optional<int> current_;
  QString currentDescription_;
  std::optional<std::int64_t> guide_;
  std::optional<QPointF> pressed_;  ///< where the left button went down
  QPointF panned_;                  ///< where a drag has got to
  bool panning_ = false;
  bool dimmed_ = false;
  bool updatingScrollBars_ = false;
};

}  // namespace tessaly
