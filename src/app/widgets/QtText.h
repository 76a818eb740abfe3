// Between the engine's texts and paths and Qt's.
//
// Texts are UTF-8; paths keep their native bytes, also those that are no UTF-8 and that a QString cannot hold.
#pragma once

#include <QString>
#include <QUrl>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

[[nodiscard]] QString toQt(std::string_view utf8);
[[nodiscard]] std::string fromQt(const QString& text);

/// The text in the interface's language, as it is shown.
[[nodiscard]] QString localized(std::string_view english);

/// A path as it is shown.
[[nodiscard]] QString pathText(const std::filesystem::path& path);

/// The path behind what a file panel returned.
[[nodiscard]] std::filesystem::path pathFromQt(const QString& path);

/// The path behind a dropped URL, byte for byte; nothing for one that is not local.
[[nodiscard]] std::optional<std::filesystem::path> localPath(const QUrl& url);
[[nodiscard]] QUrl fileUrl(const std::filesystem::path& path);

/// A tool tip that shows its text as it stands: Qt takes a text that looks like HTML for HTML.
[[nodiscard]] QString plainToolTip(const QString& text);

}  // namespace tessaly
