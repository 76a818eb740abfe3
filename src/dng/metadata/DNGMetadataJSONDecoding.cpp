// JSON to records; the way there is in DNGMetadataJSONEncoding.cpp.

#include "dng/metadata/DNGMetadataJSON.h"
#include "dng/metadata/RecordFields.h"
#include "platform/JSONNumbers.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <stdexcept>

namespace tessaly {
namespace {

using nlohmann::ordered_json;

[[noreturn]] void fail(const char* key, const char* problem) {
  throw std::invalid_argument(fmt::format("\"{}\" {}", key, problem));
}

template <typename Record>
Record decodedRecord(const char* key, const ordered_json& json);

template <typename Integer>
Integer integer(const char* key, const ordered_json& json) {
  const std::optional<Integer> number = wholeNumber<Integer>(json);
  if (!number) fail(key, "is not a whole number in range");
  return *number;
}

void decode(const char* key, const ordered_json& json, std::int64_t& value) {
  value = integer<std::int64_t>(key, json);
}

void decode(const char* key, const ordered_json& json, std::uint64_t& value) {
  value = integer<std::uint64_t>(key, json);
}

void decode(const char* key, const ordered_json& json, std::uint16_t& value) {
  value = integer<std::uint16_t>(key, json);
}

void decode(const char* key, const ordered_json& json, std::uint8_t& value) {
  value = integer<std::uint8_t>(key, json);
}

void decode(const char* key, const ordered_json& json, double& value) {
  const std::optional<double> number = finiteNumber(json);
  if (!number) fail(key, "is not a finite number");
  value = *number;
}

void decode(const char* key, const ordered_json& json, bool& value) {
  if (!json.is_boolean()) fail(key, "is neither true nor false");
  value = json.get<bool>();
}

void decode(const char* key, const ordered_json& json, std::string& value) {
  if (!json.is_string()) fail(key, "is not a text");
  value = json.get<std::string>();
}

void decode(const char* key, const ordered_json& json, RawPacking& value) {
  if (json == "packed12MSB") {
    value = RawPacking::packed12MSB;
  } else if (json == "littleEndian16") {
    value = RawPacking::littleEndian16;
  } else {
    fail(key, "is not the name of a packing");
  }
}

void decode(const char* key, const ordered_json& json, RawRectangle& value) {
  value = decodedRecord<RawRectangle>(key, json);
}

void decode(const char* key, const ordered_json& json, CFALayout& value) {
  value = decodedRecord<CFALayout>(key, json);
}

void decode(const char* key, const ordered_json& json, DNGSourceEncoding& value) {
  value = decodedRecord<DNGSourceEncoding>(key, json);
}

template <typename Value>
void decode(const char* key, const ordered_json& json, std::vector<Value>& values) {
  if (!json.is_array()) fail(key, "is not an array");
  values.reserve(json.size());
  for (const ordered_json& element : json)
    decode(key, element, values.emplace_back());
}

template <typename Value>
void decodeField(const ordered_json& object, const char* key, Value& value) {
  const auto found = object.find(key);
  if (found == object.end()) fail(key, "is missing");
  decode(key, *found, value);
}

template <typename Value>
void decodeField(const ordered_json& object, const char* key, std::optional<Value>& value) {
  const auto found = object.find(key);
  if (found != object.end() && !found->is_null()) decode(key, *found, value.emplace());
}

template <typename Record>
Record decodedRecord(const char* key, const ordered_json& json) {
  if (!json.is_object()) fail(key, "is not an object");
  Record record;
  forEachField(record, [&](const char* name, auto& value) { decodeField(json, name, value); });
  return record;
}

}  // namespace

DNGMetadata metadataFromJSON(const ordered_json& json) {
  return decodedRecord<DNGMetadata>("metadata", json);
}

DNGSourceEncoding sourceEncodingFromJSON(const ordered_json& json) {
  return decodedRecord<DNGSourceEncoding>("sourceEncoding", json);
}

TIFFField fieldFromJSON(const ordered_json& json) {
  return decodedRecord<TIFFField>("field", json);
}

}  // namespace tessaly
