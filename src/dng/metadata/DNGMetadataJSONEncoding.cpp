// Records to JSON; the way back is in DNGMetadataJSONDecoding.cpp.

#include "dng/metadata/DNGMetadataJSON.h"
#include "dng/metadata/RecordFields.h"

#include <nlohmann/json.hpp>

namespace tessaly {
namespace {

using nlohmann::ordered_json;

template <typename Record>
ordered_json encodedRecord(const Record& record);

template <typename Value>
ordered_json encoded(const Value& value) {
  return value;
}

ordered_json encoded(const RawRectangle& value) {
  return encodedRecord(value);
}

ordered_json encoded(const CFALayout& value) {
  return encodedRecord(value);
}

ordered_json encoded(const DNGSourceEncoding& value) {
  return encodedRecord(value);
}

ordered_json encoded(RawPacking value) {
  return value == RawPacking::packed12MSB ? "packed12MSB" : "littleEndian16";
}

template <typename Value>
void add(ordered_json& object, const char* key, const Value& value) {
  object[key] = encoded(value);
}

template <typename Value>
void add(ordered_json& object, const char* key, const std::optional<Value>& value) {
  if (value) add(object, key, *value);
}

template <typename Record>
ordered_json encodedRecord(const Record& record) {
  ordered_json object = ordered_json::object();
  forEachField(record, [&](const char* key, const auto& value) { add(object, key, value); });
  return object;
}

}  // namespace

ordered_json toJSON(const DNGMetadata& metadata) {
  return encodedRecord(metadata);
}

ordered_json toJSON(const DNGSourceEncoding& encoding) {
  return encodedRecord(encoding);
}

ordered_json toJSON(const TIFFField& field) {
  return encodedRecord(field);
}

}  // namespace tessaly
