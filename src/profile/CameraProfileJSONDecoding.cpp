// JSON to records while the text streams by: a tree of it would take ten times the memory of the text and most of the
// time. The way there is in CameraProfileJSONEncoding.cpp.

#include "dng/SensorFields.h"
#include "platform/JSONNumbers.h"
#include "profile/CameraProfileJSON.h"
#include "profile/JSONFields.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <utility>

namespace tessaly {

namespace {

using nlohmann::json;

void read(const JSONObjectReader& object, const char* key, std::int64_t& value) {
  value = object.integer(key);
}

void read(const JSONObjectReader& object, const char* key, std::vector<std::uint8_t>& values) {
  values = object.bytes(key);
}

/// A RawRectangle or CFALayout.
template <typename Record>
Record geometry(const JSONObjectReader& object) {
  Record record;
  forEachField(record, [&object](const char* key, auto& value) { read(object, key, value); });
  return record;
}

void decode(const JSONObjectReader& object, DefectPixel& pixel) {
  pixel = {object.integer("x"), object.integer("y"), object.number("confidence"), object.text("reason")};
}

void decode(const JSONObjectReader& object, DefectLine& line) {
  line = {object.integer("x"),     object.integer("yStart"),    object.integer("yEnd"),
          object.integer("width"), object.number("confidence"), object.text("reason")};
}

void decode(const JSONObjectReader& object, DefectSpot& spot) {
  spot = {object.integer("x"),       object.integer("y"),         object.integer("radiusX"),
          object.integer("radiusY"), object.number("confidence"), object.text("reason")};
}

/// An array of records, of which the last element that has come is at hand. Its first fault is kept and told when the
/// array is asked for: a fault of the text itself, or of a field before the array, comes first.
class RecordArray {
 public:
  RecordArray(const char* name, std::initializer_list<const char*> keys) : fields(keys), name_(name) {}
  RecordArray(const RecordArray&) = delete;
  RecordArray& operator=(const RecordArray&) = delete;
  virtual ~RecordArray() = default;

  /// Another array of the name replaces the one before.
  virtual void begin() {
    count_ = 0;
    fault_.reset();
  }

  /// The object whose fields have been filled is complete.
  void addRecord() {
    try {
      if (!fault_) decodeRecord({fields, name_, count_});
    } catch (const ProfileDecodingError& error) {
      fault_ = error;
    }
    ++count_;
  }

  void addSomethingElse() {
    if (!fault_) fault_.emplace(jsonPlace(name_, count_) + " is not an object");
    ++count_;
  }

  JSONFields fields;

 protected:
  void requireNoFault() const {
    if (fault_) throw ProfileDecodingError(*fault_);
  }

 private:
  virtual void decodeRecord(const JSONObjectReader& object) = 0;

  const char* name_;
  std::int64_t count_ = 0;
  std::optional<ProfileDecodingError> fault_;
};

template <typename Record>
class Records final : public RecordArray {
 public:
  using RecordArray::RecordArray;

  void begin() override {
    RecordArray::begin();
    records_.clear();
  }

  [[nodiscard]] std::vector<Record> take() {
    requireNoFault();
    return std::move(records_);
  }

 private:
  void decodeRecord(const JSONObjectReader& object) override { decode(object, records_.emplace_back()); }

  std::vector<Record> records_;
};

UUID identity(const JSONObjectReader& object, const char* key) {
  const std::optional<UUID> id = UUID::parse(object.text(key));
  if (!id) object.fail(key, "is not a UUID");
  return *id;
}

Timestamp moment(const JSONObjectReader& object, const char* key) {
  const std::optional<Timestamp> time = parseISO8601(object.text(key));
  if (!time) object.fail(key, "is not an ISO 8601 date and time");
  return *time;
}

/// What a profile's text holds, as far as it has come.
class ProfileContents {
 public:
  JSONFields fields{"version",   "id",          "name",    "cameraModel", "rawWidth",
                    "rawHeight", "activeX",     "activeY", "activeWidth", "activeHeight",
                    "createdAt", "pixels",      "lines",   "spots",       "sensorActiveArea",
                    "cfaLayout", "cameraSerial"};
  JSONFields area{"x", "y", "width", "height"};
  JSONFields mosaic{"width", "height", "pattern"};
  Records<DefectPixel> pixels{"pixels", {"x", "y", "confidence", "reason"}};
  Records<DefectLine> lines{"lines", {"x", "yStart", "yEnd", "width", "confidence", "reason"}};
  Records<DefectSpot> spots{"spots", {"x", "y", "radiusX", "radiusY", "confidence", "reason"}};

