// What the window remembers between launches, in the settings' own file but under keys of its own
// ("Tessaly.window."), so that resetting the preferences leaves it alone.
//
// User-interface thread only.
#pragma once

#include <QRect>
#include <QVariant>
#include <filesystem>
#include <optional>
#include <string>

namespace tessaly {

namespace WindowState {

/// What is stored under a key; `fallback` when there is nothing.
[[nodiscard]] QVariant value(const std::string& key, const QVariant& fallback = {});
void setValue(const std::string& key, const QVariant& value);

/// The folder in which a panel with this purpose was last used, while it exists.
[[nodiscard]] std::optional<std::filesystem::path> panelFolder(const std::string& purpose);
void setPanelFolder(const std::string& purpose, const std::filesystem::path& folder);

}  // namespace WindowState

/// Where a window goes: where it was when it lies fully on one of the screens, else centred on the first of them.
[[nodiscard]] QRect placedWindow(const QRect& stored, const QSize& size, const QList<QRect>& screens);

}  // namespace tessaly
