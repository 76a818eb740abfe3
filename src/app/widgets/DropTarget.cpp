#include "app/widgets/DropTarget.h"

#include "app/widgets/QtText.h"
#include "platform/Text.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <optional>
#include <system_error>
#include <utility>

namespace tessaly {
namespace {

constexpr int frameWidth = 2;

/// Lies over the target without being in the way of the mouse.
class DropFrame : public QWidget {
 public:
  explicit DropFrame(QWidget& target) : QWidget(&target) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QColor wash = palette().color(QPalette::Highlight);
    painter.setPen(QPen(wash, frameWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    wash.setAlpha(24);
    painter.setBrush(wash);
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
  }
};

}  // namespace

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

bool isDNGFile(const std::filesystem::path& path) {
  std::error_code error;
  return lowerCasedExtension(path) == "dng" && std::filesystem::is_regular_file(path, error);
}

DropTarget::DropTarget(QWidget& target, Accepts accepts, Handler dropped)
    : QObject(&target),
      target_(target),
      frame_(new DropFrame(target)),
      accepts_(std::move(accepts)),
      dropped_(std::move(dropped)) {
  target_.setAcceptDrops(true);
  target_.installEventFilter(this);
}

std::optional<std::filesystem::path> DropTarget::acceptable(const QDropEvent& event) const {
  const QList<QUrl> urls = event.mimeData()->urls();
  if (urls.size() != 1) return std::nullopt;
  auto path = localPath(urls.constFirst());
  if (!path || !accepts_(*path)) return std::nullopt;
  return path;
}

bool DropTarget::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
      auto& drag = static_cast<QDropEvent&>(*event);
      const bool wanted = acceptable(drag).has_value();
      drag.setDropAction(Qt::CopyAction);
      drag.setAccepted(wanted);
      showFrame(wanted);
      return true;
    }
    case QEvent::DragLeave:
      showFrame(false);
      return true;
    case QEvent::Drop:
      return drop(static_cast<QDropEvent&>(*event));
    case QEvent::Resize:
      frame_->setGeometry(target_.rect());
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool DropTarget::drop(QDropEvent& event) {
  showFrame(false);
  const auto path = acceptable(event);
  event.setAccepted(path.has_value());
  if (path) dropped_(*path);
  return true;
}

void DropTarget::showFrame(bool visible) {
  frame_->setGeometry(target_.rect());
  frame_->setVisible(visible);
  if (visible) frame_->raise();
}

}  // namespace tessaly
