#include "app/preview/PreviewPainter.h"
#include "app/widgets/Theme.h"

#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

namespace tessaly {
namespace {

using Kind = CalibrationCandidate::Kind;

constexpr double strokeWidth = 1.5;
constexpr double selectedWidth = 2.5;
constexpr double haloWidth = 1;  ///< on each side of a stroke
constexpr int smallestSquare = 9;
constexpr double lineDistance = 2;  ///< between a column and the verticals beside it
constexpr double barLength = 5;
constexpr double tickLength = 4;

// More squares than this cover each other, and the picture with them.
constexpr std::size_t mostSquares = 5000;

struct Stroke {
  QColor color;
  double width;
  bool dashed;
};

Stroke strokeFor(bool included, bool selected) {
  return {QColor::fromRgba(included ? MeaningColor::included : MeaningColor::excluded),
          selected ? selectedWidth : strokeWidth, !included};
}

QPen haloPen(const Stroke& stroke) {
  return {QColor::fromRgba(MeaningColor::halo), stroke.width + 2 * haloWidth, Qt::SolidLine, Qt::FlatCap,
          Qt::MiterJoin};
}

QPen colorPen(const Stroke& stroke, double dash) {
  QPen pen(stroke.color, stroke.width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
  if (stroke.dashed) pen.setDashPattern({dash / stroke.width, dash * 0.7 / stroke.width});
  return pen;
}

/// A path with its halo below it, so that it is seen on white as on black.
void drawStroke(QPainter& painter, const QPainterPath& path, const Stroke& stroke, double dash = 3) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(haloPen(stroke));
  painter.drawPath(path);
  painter.setPen(colorPen(stroke, dash));
  painter.drawPath(path);
}

/// The square around a pixel's sample: never smaller than can be seen.
double squareSide(double scale) {
  return std::max<double>(smallestSquare, std::ceil(scale) + 4);
}

QRectF squareAround(QPointF centre, double side) {
  return {std::round(centre.x() - side / 2) + 0.5, std::round(centre.y() - side / 2) + 0.5, side - 1, side - 1};
}

void addTicks(QPainterPath& path, const QRectF& frame) {
  const std::array<QPointF, 4> corners{frame.topLeft(), frame.topRight(), frame.bottomRight(), frame.bottomLeft()};
  for (const QPointF& corner : corners) {
    const QPointF direction(corner.x() < frame.center().x() ? -1 : 1, corner.y() < frame.center().y() ? -1 : 1);
    path.moveTo(corner + direction);
    path.lineTo(corner + direction * tickLength);
  }
}

/// A marker drawn once and stamped wherever it is needed: thousands of pixels look alike.
class Stamp {
 public:
  Stamp(double side, const Stroke& stroke) : half_(static_cast<int>(side / 2) + 3), image_(makeImage()) {
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRect(squareAround(QPointF(half_, half_) + QPointF(0.5, 0.5), side));
    drawStroke(painter, path, stroke, 2.25);
  }

  /// A point of 3 × 3 pixels; an excluded one has a dark middle.
  explicit Stamp(const Stroke& stroke) : half_(2), image_(makeImage()) {
    QPainter painter(&image_);
    painter.fillRect(0, 0, 5, 5, QColor::fromRgba(MeaningColor::halo));
    painter.fillRect(1, 1, 3, 3, stroke.color);
    if (stroke.dashed) painter.fillRect(2, 2, 1, 1, Qt::black);
  }

  void put(QPainter& painter, QPointF centre) const {
    painter.drawImage(QPointF(std::floor(centre.x()) - half_, std::floor(centre.y()) - half_), image_);
  }

 private:
  QImage makeImage() const {
    QImage image(2 * half_ + 1, 2 * half_ + 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
  }

  int half_;
  QImage image_;
};

/// A vertical line drawn once and repeated down a column: hundreds of columns would be slow as strokes.
class Stripe {
 public:
  explicit Stripe(const Stroke& stroke) : image_(2 * half + 1, period, QImage::Format_ARGB32_Premultiplied) {
    image_.fill(Qt::transparent);
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    const double middle = half + 0.5;
    painter.setPen(haloPen(stroke));
    painter.drawLine(QPointF(middle, 0), QPointF(middle, period));
    painter.setPen(QPen(stroke.color, stroke.width, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(middle, 0), QPointF(middle, stroke.dashed ? dash : period));
  }

  /// `x` is the middle of a pixel; dashes begin at `start`.
  void put(QPainter& painter, double x, double top, double bottom, double start) const {
    const double left = x - half - 0.5;
    painter.setBrushOrigin(QPointF(left, std::fmod(std::round(start), period)));
    painter.fillRect(QRectF(left, std::round(top), image_.width(), std::round(bottom) - std::round(top)),
                     QBrush(image_));
  }

 private:
  static constexpr int half = 3;
  static constexpr int period = 10;
  static constexpr int dash = 6;

  QImage image_;
};

class MarkerPainter {
 public:
  MarkerPainter(QPainter& painter, const MarkerScene& scene, const PreviewTransform& transform, const QRectF& view)
      : painter_(painter), scene_(scene), transform_(transform), view_(view) {}

  /// The smaller kinds and the selected ones lie on top.
  void draw() {
    painter_.setRenderHint(QPainter::Antialiasing);
    for (const int row : scene_.index.lines())
      if (!isSelected(row)) drawLine(row);
    for (const int row : scene_.index.spots())
      if (!isSelected(row)) drawSpot(row);
    drawPixels();
    for (const int row : scene_.selected)
      drawOne(row);
  }

