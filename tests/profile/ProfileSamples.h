// A small sensor and a profile that fits it, for tests that change one thing at a time.
#pragma once

#include "profile/CameraProfile.h"

namespace tessaly::tests {

/// 100 × 80 photosites, an active area of 90 × 70 from column 6, row 4 on, RGGB, 14 bits, serial "SN-1".
inline DNGMetadata sampleMetadata() {
  DNGMetadata metadata;
  metadata.model = "Body One";
  metadata.cameraSerial = "SN-1";
  metadata.rawWidth = 100;
  metadata.rawHeight = 80;
  metadata.activeX = 6;
  metadata.activeY = 4;
  metadata.activeWidth = 90;
  metadata.activeHeight = 70;
  metadata.whiteLevel = 16383;
  metadata.bitsPerSample = 14;
  metadata.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->activeArea = {6, 4, 90, 70};
  return metadata;
}

/// One defect of each kind, all inside the sensor of sampleMetadata().
inline CameraProfile sampleProfile() {
  CameraProfile profile = CameraProfile::empty("Body One at noon", sampleMetadata());
  profile.pixels = {{11, 12, 0.99, "hot"}};
  profile.lines = {{20, 0, 79, 1, 0.875, "column"}};
  profile.spots = {{{50, 40, 3, 2, 0.5, "dust"}}};
  return profile;
}

}  // namespace tessaly::tests
