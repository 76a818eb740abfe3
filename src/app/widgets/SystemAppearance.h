// What the desktop itself looks like.
//
// User-interface thread only.
#pragma once

#include <QObject>
#include <QPalette>
#include <functional>

namespace tessaly {

/// Whether the palette was given by the platform, and is not merely the style's own.
[[nodiscard]] bool isPlatformOwned(const QPalette& palette);

/// Whether the desktop prefers a dark look: what its settings portal says, else what its palette looks like.
[[nodiscard]] bool prefersDark(const QPalette& platform);

/// Calls `changed` whenever the desktop changes its preference, as long as this object lives.
class SystemAppearanceObserver : public QObject {
  Q_OBJECT

 public:
  explicit SystemAppearanceObserver(std::function<void()> changed, QObject* parent = nullptr);

 public slots:
  void settingChanged(const QString& group, const QString& key);

 private:
  std::function<void()> changed_;
};

}  // namespace tessaly
