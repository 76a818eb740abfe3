// The window's values as the settings file holds them: booleans, whole numbers, texts, lists, bytes and rectangles.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <QVariant>

namespace tessaly {

/// Null for an invalid value; what is none of these becomes its text.
[[nodiscard]] nlohmann::json storedValue(const QVariant& value);

/// Invalid for null and for what no value of the window looks like. Bytes that are UTF-8 come back as a text.
[[nodiscard]] QVariant shownValue(const nlohmann::json& stored);

}  // namespace tessaly
