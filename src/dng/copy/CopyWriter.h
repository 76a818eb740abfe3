// The writer's working part, for callers that have the source open and know which samples they have changed: then only
// those are packed, into a copy that the file system makes where it can. The result is the same as that of
// DNGWriter::writeCopy.
//
// Stateless; safe from several threads for different destinations and buffers.
#pragma once

#include "dng/copy/ChangedSamples.h"
#include "dng/copy/SourceImage.h"
#include "platform/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace tessaly {

struct CopyRequest {
  std::filesystem::path destination;
  std::span<const std::uint16_t> samples;  ///< the full raw plane
  ChangedSamples changed;                  ///< all, unless the others are known to be the source's
  bool preserveEncoding = false;
  std::optional<double> exposure;
};

/// What bytes pass through on their way to the copy: more than the longest row (200,000 bytes), few enough to stay in
/// the processor's cache.
inline constexpr std::size_t copyBufferSize = std::size_t{256} * 1024;

/// A request that has passed the checks that need no open source.
class CheckedCopyRequest {
 public:
  /// Throws invalid("Synthetic exposure range") or invalid("Output exists or equals source").
  CheckedCopyRequest(const std::filesystem::path& source, CopyRequest request);

  [[nodiscard]] const CopyRequest& operator*() const { return request_; }
  [[nodiscard]] const CopyRequest* operator->() const { return &request_; }

 private:
  CopyRequest request_;
};

/// Makes the copy. `buffer` holds at least copyBufferSize bytes.
void writeCopy(const SourceImage& source, const CheckedCopyRequest& request, std::span<std::byte> buffer,
               FileSystem& system);

}  // namespace tessaly