  /// The fields of an object that stands at this key of the profile; null where nobody asks for them.
  [[nodiscard]] JSONFields* objectAt(std::string_view key) {
    if (key == "sensorActiveArea") return &area;
    return key == "cfaLayout" ? &mosaic : nullptr;
  }

  /// The same of an array of records.
  [[nodiscard]] RecordArray* arrayAt(std::string_view key) {
    if (key == "pixels") return &pixels;
    if (key == "lines") return &lines;
    return key == "spots" ? &spots : nullptr;
  }

  [[nodiscard]] CameraProfile profile() {
    const JSONObjectReader object(fields, "profile");
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
    object.requireArray("pixels");
    profile.pixels = pixels.take();
    object.requireArray("lines");
    profile.lines = lines.take();
    takeOptionalFields(object, profile);
    return profile;
  }

 private:
  void takeOptionalFields(const JSONObjectReader& object, CameraProfile& profile) {
    if (object.has("sensorActiveArea")) {
      profile.sensorActiveArea = geometry<RawRectangle>(object.object("sensorActiveArea", area));
    }
    if (object.has("cameraSerial")) profile.cameraSerial = object.text("cameraSerial");
    if (object.has("cfaLayout")) profile.cfaLayout = geometry<CFALayout>(object.object("cfaLayout", mosaic));
    if (!object.has("spots")) return;
    object.requireArray("spots");
    profile.spots = spots.take();
  }
};

[[noreturn]] void failAsJSON(std::size_t byte) {
  throw ProfileDecodingError(fmt::format("Not a JSON text (at byte {})", byte));
}

/// Receives a text piece by piece. A place of it is an object whose fields are asked for, an array of records or of
/// bytes, or something that is passed over.
class ProfileHandler final : public nlohmann::json_sax<json> {
 public:
  explicit ProfileHandler(ProfileContents& contents) : contents_(contents) {}

  [[nodiscard]] bool metAnObject() const { return metAnObject_; }

  bool null() override { return scalar(JSONField::Kind::null); }
  bool boolean(bool) override { return scalar(JSONField::Kind::boolean); }
  bool number_integer(number_integer_t value) override { return number({value}); }
  bool number_unsigned(number_unsigned_t value) override { return number({value}); }
  bool number_float(number_float_t value, const string_t&) override { return number({value}); }
  bool binary(binary_t&) override { return true; }

  bool string(string_t& value) override {
    if (JSONField* const field = take(JSONField::Kind::text)) field->text.swap(value);
    return true;
  }

  bool key(string_t& key) override {
    if (passedOver_ == 0 && object_ != nullptr) field_ = object_->find(key);
    return true;
  }

  bool start_object(std::size_t) override {
    if (passedOver_ > 0 || !enterObject()) ++passedOver_;
    return true;
  }

  bool start_array(std::size_t) override {
    if (passedOver_ > 0 || !enterArray()) ++passedOver_;
    return true;
  }

  bool end_object() override { return passedOver_ > 0 ? passedBy() : leaveObject(); }
  bool end_array() override { return passedOver_ > 0 ? passedBy() : leaveArray(); }

  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
    if (const auto* const place = dynamic_cast<const json::parse_error*>(&error)) failAsJSON(place->byte);
    throw ProfileDecodingError("The JSON text holds a number that is out of range");
  }

 private:
  bool passedBy() {
    --passedOver_;
    return true;
  }

