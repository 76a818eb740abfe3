#include "app/widgets/Icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QString>
#include <QSvgRenderer>
#include <memory>
#include <optional>

namespace tessaly {
namespace {

QString resource(const char* name) {
  return QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name));
}

/// Draws an SVG; with a role in the palette's colour of the moment, so that a change of appearance needs only a
/// repaint.
class DrawingEngine : public QIconEngine {
 public:
  DrawingEngine(const QString& file, std::optional<QPalette::ColorRole> role)
      : renderer_(std::make_shared<QSvgRenderer>(file)), role_(role) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const double ratio = painter->device()->devicePixelRatioF();
    QPixmap image = pixmap(rect.size() * ratio, mode, state);
    image.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect, image);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    QPixmap image(size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer_->render(&painter, square(size));
    if (role_) tint(painter, image.rect(), mode);
    return image;
  }

  QIconEngine* clone() const override { return new DrawingEngine(*this); }

 private:
  static QRectF square(const QSize& size) {
    const double side = std::min(size.width(), size.height());
    return {(size.width() - side) / 2, (size.height() - side) / 2, side, side};
  }

  void tint(QPainter& painter, const QRect& area, QIcon::Mode mode) const {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : *role_;
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(area, QGuiApplication::palette().color(group, role));
  }

  std::shared_ptr<QSvgRenderer> renderer_;
  std::optional<QPalette::ColorRole> role_;
};

}  // namespace

QIcon tintedIcon(const char* name) {
  return QIcon(new DrawingEngine(resource(name), QPalette::ButtonText));
}

QIcon previewIcon(const char* name) {
  return QIcon(new DrawingEngine(resource(name), QPalette::BrightText));
}

QIcon colouredIcon(const char* name) {
  return QIcon(new DrawingEngine(resource(name), std::nullopt));
}

}  // namespace tessaly