 private:
  bool isSelected(int row) const { return scene_.selected.contains(row); }
  const CalibrationCandidate& candidate(int row) const { return scene_.store.at(row); }
  Stroke stroke(int row) const { return strokeFor(scene_.store.isIncluded(row), isSelected(row)); }
  QRectF place(int row) const { return transform_.toDevice(coveredArea(candidate(row), scene_.store.metadata())); }

  void drawOne(int row) {
    switch (candidate(row).kind) {
      case Kind::line:
        return drawLine(row);
      case Kind::spot:
        return drawSpot(row);
      case Kind::pixel:
        return drawSelectedPixel(row);
    }
  }

  void drawLine(int row) {
    const QRectF area = place(row);
    const double left = std::round(area.left() - lineDistance) + 0.5;
    const double right = std::round(area.right() + lineDistance) - 0.5;
    if (right < view_.left() || left > view_.right()) return;
    const double top = std::max(area.top(), view_.top() - 1);
    const double bottom = std::min(area.bottom(), view_.bottom() + 1);
    if (bottom <= top) return;
    const Stripe& stripe = stripeFor(row);
    painter_.setRenderHint(QPainter::Antialiasing, false);
    for (const double x : {left, right})
      stripe.put(painter_, x, top, bottom, area.top());
    painter_.setRenderHint(QPainter::Antialiasing);
    const QPainterPath ends = endsOfLine(row, QRectF(QPointF(left, area.top()), QPointF(right, area.bottom())));
    if (!ends.isEmpty()) drawStroke(painter_, ends, stroke(row), 6);
  }

  QPainterPath endsOfLine(int row, const QRectF& frame) const {
    QPainterPath path;
    if (candidate(row).yStart > scene_.store.metadata().activeY) {
      path.moveTo(frame.left() - barLength, frame.top());
      path.lineTo(frame.right() + barLength, frame.top());
    }
    if (isSelected(row)) addTicks(path, frame);
    return path;
  }

  const Stripe& stripeFor(int row) const {
    if (isSelected(row)) return scene_.store.isIncluded(row) ? selectedIncluded_ : selectedExcluded_;
    return scene_.store.isIncluded(row) ? included_ : excluded_;
  }

  void drawSpot(int row) {
    const QRectF area = place(row);
    if (!area.adjusted(-8, -8, 8, 8).intersects(view_)) return;
    QPainterPath path;
    path.addEllipse(area);
    if (isSelected(row)) addTicks(path, area.adjusted(-2, -2, 2, 2));
    drawStroke(painter_, path, stroke(row), 4);
  }

  void drawSelectedPixel(int row) {
    QPainterPath path;
    const QRectF square = squareAround(place(row).center(), squareSide(transform_.scale) + 2);
    path.addRect(square);
    addTicks(path, square);
    drawStroke(painter_, path, stroke(row));
  }

  void drawPixels() {
    const double side = squareSide(transform_.scale);
    const std::vector<int> rows = scene_.index.pixelsIn(transform_.toSample(view_.adjusted(-side, -side, side, side)));
    const bool asPoints = rows.size() > mostSquares;
    const auto stamp = [&](bool included) {
      const Stroke plain = strokeFor(included, false);
      return asPoints ? Stamp(plain) : Stamp(side, plain);
    };
    const Stamp included = stamp(true);
    const Stamp excluded = stamp(false);
    for (const int row : rows)
      (scene_.store.isIncluded(row) ? included : excluded).put(painter_, place(row).center());
  }

  QPainter& painter_;
  const MarkerScene& scene_;
  const PreviewTransform& transform_;
  QRectF view_;
  Stripe included_{strokeFor(true, false)};
  Stripe excluded_{strokeFor(false, false)};
  Stripe selectedIncluded_{strokeFor(true, true)};
  Stripe selectedExcluded_{strokeFor(false, true)};
};

}  // namespace

void drawMarkers(QPainter& painter, const MarkerScene& scene, const PreviewTransform& transform, const QRectF& view) {
  MarkerPainter(painter, scene, transform, view).draw();
}

void drawGuide(QPainter& painter, std::int64_t column, const PreviewTransform& transform, const QRectF& view) {
  const double middle = transform.toDevice(QPointF(static_cast<double>(column) + 0.5, 0)).x();
  const double x = std::floor(middle);
  painter.fillRect(QRectF(x - 1, view.top(), 3, view.height()), QColor::fromRgba(MeaningColor::halo & 0x60ffffff));
  painter.fillRect(QRectF(x, view.top(), 1, view.height()), QColor::fromRgba(MeaningColor::guide));
}

void drawInclusionDot(QPainter& painter, const QRectF& place, bool included) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgba(included ? MeaningColor::included : MeaningColor::excluded));
  painter.drawEllipse(place);
  const double side = place.width();
  const auto at = [&](double x, double y) { return place.topLeft() + QPointF(x, y) * side; };
  painter.setPen(QPen(included ? QColor(0, 40, 10) : QColor(60, 0, 0), side * 0.13, Qt::SolidLine, Qt::RoundCap));
  if (included) {
    painter.drawPolyline(QPolygonF({at(0.28, 0.53), at(0.44, 0.68), at(0.73, 0.36)}));
  } else {
    painter.drawLine(at(0.34, 0.34), at(0.66, 0.66));
    painter.drawLine(at(0.66, 0.34), at(0.34, 0.66));
  }
  painter.restore();
}

}  // namespace tessaly
