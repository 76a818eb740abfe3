// The defect map of one camera body: which photosites, column ranges and small elliptical spots of its sensor are
// defective, with enough identity of the sensor to refuse a file from another body or another raw layout.
//
// All coordinates are raw coordinates (see dng/DNGMetadata.h), masked border included.
#pragma once

#include "dng/DNGMetadata.h"
#include "platform/Timestamp.h"
#include "platform/UUID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

struct DefectPixel {
  std::int64_t x = 0;
  std::int64_t y = 0;
  double confidence = 1.0;
  std::string reason;

  bool operator==(const DefectPixel&) const = default;
};

/// A range of adjacent defective columns over a range of rows.
struct DefectLine {
  std::int64_t x = 0;       ///< first column
  std::int64_t yStart = 0;  ///< first row
  std::int64_t yEnd = 0;    ///< last row, inclusive
  std::int64_t width = 1;   ///< number of columns from x on
  double confidence = 1.0;
  std::string reason = "Manually confirmed";

  bool operator==(const DefectLine&) const = default;
};

/// An axis-aligned filled ellipse, for example the shadow of dust on the sensor's cover glass.
struct DefectSpot {
  std::int64_t x = 0;        ///< centre
  std::int64_t y = 0;        ///< centre
  std::int64_t radiusX = 1;  ///< half-axes in samples, at least 1
  std::int64_t radiusY = 1;
  double confidence = 1.0;
  std::string reason;

  bool operator==(const DefectSpot&) const = default;
};

struct CameraProfile {
  static constexpr std::int64_t currentVersion = 4;

  std::int64_t version = currentVersion;
  UUID id;
  std::string name;
  std::optional<RawRectangle> sensorActiveArea;
  std::optional<std::string> cameraSerial;
  std::optional<CFALayout> cfaLayout;
  std::string cameraModel;
  std::int64_t rawWidth = 0;
  std::int64_t rawHeight = 0;
  std::int64_t activeX = 0;
  std::int64_t activeY = 0;
  std::int64_t activeWidth = 0;
  std::int64_t activeHeight = 0;
  Timestamp createdAt = currentTimestamp();
  std::vector<DefectPixel> pixels;
  std::vector<DefectLine> lines;
  std::optional<std::vector<DefectSpot>> spots;  ///< absent in profiles older than spots; absent counts as empty

  /// A new profile of this sensor, made now, with a random id and no defects.
  [[nodiscard]] static CameraProfile empty(std::string name, const DNGMetadata& metadata);

  /// Throws DNGError::profileMismatch with the first reason for which this profile does not fit the file.
  void validate(const DNGMetadata& metadata) const;

  bool operator==(const CameraProfile&) const = default;
};

}  // namespace tessaly
