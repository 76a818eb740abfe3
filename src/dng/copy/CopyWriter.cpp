#include "dng/copy/CopyWriter.h"

#include "dng/DNGError.h"
#include "dng/PlaneView.h"
#include "dng/copy/CopyPlanner.h"
#include "dng/copy/CopyVerifier.h"
#include "dng/copy/NewCopy.h"
#include "dng/copy/SourceBytes.h"
#include "dng/copy/SourceFormWriter.h"
#include "dng/copy/SyntheticExposure.h"
#include "dng/metadata/SupportRules.h"
#include "dng/samples/SamplePacker.h"
#include "platform/PartialFile.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tessaly {
namespace {

ConstPlaneView readablePlane(const SourceImage& source, std::span<const std::uint16_t> samples) {
  const bool isWholePlane = std::ssize(samples) == source.metadata().pixelCount();
  if (!isWholePlane) throw DNGError::invalid("Raw sample count/descriptor");
  SupportRules::requireSupported(source.metadata());
  return {samples, source.metadata()};
}

// One copy on its way.
class Copy {
 public:
  Copy(const SourceImage& source, const CopyRequest& request, std::span<std::byte> buffer)
      : source_(source), plane_(readablePlane(source, request.samples)), buffer_(buffer) {
    const bool reencoded = takesReencodedForm(source.metadata(), request.preserveEncoding);
    if (!reencoded) sourceForm_.emplace(source, plane_, request.changed);
    plan_ = planCopy(source, reencoded, request.exposure);
  }

  void write(PartialFile& file) {
    const InputFile& input = source_.container().file();
    const bool isClone = file.cloneFrom(input);
    if (!isClone) file.reserve(plan_.length);
    if (sourceForm_) {
      sourceForm_->write(file, isClone, buffer_);
    } else {
      if (!isClone) copySourceBytes(file, source_, {0, 0, input.size()}, buffer_);
      appendRawSegment(file);
    }
    for (const CopyRange& value : plan_.values)
      copySourceBytes(file, source_, value, buffer_);
    for (const FilePatch& patch : plan_.patches)
      file.writeAt(patch.offset, patch.bytes);
  }

  // Every sample, so that a source that is no longer what was read is noticed too.
  void verify(const PartialFile& file) const {
    const InverseLinearization* const inverse = sourceForm_ ? sourceForm_->inverse() : nullptr;
    const WrittenSamples written = [this](const SampleRun& run) { return plane_.run(run); };
    verifyCopy(file.path(), {source_, plan_, written, ChangedSamples(), inverse});
  }

 private:
  void appendRawSegment(PartialFile& file) {
    const SampleFormat format{16, source_.container().little(), false};
    std::int64_t offset = *plan_.rawSegment;
    std::span<const std::uint16_t> rest = plane_.samples();
    while (!rest.empty()) {
      const auto slice = rest.first(std::min(rest.size(), buffer_.size() / 2));
      const std::span<std::byte> bytes = buffer_.first(2 * slice.size());
      packSamples(format, slice, bytes);
      file.writeAt(offset, bytes);
      offset += std::ssize(bytes);
      rest = rest.subspan(slice.size());
    }
  }

  const SourceImage& source_;
  ConstPlaneView plane_;
  std::span<std::byte> buffer_;
  std::optional<SourceFormWriter> sourceForm_;
  CopyPlan plan_;
};

}  // namespace

CheckedCopyRequest::CheckedCopyRequest(const std::filesystem::path& source, CopyRequest request)
    : request_(std::move(request)) {
  requireExposureRange(request_.exposure);
  requireFreeDestination(source, request_.destination);
}

void writeCopy(const SourceImage& source, const CheckedCopyRequest& request, std::span<std::byte> buffer,
               FileSystem& system) {
  assert(buffer.size() >= copyBufferSize);
  Copy copy(source, *request, buffer);
  makeCopy(
      {source, request->destination, system}, [&](PartialFile& file) { copy.write(file); },
      [&](const PartialFile& file) { copy.verify(file); });
}

}  // namespace tessaly
