#include "dng/RejectionReason.h"

#include "dng/DNGError.h"

#include <array>
#include <string_view>
#include <utility>

namespace tessaly {
namespace {

struct Phrase {
  std::string_view text;
  RejectionReason reason;
};

// The first phrase that a message contains decides: the order counts.
constexpr std::array unsupportedPhrases{
    Phrase{"lossless JPEG", RejectionReason::losslessJPEG},
    Phrase{"Lossy JPEG", RejectionReason::lossyJPEG},
    Phrase{"JPEG XL", RejectionReason::jpegXL},
    Phrase{"CFA", RejectionReason::nonBayer},
    Phrase{"Bayer", RejectionReason::nonBayer},
    Phrase{"samples per pixel", RejectionReason::linear},
    Phrase{"BitsPerSample value", RejectionReason::linear},
    Phrase{"photometric", RejectionReason::linear},
    Phrase{"Planar", RejectionReason::linear},
    Phrase{"Classic TIFF", RejectionReason::container},
    Phrase{"DNGVersion", RejectionReason::container},
    Phrase{"bit depth", RejectionReason::bitDepth},
    Phrase{"Fractional DefaultCrop", RejectionReason::fractionalCrop},
    Phrase{"FillOrder", RejectionReason::fillOrder},
    Phrase{"UInt16", RejectionReason::sampleRange},
    Phrase{"Numeric TIFF type", RejectionReason::numericType},
    Phrase{"Calibration requires", RejectionReason::calibrationSize},
};

bool contains(std::string_view message, std::string_view phrase) {
  return message.find(phrase) != std::string_view::npos;
}

RejectionReason reasonForInvalid(std::string_view message) {
  const bool calibration = contains(message, "calibration DNG") || contains(message, "bright-field");
  return calibration ? RejectionReason::calibrationFrames : RejectionReason::damaged;
}

RejectionReason reasonForUnsupported(std::string_view message) {
  if (message == "Proprietary RAW") return RejectionReason::proprietaryRAW;
  for (const Phrase& phrase : unsupportedPhrases) {
    if (contains(message, phrase.text)) return phrase.reason;
  }
  return RejectionReason::unsupported;
}

}  // namespace

RejectionReason DNGError::rejectionReason() const {
  const DNGError& error = innermost();
  switch (error.kind()) {
    case Case::truncated:
      return RejectionReason::damaged;
    case Case::profileMismatch:
      return RejectionReason::mismatch;
    case Case::invalid:
      return reasonForInvalid(error.message());
    case Case::unsupported:
      return reasonForUnsupported(error.message());
    case Case::unreadable:
    case Case::file:  // never innermost
      break;
  }
  return RejectionReason::unreadable;
}

}  // namespace tessaly
