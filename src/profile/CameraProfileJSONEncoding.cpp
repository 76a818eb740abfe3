// Records to JSON; the way back is in CameraProfileJSONDecoding.cpp.

#include "dng/SensorFields.h"
#include "profile/CameraProfileJSON.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace tessaly {

namespace {

using nlohmann::json;

/// JSON has no word for infinity or "not a number": they would be written as null, which is not read back.
double finite(double confidence) {
  if (!std::isfinite(confidence)) throw std::invalid_argument("A confidence is not finite");
  return confidence;
}

/// Of a RawRectangle or CFALayout.
template <typename Record>
json encodedGeometry(const Record& record) {
  json object = json::object();
  forEachField(record, [&object](const char* key, const auto& value) { object[key] = value; });
  return object;
}

json encoded(const DefectPixel& pixel) {
  return {{"x", pixel.x}, {"y", pixel.y}, {"confidence", finite(pixel.confidence)}, {"reason", pixel.reason}};
}

json encoded(const DefectLine& line) {
  return {{"x", line.x},
          {"yStart", line.yStart},
          {"yEnd", line.yEnd},
          {"width", line.width},
          {"confidence", finite(line.confidence)},
          {"reason", line.reason}};
}

json encoded(const DefectSpot& spot) {
  return {{"x", spot.x},
          {"y", spot.y},
          {"radiusX", spot.radiusX},
          {"radiusY", spot.radiusY},
          {"confidence", finite(spot.confidence)},
          {"reason", spot.reason}};
}

template <typename Record>
json encoded(const std::vector<Record>& records) {
  json array = json::array();
  for (const Record& record : records)
    array.push_back(encoded(record));
  return array;
}

std::string encodedTime(Timestamp time) {
  std::string text = iso8601Text(time);
  if (!parseISO8601(text)) throw std::invalid_argument("The creation time has no four-digit year");
  return text;
}

void addOptionalFields(json& object, const CameraProfile& profile) {
  if (profile.sensorActiveArea) object["sensorActiveArea"] = encodedGeometry(*profile.sensorActiveArea);
  if (profile.cameraSerial) object["cameraSerial"] = *profile.cameraSerial;
  if (profile.cfaLayout) object["cfaLayout"] = encodedGeometry(*profile.cfaLayout);
  if (profile.spots) object["spots"] = encoded(*profile.spots);
}

json encoded(const CameraProfile& profile) {
  json object = {{"version", profile.version},
                 {"id", profile.id.text()},
                 {"name", profile.name},
                 {"cameraModel", profile.cameraModel},
                 {"rawWidth", profile.rawWidth},
                 {"rawHeight", profile.rawHeight},
                 {"activeX", profile.activeX},
                 {"activeY", profile.activeY},
                 {"activeWidth", profile.activeWidth},
                 {"activeHeight", profile.activeHeight},
                 {"createdAt", encodedTime(profile.createdAt)},
                 {"pixels", encoded(profile.pixels)},
                 {"lines", encoded(profile.lines)}};
  addOptionalFields(object, profile);
  return object;
}

}  // namespace

std::string encodeProfile(const CameraProfile& profile) {
  try {
    return encoded(profile).dump(2) + '\n';
  } catch (const json::type_error&) {
    throw std::invalid_argument("A text of the profile is not UTF-8");
  }
}

}  // namespace tessaly
