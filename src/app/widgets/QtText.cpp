#include "app/widgets/QtText.h"

#include "localization/Shown.h"
#include "platform/Text.h"

#include <QByteArray>
#include <QFile>
#include <QTextDocument>

namespace tessaly {

QString toQt(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string fromQt(const QString& text) {
  return text.toStdString();
}

QString localized(std::string_view english) {
  return toQt(Localization::shownText(english));
}

QString pathText(const std::filesystem::path& path) {
  return toQt(displayText(path.native()));
}

std::filesystem::path pathFromQt(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

// QUrl::toLocalFile would decode the bytes as UTF-8 and lose those that are none.
std::optional<std::filesystem::path> localPath(const QUrl& url) {
  if (!url.isLocalFile()) return std::nullopt;
  return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

QUrl fileUrl(const std::filesystem::path& path) {
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path.native()).toPercentEncoding("/"));
}

QString plainToolTip(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace tessaly
