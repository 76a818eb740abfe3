#include "app/preview/PreviewPainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tessaly {
namespace {

QImage greyImage(const RawPreviewImage& preview) {
  QImage image(static_cast<int>(preview.width), static_cast<int>(preview.height), QImage::Format_Grayscale8);
  for (int row = 0; row < image.height(); ++row) {
    std::memcpy(image.scanLine(row), preview.pixels.data() + row * preview.width,
                static_cast<std::size_t>(preview.width));
  }
  return image;
}

/// The whole pixels that cover `area`, inside the image.
QRect coveringPixels(const QRectF& area, const QImage& image) {
  return area.toAlignedRect().adjusted(-1, -1, 1, 1) & image.rect();
}

}  // namespace

// A reduced preview takes one value of every block of n × n samples; what a division leaves over has no pixel.
void PreviewPicture::set(const RawPreviewImage& preview, const DNGMetadata& metadata) {
  clear();
  if (preview.pixels.empty()) return;
  image_ = greyImage(preview);
  samplesPerPixel_ = static_cast<double>(std::max<std::int64_t>(metadata.activeWidth / preview.width, 1));
}

void PreviewPicture::clear() {
  image_ = {};
  shrunk_ = {};
}

void PreviewPicture::draw(QPainter& painter, const PreviewTransform& transform, const QRectF& view) {
  if (isEmpty()) return;
  const double pixelScale = transform.scale * samplesPerPixel_;
  if (pixelScale < 1) {
    drawShrunk(painter, transform, pixelScale);
  } else {
    drawPart(painter, transform, view);
  }
}

// Bilinear sampling of a picture that is made much smaller skips pixels; averaging it once shows every faint column.
void PreviewPicture::drawShrunk(QPainter& painter, const PreviewTransform& transform, double pixelScale) {
  const QSize size = (QSizeF(image_.size()) * pixelScale).toSize().expandedTo({1, 1});
  if (shrunk_.size() != size) shrunk_ = image_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  painter.drawImage(transform.origin, shrunk_);
}

// Only the visible part is handed over: a painter's own clipping would still walk a very tall picture.
void PreviewPicture::drawPart(QPainter& painter, const PreviewTransform& transform, const QRectF& view) {
  const QRectF samples = transform.toSample(view);
  const QRectF pixels(samples.topLeft() / samplesPerPixel_, samples.size() / samplesPerPixel_);
  const QRect part = coveringPixels(pixels, image_);
  if (part.isEmpty()) return;
  const QRectF place =
      transform.toDevice(QRectF(QPointF(part.topLeft()) * samplesPerPixel_, QSizeF(part.size()) * samplesPerPixel_));
  painter.setRenderHint(QPainter::SmoothPixmapTransform, transform.scale < 1);
  painter.drawImage(place, image_.copy(part), QRectF(QPointF(), QSizeF(part.size())));
}

}  // namespace tessaly
