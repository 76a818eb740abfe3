#include "dng/copy/StreamedCopy.h"

#include "dng/copy/CopyPlanner.h"
#include "dng/copy/CopyVerifier.h"
#include "dng/copy/NewCopy.h"
#include "dng/copy/SegmentOrder.h"
#include "dng/copy/StreamedWriter.h"
#include "dng/copy/VerifyingThread.h"
#include "dng/samples/RawPlaneSource.h"
#include "dng/samples/StoredRows.h"
#include "platform/ParallelBands.h"

#include <optional>
#include <system_error>
#include <utility>

namespace tessaly {
namespace {

// Behind the writer only where there is a processor for it.
bool verifiesBehind(const StreamedCopyRequest& request, const PartialFile& file) {
  return request.verification == Verification::behindTheWriter && availableThreads() > 1 && file.isInMemory();
}

/// One copy on its way. Each of its bytes is compared once, whether that begins before the last one is written or not.
class StreamedRoad {
 public:
  StreamedRoad(const SourceImage& source, const StreamedCopyRequest& request)
      : source_(source), request_(request), writer_(source, request) {
    if (request.mayExceedDepth) writer_.rehearse();
    plan_ = planCopy(source, false, std::nullopt);
  }

  void write(PartialFile& file) {
    if (verifiesBehind(request_, file)) startBehind(file);
    rest_ = writer_.write(
        file, thread_ ? [this](CopiedStretch stretch) { thread_->add(std::move(stretch)); } : StretchHandler());
  }

  void verify(const PartialFile& file) {
    requirePlannedDescription(file.path(), source_, plan_);
    if (!verifier_) verifier_.emplace(file.path(), source_, plan_);
    if (thread_) thread_->add(std::move(rest_));
    const bool matches = thread_ ? thread_->finish() : verifier_->matches(std::move(rest_));
    if (!matches) throwOtherBytes();
  }

 private:
  void startBehind(const PartialFile& file) {
    verifier_.emplace(file.path(), source_, plan_);
    try {
      thread_.emplace(*verifier_);
    } catch (const std::system_error&) {
      thread_.reset();  // the copy is verified afterwards
    }
  }

  const SourceImage& source_;
  const StreamedCopyRequest& request_;
  StreamedWriter writer_;
  CopyPlan plan_;
  CopiedStretch rest_;
  std::optional<StretchVerifier> verifier_;
  std::optional<VerifyingThread> thread_;
};

}  // namespace

bool canBeStreamed(const DNGMetadata& metadata) {
  return !takesReencodedForm(metadata, false) && !segmentsShareBytes(metadata);
}

void requireReadableSamples(const SourceImage& source) {
  const std::size_t entries = source.encoding().linearization.size();
  const bool hasShortTable = entries > 0 && entries < std::size_t{1} << source.metadata().bitsPerSample;
  const InputFile& file = source.container().file();
  if (hasShortTable) RawPlaneSource(file, source.metadata()).forEachRun([](const auto&, const auto&) {});
  const SegmentLayout segments = SegmentLayout::of(source.metadata());
  for (std::int64_t index = 0; index < segments.count(); ++index)
    checkSegment(file, source.encoding(), segments, index);
}

void streamCopy(const SourceImage& source, const StreamedCopyRequest& request, FileSystem& system) {
  requireFreeDestination(source.url(), request.destination);
  StreamedRoad road(source, request);
  makeCopy(
      {source, request.destination, system}, [&](PartialFile& file) { road.write(file); },
      [&](const PartialFile& file) { road.verify(file); });
}

}  // namespace tessaly
