#include "app/widgets/StoredValue.h"

#include "platform/JSONNumbers.h"
#include "preferences/SettingsFile.h"

#include <nlohmann/json.hpp>

#include <QByteArray>
#include <QRect>
#include <QVariantList>
#include <algorithm>

namespace tessaly {
namespace {

using nlohmann::json;

/// More pixels than any desktop is wide.
constexpr int farthest = 1'000'000;

json storedList(const QVariantList& list) {
  json stored = json::array();
  for (const QVariant& value : list)
    stored.push_back(storedValue(value));
  return stored;
}

json storedRectangle(const QRect& rectangle) {
  return {{"x", rectangle.x()}, {"y", rectangle.y()}, {"width", rectangle.width()}, {"height", rectangle.height()}};
}

QVariant shownList(const json& stored) {
  QVariantList list;
  for (const json& value : stored)
    list << shownValue(value);
  return list;
}

/// A rectangle or bytes; they alone are stored as objects.
QVariant shownObject(const json& stored) {
  if (const auto bytes = bytesOfValue(stored)) return QByteArray::fromStdString(*bytes);
  const auto side = [&stored](const char* name) {
    const auto pixels = wholeNumber<int>(stored.contains(name) ? stored[name] : json());
    return std::clamp(pixels.value_or(0), -farthest, farthest);
  };
  return QRect(side("x"), side("y"), side("width"), side("height"));
}

}  // namespace

json storedValue(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::UnknownType:
      return nullptr;
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
      return value.toLongLong();
    case QMetaType::QByteArray:
      return valueOfBytes(value.toByteArray().toStdString());
    case QMetaType::QRect:
      return storedRectangle(value.toRect());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
      return storedList(value.toList());
    default:
      return value.toString().toStdString();
  }
}

QVariant shownValue(const json& stored) {
  if (stored.is_boolean()) return stored.get<bool>();
  if (const auto number = wholeNumber(stored)) return QVariant::fromValue(static_cast<qlonglong>(*number));
  if (stored.is_number()) return stored.get<double>();
  if (stored.is_string()) return QString::fromStdString(stored.get<std::string>());
  if (stored.is_array()) return shownList(stored);
  return stored.is_object() ? shownObject(stored) : QVariant();
}

}  // namespace tessaly