  bool scalar(JSONField::Kind kind) {
    take(kind);
    return true;
  }

  bool number(JSONNumber number) {
    if (passedOver_ == 0 && bytes_ != nullptr) {
      addByte(number);
    } else if (JSONField* const field = take(JSONField::Kind::number)) {
      field->number = number;
    }
    return true;
  }

  void addByte(JSONNumber number) {
    const std::optional<std::uint8_t> value = wholeNumber<std::uint8_t>(number);
    if (value) bytes_->bytes.push_back(*value);
    if (!value) bytes_->holdsOtherThanBytes = true;
  }

  /// The field that a value belongs to, which is of this kind now; null where nobody asks for the value.
  JSONField* take(JSONField::Kind kind) {
    if (passedOver_ > 0) return nullptr;
    if (object_ == nullptr || bytes_ != nullptr) {
      tookElement();
      return nullptr;
    }
    if (field_ == nullptr) return nullptr;
    field_->kind = kind;
    field_->number = {};
    return field_;
  }

  /// What an array should not hold.
  void tookElement() {
    if (bytes_ != nullptr) {
      bytes_->holdsOtherThanBytes = true;
    } else if (array_ != nullptr) {
      array_->addSomethingElse();
    }
  }

  bool enterObject() {
    if (object_ == nullptr && array_ != nullptr) return open(array_->fields);
    if (object_ == nullptr) {
      metAnObject_ = true;
      return open(contents_.fields);
    }
    const JSONField* const field = take(JSONField::Kind::object);
    JSONFields* const fields = field != nullptr && isInProfile() ? contents_.objectAt(field->key) : nullptr;
    return fields != nullptr && open(*fields);
  }

  bool enterArray() {
    JSONField* const field = take(JSONField::Kind::array);
    if (field == nullptr) return false;
    if (isInProfile()) return enterRecords(contents_.arrayAt(field->key));
    if (object_ != &contents_.mosaic || field->key != "pattern") return false;
    bytes_ = field;
    bytes_->bytes.clear();
    bytes_->holdsOtherThanBytes = false;
    return true;
  }

  bool enterRecords(RecordArray* array) {
    if (array == nullptr) return false;
    array_ = array;
    object_ = nullptr;
    array_->begin();
    return true;
  }

  bool open(JSONFields& fields) {
    fields.clear();
    object_ = &fields;
    field_ = nullptr;
    return true;
  }

  bool leaveObject() {
    const bool wasRecord = array_ != nullptr;
    if (wasRecord) array_->addRecord();
    object_ = wasRecord || isInProfile() ? nullptr : &contents_.fields;
    return true;
  }

  bool leaveArray() {
    if (bytes_ == nullptr) {
      array_ = nullptr;
      object_ = &contents_.fields;
    }
    bytes_ = nullptr;
    return true;
  }

  [[nodiscard]] bool isInProfile() const { return object_ == &contents_.fields; }

  ProfileContents& contents_;
  JSONFields* object_ = nullptr;  ///< the object whose keys come now
  JSONField* field_ = nullptr;    ///< of that object, which the next value belongs to
  RecordArray* array_ = nullptr;  ///< the array whose records come now
  JSONField* bytes_ = nullptr;    ///< the array whose numbers come now
  std::int64_t passedOver_ = 0;   ///< arrays and objects that have begun and that nobody asks for
  bool metAnObject_ = false;
};

/// The parser takes a zero byte for the end of the text and would not see what follows.
void refuseZeroBytes(std::string_view text) {
  const std::size_t zero = text.find('\0');
  if (zero != std::string_view::npos) failAsJSON(zero + 1);
}

}  // namespace

CameraProfile decodeProfile(std::string_view text) {
  refuseZeroBytes(text);
  ProfileContents contents;
  ProfileHandler handler(contents);
  json::sax_parse(text.begin(), text.end(), &handler);
  if (!handler.metAnObject()) throw ProfileDecodingError("profile is not an object");
  return contents.profile();
}

}  // namespace tessaly
