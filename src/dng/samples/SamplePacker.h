// Samples to stored bytes: the exact inverse of unpackSamples.
//
// Stateless; safe from several threads for different bytes.
#pragma once

#include "dng/samples/SampleFormat.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaly {

/// Packs samples from a group boundary on. `bytes` must hold format.byteCount(samples.size()) bytes; exactly the bits
/// of the samples are written, so that padding bits in the last byte stay what they were. Every sample must fit the
/// depth (see fitsDepth). Throws unsupported("Raw bit depth <bits>") for a depth that no file may have.
void packSamples(const SampleFormat& format, std::span<const std::uint16_t> samples, std::span<std::byte> bytes);

/// Whether every sample is below 2^bits. Throws unsupported("Raw bit depth <bits>").
[[nodiscard]] bool fitsDepth(const SampleFormat& format, std::span<const std::uint16_t> samples);

}  // namespace tessaly
