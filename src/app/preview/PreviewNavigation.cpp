#include "app/preview/PreviewNavigation.h"

#include <algorithm>
#include <cmath>

namespace tessaly {
namespace {

/// Where a content of this length begins in a view: in the middle when it is shorter, else without a gap at an end.
double placed(double origin, double content, double view) {
  return content <= view ? (view - content) / 2 : std::clamp(origin, view - content, 0.0);
}

}  // namespace

void PreviewNavigation::setImage(std::int64_t width, std::int64_t height) {
  image_ = QSizeF(static_cast<double>(std::max<std::int64_t>(width, 1)),
                  static_cast<double>(std::max<std::int64_t>(height, 1)));
  fit();
}

void PreviewNavigation::setView(QSizeF size, QSizeF largest) {
  view_ = size.expandedTo({1, 1});
  largestView_ = largest.expandedTo({1, 1});
  if (fit_ || scale_ < fitZoom()) return fit();
  keepInside();
}

void PreviewNavigation::fit() {
  scale_ = fitZoom();
  centre_ = {image_.width() / 2, image_.height() / 2};
  fit_ = true;
}

double PreviewNavigation::fitZoom() const {
  return std::min(largestView_.width() / image_.width(), largestView_.height() / image_.height());
}

double PreviewNavigation::largestZoom() const {
  return std::max(maximumZoom, fitZoom());
}

void PreviewNavigation::zoomTo(double zoom, QPointF anchor) {
  if (zoom <= fitZoom()) return fit();
  const QPointF sample = (anchor - exactOrigin()) / scale_;
  scale_ = std::min(zoom, largestZoom());
  centre_ = sample + (centreOfView() - anchor) / scale_;
  fit_ = false;
  keepInside();
}

void PreviewNavigation::panBy(QPointF device) {
  setOrigin(exactOrigin() + device);
}

void PreviewNavigation::setOrigin(QPointF origin) {
  centreOn((centreOfView() - origin) / scale_);
}

void PreviewNavigation::centreOn(QPointF sample) {
  if (fit_) return;
  centre_ = sample;
  keepInside();
}

void PreviewNavigation::reveal(const QRectF& area) {
  const QRectF view(QPointF(), view_);
  if (!transform().toDevice(area).intersects(view)) centreOn(middleOf(area));
}

void PreviewNavigation::centreOn(const QRectF& area, double zoom) {
  const QPointF middle = middleOf(area);
  zoomTo(zoom);
  centreOn(middle);
}

QPointF PreviewNavigation::middleOf(const QRectF& area) const {
  const bool reachesAcross = area.top() <= centre_.y() && centre_.y() <= area.bottom();
  return {area.center().x(), reachesAcross ? centre_.y() : area.center().y()};
}

// Whole pixels, so that every sample of one zoom has the same sharp edges.
PreviewTransform PreviewNavigation::transform() const {
  const QPointF exact = exactOrigin();
  return {scale_, {std::round(exact.x()), std::round(exact.y())}};
}

double PreviewNavigation::zoomAt(double position) const {
  return fitZoom() * std::pow(largestZoom() / fitZoom(), std::clamp(position, 0.0, 1.0));
}

double PreviewNavigation::positionOf(double zoom) const {
  const double range = std::log(largestZoom() / fitZoom());
  return range <= 0 ? 0 : std::clamp(std::log(zoom / fitZoom()) / range, 0.0, 1.0);
}

QPointF PreviewNavigation::exactOrigin() const {
  const QPointF wanted = centreOfView() - centre_ * scale_;
  const QSizeF content = contentSize();
  return {placed(wanted.x(), content.width(), view_.width()), placed(wanted.y(), content.height(), view_.height())};
}

void PreviewNavigation::keepInside() {
  centre_ = (centreOfView() - exactOrigin()) / scale_;
}

}  // namespace tessaly
