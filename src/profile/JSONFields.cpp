#include "profile/JSONFields.h"

#include "platform/JSONNumbers.h"
#include "profile/CameraProfileJSON.h"

#include <fmt/format.h>

#include <cassert>
#include <optional>

namespace tessaly {

JSONFields::JSONFields(std::initializer_list<const char*> keys) {
  fields_.reserve(keys.size());
  for (const char* key : keys)
    fields_.push_back({key});
}

void JSONFields::clear() {
  for (JSONField& field : fields_)
    field.kind = JSONField::Kind::missing;
}

JSONField* JSONFields::find(std::string_view key) {
  for (JSONField& field : fields_) {
    if (key == field.key) return &field;
  }
  return nullptr;
}

const JSONField& JSONFields::at(std::string_view key) const {
  for (const JSONField& field : fields_) {
    if (key == field.key) return field;
  }
  assert(false && "a key that was not asked for");
  return fields_.front();
}

std::int64_t JSONObjectReader::integer(const char* key) const {
  const std::optional<std::int64_t> number = wholeNumber(required(key).number);
  if (!number) fail(key, "is not a 64-bit whole number");
  return *number;
}

double JSONObjectReader::number(const char* key) const {
  const std::optional<double> number = finiteNumber(required(key).number);
  if (!number) fail(key, "is not a finite number");
  return *number;
}

const std::string& JSONObjectReader::text(const char* key) const {
  if (required(key).kind != JSONField::Kind::text) fail(key, "is not a text");
  return required(key).text;
}

void JSONObjectReader::requireArray(const char* key) const {
  if (required(key).kind != JSONField::Kind::array) fail(key, "is not an array");
}

JSONObjectReader JSONObjectReader::object(const char* key, const JSONFields& fields) const {
  if (required(key).kind != JSONField::Kind::object) throw ProfileDecodingError(std::string(key) + " is not an object");
  return {fields, key};
}

const std::vector<std::uint8_t>& JSONObjectReader::bytes(const char* key) const {
  requireArray(key);
  if (required(key).holdsOtherThanBytes) fail(key, "holds something else than 0 to 255");
  return required(key).bytes;
}

bool JSONObjectReader::has(const char* key) const {
  const JSONField::Kind kind = fields_.at(key).kind;
  return kind != JSONField::Kind::missing && kind != JSONField::Kind::null;
}

void JSONObjectReader::fail(const char* key, const char* problem) const {
  throw ProfileDecodingError(fmt::format("{}: \"{}\" {}", jsonPlace(name_, index_), key, problem));
}

const JSONField& JSONObjectReader::required(const char* key) const {
  const JSONField& field = fields_.at(key);
  if (field.kind == JSONField::Kind::missing) fail(key, "is missing");
  return field;
}

std::string jsonPlace(const char* name, std::int64_t index) {
  return index < 0 ? name : fmt::format("{}[{}]", name, index);
}

}  // namespace tessaly
