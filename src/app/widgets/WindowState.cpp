#include "app/widgets/WindowState.h"

#include "app/widgets/StoredValue.h"
#include "preferences/SettingsFile.h"
#include "preferences/UserFolders.h"

#include <nlohmann/json.hpp>

#include <QByteArray>
#include <system_error>

namespace tessaly {
namespace {

SettingsFile& settings() {
  static SettingsFile file(preferencesFile());
  return file;
}

std::string fullKey(const std::string& key) {
  return "Tessaly.window." + key;
}

QRect centred(QSize size, const QRect& screen) {
  size = size.boundedTo(screen.size());
  QRect window(QPoint(), size);
  window.moveCenter(screen.center());
  return window;
}

}  // namespace

namespace WindowState {

QVariant value(const std::string& key, const QVariant& fallback) {
  const QVariant stored = shownValue(settings().value(fullKey(key)));
  return stored.isValid() ? stored : fallback;
}

void setValue(const std::string& key, const QVariant& value) {
  settings().setValue(fullKey(key), storedValue(value));
}

// Kept as bytes: a path need not be text.
std::optional<std::filesystem::path> panelFolder(const std::string& purpose) {
  const std::filesystem::path folder = value("folder." + purpose).toByteArray().toStdString();
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return std::nullopt;
  return folder;
}

void setPanelFolder(const std::string& purpose, const std::filesystem::path& folder) {
  setValue("folder." + purpose, QByteArray::fromStdString(folder.native()));
}

}  // namespace WindowState

QRect placedWindow(const QRect& stored, const QSize& size, const QList<QRect>& screens) {
  for (const QRect& screen : screens) {
    if (stored.isValid() && screen.contains(stored)) return stored;
  }
  if (screens.isEmpty()) return {QPoint(), size};
  return centred(stored.isValid() ? stored.size() : size, screens.constFirst());
}

}  // namespace tessaly
