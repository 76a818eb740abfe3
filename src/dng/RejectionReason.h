// Why a photograph was refused, as the photographer is told. DNGError::rejectionReason() chooses it.
#pragma once

namespace tessaly {

/// The order is the order of the message table.
enum class RejectionReason {
  losslessJPEG,
  lossyJPEG,
  jpegXL,
  proprietaryRAW,
  nonBayer,
  linear,
  damaged,
  unreadable,
  mismatch,
  unsupported,
  container,
  bitDepth,
  fractionalCrop,
  fillOrder,
  sampleRange,
  numericType,
  calibrationFrames,
  calibrationSize,
};

}  // namespace tessaly
