// Where the preview looks: how large a sensor sample is on the screen and which sample stands in the middle.
//
// The zoom is in device pixels per sensor sample, so that 1 shows one sample on one pixel whatever the preview's own
// resolution and the screen's scale are. Positions on the screen are device pixels from the view's top left corner;
// sample positions are active coordinates, where sample 5 covers 5.0 to 6.0. A plain value.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <cstdint>

namespace tessaly {

/// The mapping of one moment.
struct PreviewTransform {
  double scale = 1;
  QPointF origin;  ///< where sample (0, 0) begins; whole pixels

  [[nodiscard]] QPointF toDevice(QPointF sample) const { return sample * scale + origin; }
  [[nodiscard]] QPointF toSample(QPointF device) const { return (device - origin) / scale; }
  [[nodiscard]] QRectF toDevice(const QRectF& area) const { return {toDevice(area.topLeft()), area.size() * scale}; }
  [[nodiscard]] QRectF toSample(const QRectF& area) const { return {toSample(area.topLeft()), area.size() / scale}; }
};

class PreviewNavigation {
 public:
  static constexpr double maximumZoom = 16;

  /// A new image, shown as a whole.
  void setImage(std::int64_t width, std::int64_t height);

  /// The size of the view now and the largest it can be (without scroll bars). The centre stays where it is; a view
  /// that shows the whole image goes on doing so.
  void setView(QSizeF size, QSizeF largest);

  void fit();
  [[nodiscard]] bool isFit() const { return fit_; }
  [[nodiscard]] double zoom() const { return scale_; }

  /// The smallest zoom: the whole image is in view.
  [[nodiscard]] double fitZoom() const;
  [[nodiscard]] double largestZoom() const;

  /// Keeps what is under `anchor` where it is; zooming out to the whole image fits.
  void zoomTo(double zoom, QPointF anchor);
  void zoomTo(double zoom) { zoomTo(zoom, centreOfView()); }

  void panBy(QPointF device);
  void setOrigin(QPointF origin);
  void centreOn(QPointF sample);

  /// Brings the area into view without a change of zoom, when nothing of it is there.
  void reveal(const QRectF& area);

  /// Brings the area into the middle. An area that reaches across the middle already stays where it is in that
  /// direction: a column is found by moving sideways only.
  void centreOn(const QRectF& area, double zoom);

  [[nodiscard]] PreviewTransform transform() const;
  [[nodiscard]] QSizeF contentSize() const { return image_ * scale_; }

  /// The zoom for a slider's position from 0 (fit) to 1 (largest), and back; steps look equal.
  [[nodiscard]] double zoomAt(double position) const;
  [[nodiscard]] double positionOf(double zoom) const;

 private:
  [[nodiscard]] QPointF centreOfView() const { return {view_.width() / 2, view_.height() / 2}; }
  [[nodiscard]] QPointF exactOrigin() const;
  [[nodiscard]] QPointF middleOf(const QRectF& area) const;
  void keepInside();

  QSizeF image_{1, 1};
  QSizeF view_{1, 1};
  QSizeF largestView_{1, 1};
  double scale_ = 1;
  QPointF centre_;
  bool fit_ = true;
};

}  // namespace tessaly
