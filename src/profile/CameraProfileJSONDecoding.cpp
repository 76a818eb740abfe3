// JSON to records; the way there is in CameraProfileJSONEncoding.cpp.

#include "dng/SensorFields.h"
#include "platform/JSONNumbers.h"
#include "profile/CameraProfileJSON.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace tessaly {

namespace {

using nlohmann::json;

/// One JSON object of the profile; hands out its values as what they must be and names the place of what is not.
class ObjectReader {
 public:
  /// The profile itself.
  explicit ObjectReader(const json& value) : ObjectReader(value, "profile", -1) {}

  /// The value of a key, or element `index` of an array.
  ObjectReader(const json& value, const char* name, std::int64_t index) : value_(value), name_(name), index_(index) {
    if (!value.is_object()) throw ProfileDecodingError(place() + " is not an object");
  }

  [[nodiscard]] std::int64_t integer(const char* key) const {
    const std::optional<std::int64_t> number = wholeNumber(required(key));
    if (!number) fail(key, "is not a 64-bit whole number");
    return *number;
  }

  [[nodiscard]] double number(const char* key) const {
    const std::optional<double> number = finiteNumber(required(key));
    if (!number) fail(key, "is not a finite number");
    return *number;
  }

  [[nodiscard]] std::string text(const char* key) const {
    const json& value = required(key);
    if (!value.is_string()) fail(key, "is not a text");
    return value.get<std::string>();
  }

  [[nodiscard]] const json& array(const char* key) const {
    const json& value = required(key);
    if (!value.is_array()) fail(key, "is not an array");
    return value;
  }

  [[nodiscard]] ObjectReader object(const char* key) const { return {required(key), key, -1}; }

  /// Whether an optional key is present with a value.
  [[nodiscard]] bool has(const char* key) const {
    const auto found = value_.find(key);
    return found != value_.end() && !found->is_null();
  }

  [[noreturn]] void fail(const char* key, const char* problem) const {
    throw ProfileDecodingError(fmt::format("{}: \"{}\" {}", place(), key, problem));
  }

 private:
  [[nodiscard]] const json& required(const char* key) const {
    const auto found = value_.find(key);
    if (found == value_.end()) fail(key, "is missing");
    return *found;
  }

  [[nodiscard]] std::string place() const { return index_ < 0 ? name_ : fmt::format("{}[{}]", name_, index_); }

  const json& value_;
  const char* name_;
  std::int64_t index_;
};

void read(const ObjectReader& object, const char* key, std::int64_t& value) {
  value = object.integer(key);
}

void read(const ObjectReader& object, const char* key, std::vector<std::uint8_t>& values) {
  for (const json& element : object.array(key)) {
    const std::optional<std::uint8_t> value = wholeNumber<std::uint8_t>(element);
    if (!value) object.fail(key, "holds something else than 0 to 255");
    values.push_back(*value);
  }
}

/// A RawRectangle or CFALayout.
template <typename Record>
Record geometry(const ObjectReader& object) {
  Record record;
  forEachField(record, [&object](const char* key, auto& value) { read(object, key, value); });
  return record;
}

DefectPixel pixel(const ObjectReader& object) {
  return {object.integer("x"), object.integer("y"), object.number("confidence"), object.text("reason")};
}

DefectLine line(const ObjectReader& object) {
  return {object.integer("x"),     object.integer("yStart"),    object.integer("yEnd"),
          object.integer("width"), object.number("confidence"), object.text("reason")};
}

DefectSpot spot(const ObjectReader& object) {
  return {object.integer("x"),       object.integer("y"),         object.integer("radiusX"),
          object.integer("radiusY"), object.number("confidence"), object.text("reason")};
}

template <typename Record>
std::vector<Record> records(const ObjectReader& profile, const char* key, Record (*record)(const ObjectReader&)) {
  const json& array = profile.array(key);
  std::vector<Record> all;
  all.reserve(array.size());
  for (const json& element : array) {
    all.push_back(record(ObjectReader(element, key, static_cast<std::int64_t>(all.size()))));
  }
  return all;
}

UUID identity(const ObjectReader& object, const char* key) {
  const std::optional<UUID> id = UUID::parse(object.text(key));
  if (!id) object.fail(key, "is not a UUID");
  return *id;
}

Timestamp moment(const ObjectReader& object, const char* key) {
  const std::optional<Timestamp> time = parseISO8601(object.text(key));
  if (!time) object.fail(key, "is not an ISO 8601 date and time");
  return *time;
}

void readOptionalFields(const ObjectReader& object, CameraProfile& profile) {
  if (object.has("sensorActiveArea"))
    profile.sensorActiveArea = geometry<RawRectangle>(object.object("sensorActiveArea"));
  if (object.has("cameraSerial")) profile.cameraSerial = object.text("cameraSerial");
  if (object.has("cfaLayout")) profile.cfaLayout = geometry<CFALayout>(object.object("cfaLayout"));
  if (object.has("spots")) profile.spots = records(object, "spots", spot);
}

CameraProfile profileFrom(const ObjectReader& object) {
  CameraProfile profile;
  profile.version = object.integer("version");
  profile.id = identity(object, "id");
  profile.name = object.text("name");
  profile.cameraModel = object.text("cameraModel");
  profile.rawWidth = object.integer("rawWidth");
  profile.rawHeight = object.integer("rawHeight");
  profile.activeX = object.integer("activeX");
  profile.activeY = object.integer("activeY");
  profile.activeWidth = object.integer("activeWidth");
  profile.activeHeight = object.integer("activeHeight");
  profile.createdAt = moment(object, "createdAt");
  profile.pixels = records(object, "pixels", pixel);
  profile.lines = records(object, "lines", line);
  readOptionalFields(object, profile);
  return profile;
}

[[noreturn]] void failAsJSON(std::size_t byte) {
  throw ProfileDecodingError(fmt::format("Not a JSON text (at byte {})", byte));
}

/// The parser takes a zero byte for the end of the text and would not see what follows.
void refuseZeroBytes(std::string_view text) {
  const std::size_t zero = text.find('\0');
  if (zero != std::string_view::npos) failAsJSON(zero + 1);
}

}  // namespace

CameraProfile decodeProfile(std::string_view text) {
  refuseZeroBytes(text);
  try {
    return profileFrom(ObjectReader(json::parse(text)));
  } catch (const json::parse_error& error) {
    failAsJSON(error.byte);
  } catch (const json::exception&) {
    throw ProfileDecodingError("The JSON text holds a number that is out of range");
  }
}

}  // namespace tessaly
