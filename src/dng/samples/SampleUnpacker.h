// Stored bytes to samples, at a fraction of the speed of memory.
//
// Stateless; safe from several threads.
#pragma once

#include "dng/samples/SampleFormat.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaly {

/// Unpacks samples.size() samples that start on a group boundary. `bytes` must hold format.byteCount(samples.size())
/// bytes; nothing beyond them is read. Throws unsupported("Raw bit depth <bits>") for a depth that no file may have.
void unpackSamples(const SampleFormat& format, std::span<const std::byte> bytes, std::span<std::uint16_t> samples);

}  // namespace tessaly
