#include "app/EarlierSettings.h"

#include "app/widgets/StoredValue.h"
#include "preferences/SettingsFile.h"

#include <nlohmann/json.hpp>

#include <QFile>
#include <QSettings>
#include <system_error>

namespace tessaly {
namespace {

QVariant typed(const QVariant& value);

/// An INI file knows only texts: what reads as a boolean or a whole number was one.
QVariant typedText(const QString& text) {
  if (text == QLatin1String("true") || text == QLatin1String("false")) return text == QLatin1String("true");
  bool isNumber = false;
  const qlonglong number = text.toLongLong(&isNumber);
  return isNumber ? QVariant::fromValue(number) : QVariant(text);
}

QVariant typedList(const QVariantList& texts) {
  QVariantList list;
  for (const QVariant& text : texts)
    list << typed(text);
  return list;
}

QVariant typed(const QVariant& value) {
  if (value.typeId() == QMetaType::QString) return typedText(value.toString());
  const bool isList = value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QVariantList;
  return isList ? typedList(value.toList()) : value;
}

nlohmann::json valuesIn(const std::filesystem::path& path) {
  const QSettings settings(QFile::decodeName(path.c_str()), QSettings::IniFormat);
  nlohmann::json values = nlohmann::json::object();
  for (const QString& key : settings.allKeys()) {
    const nlohmann::json value = storedValue(typed(settings.value(key)));
    if (!value.is_null()) values[key.toStdString()] = value;
  }
  return values;
}

}  // namespace

void takeOverEarlierSettings(const std::filesystem::path& earlier, const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(earlier, error)) return;
  if (!SettingsFile(file).addMissing(valuesIn(earlier))) return;
  std::filesystem::path done = earlier;
  std::filesystem::rename(earlier, done += ".earlier", error);
}

}  // namespace tessaly
