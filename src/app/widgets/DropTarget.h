// Lets a file or folder be dropped on a widget; a frame shows where it would go. Whatever is not accepted is left to
// the widgets around it, and refused when none of them wants it.
#pragma once

#include <QObject>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <optional>

class QDropEvent;

namespace tessaly {

class DropTarget : public QObject {
  Q_OBJECT

 public:
  using Accepts = std::function<bool(const std::filesystem::path&)>;
  using Handler = std::function<void(const std::filesystem::path&)>;

  DropTarget(QWidget& target, Accepts accepts, Handler dropped);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] std::optional<std::filesystem::path> acceptable(const QDropEvent& event) const;
  void showFrame(bool visible);
  bool drop(QDropEvent& event);

  QWidget& target_;
  QWidget* frame_;
  Accepts accepts_;
  Handler dropped_;
};

[[nodiscard]] bool isFolder(const std::filesystem::path& path);

/// A regular file with the extension "dng".
[[nodiscard]] bool isDNGFile(const std::filesystem::path& path);

}  // namespace tessaly
