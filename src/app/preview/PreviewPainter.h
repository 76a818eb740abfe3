// Draws the preview: the grey picture, the markers and the guide, in device pixels.
#pragma once

#include "app/preview/MarkerIndex.h"
#include "app/preview/PreviewNavigation.h"

#include <QImage>
#include <QPainter>
#include <cstdint>
#include <optional>
#include <set>

namespace tessaly {

/// The picture and how many samples one of its pixels stands for.
class PreviewPicture {
 public:
  void set(const RawPreviewImage& preview, const DNGMetadata& metadata);
  void clear();
  [[nodiscard]] bool isEmpty() const { return image_.isNull(); }

  /// Draws what is in `view`: nearest neighbour above 100 %, smooth below.
  void draw(QPainter& painter, const PreviewTransform& transform, const QRectF& view);

 private:
  void drawShrunk(QPainter& painter, const PreviewTransform& transform, double pixelScale);
  void drawPart(QPainter& painter, const PreviewTransform& transform, const QRectF& view);

  QImage image_;  ///< Format_Grayscale8
  double samplesPerPixel_ = 1;
  QImage shrunk_;  ///< the whole picture at a scale below 1, kept while the zoom stays
};

/// Which candidates are drawn and how.
struct MarkerScene {
  const CandidateStore& store;
  const MarkerIndex& index;
  const std::set<int>& selected;
};

/// Green and solid: included; red and dashed: excluded; thicker, with ticks: selected.
void drawMarkers(QPainter& painter, const MarkerScene& scene, const PreviewTransform& transform, const QRectF& view);

/// A cyan line through the middle of a column, over the whole height.
void drawGuide(QPainter& painter, std::int64_t column, const PreviewTransform& transform, const QRectF& view);

/// The dot that repeats a marker's colour and meaning in the table: a tick or a cross inside.
void drawInclusionDot(QPainter& painter, const QRectF& place, bool included);

}  // namespace tessaly
