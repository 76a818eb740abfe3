#include "dng/copy/CopyVerifier.h"

#include "dng/DNGError.h"
#include "dng/copy/CopyPlanner.h"
#include "dng/copy/PlannedBytes.h"
#include "dng/copy/SegmentOrder.h"
#include "dng/copy/StoredBits.h"
#include "dng/metadata/MetadataReader.h"
#include "dng/metadata/SupportRules.h"
#include "dng/samples/RawPlaneSource.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SampleUnpacker.h"
#include "dng/samples/SegmentLayout.h"
#include "dng/tiff/DNGContainer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

// More than the longest row (200,000 bytes); two of them stay in the second-level cache.
constexpr std::int64_t sliceSize = std::int64_t{256} * 1024;

// Runs one step of reading the copy; whatever it throws leaves with the copy's name.
template <typename Step>
auto inContext(const std::filesystem::path& copy, Step step) {
  try {
    return step();
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, copy);
  }
}

/// A stretch of bytes of `length` in all that are looked at from front to back.
class Slices {
 public:
  using Read = std::function<void(std::int64_t offset, std::span<std::byte> into)>;

  Slices(std::int64_t length, Read read)
      : length_(length), read_(std::move(read)), slice_(static_cast<std::size_t>(std::min(length, sliceSize))) {}

  /// At most sliceSize bytes; valid until the next call.
  [[nodiscard]] std::span<const std::byte> view(std::int64_t offset, std::int64_t length) {
    assert(length <= sliceSize && offset + length <= length_);
    if (offset < offset_ || offset + length > offset_ + held_) move(offset);
    return std::span(slice_).subspan(static_cast<std::size_t>(offset - offset_), static_cast<std::size_t>(length));
  }

 private:
  void move(std::int64_t offset) {
    offset_ = offset;
    held_ = std::min(sliceSize, length_ - offset);
    read_(offset, std::span(slice_).first(static_cast<std::size_t>(held_)));
  }

  std::int64_t length_;
  Read read_;
  std::vector<std::byte> slice_;
  std::int64_t offset_ = 0;
  std::int64_t held_ = 0;
};

// Who took the picture is not compared: those are bytes like any others.
bool describes(const DNGMetadata& copy, DNGMetadata planned) {
  planned.cameraSerial = copy.cameraSerial;
  planned.make = copy.make;
  planned.model = copy.model;
  planned.iso = copy.iso;
  planned.exposureSeconds = copy.exposureSeconds;
  return copy == planned;
}

class Comparison {
 public:
  Comparison(const std::filesystem::path& path, const DNGContainer& copy, const DNGMetadata& metadata,
             const ExpectedCopy& expected)
      : path_(path),
        file_(copy.file()),
        metadata_(metadata),
        expected_(expected),
        layout_(SegmentLayout::of(metadata)),
        format_(SampleFormat::of(metadata)),
        plan_(expected.source, expected.plan),
        copy_(plan_.length(), [this](auto offset, auto into) { readCopy(offset, into); }),
        planned_(plan_.length(), [this](auto offset, auto into) { plan_.read(offset, into); }) {}

  // Segments that share bytes hold samples that nobody asked to change, so there each sample is looked at and the bytes
  // between samples are not.
  bool holds() {
    const bool isShared = segmentsShareBytes(metadata_);
    if (isShared && !everySampleMatches()) return false;
    std::int64_t position = 0;
    for (const std::int64_t index : segmentsInFileOrder(*metadata_.sourceEncoding)) {
      const std::int64_t start = metadata_.sourceEncoding->offsets[static_cast<std::size_t>(index)];
      if (!bytesMatch(position, start)) return false;
      if (!isShared && !segmentMatches(layout_.segment(index), start)) return false;
      position = std::max(position, start + layout_.byteCount(index));
    }
    return bytesMatch(position, plan_.length());
  }

 private:
  void readCopy(std::int64_t offset, std::span<std::byte> into) const {
    const std::size_t got = inContext(path_, [&] { return file_.readAt(offset, into); });
    if (got < into.size()) throwOtherBytes();
  }

  // From `first` up to, but not including, `end`.
  bool bytesMatch(std::int64_t first, std::int64_t end) {
    for (; first < end; first += sliceSize) {
      const std::int64_t length = std::min(sliceSize, end - first);
      const auto bytes = copy_.view(first, length);
      if (std::memcmp(bytes.data(), planned_.view(first, length).data(), bytes.size()) != 0) return false;
    }
    return true;
  }

  bool segmentMatches(const Segment& segment, std::int64_t start) {
    for (std::int64_t row = 0; row < segment.rows; ++row) {
      if (!rowMatches(segment, segment.y + row, start + row * layout_.rowBytes())) return false;
    }
    return bytesMatch(start + segment.rows * layout_.rowBytes(), start + segment.storedRows * layout_.rowBytes());
  }

  bool rowMatches(const Segment& segment, std::int64_t row, std::int64_t offset) {
    const std::span<const std::byte> bytes = copy_.view(offset, layout_.rowBytes());
    if (isAllSamples(segment)) return samplesMatch({row, segment.x, segment.columns}, 0, bytes, {});
    const std::span<const std::byte> planned = planned_.view(offset, layout_.rowBytes());
    rest_.assign(planned.begin(), planned.end());
    bool matches = true;
    expected_.given.forEachRun(segment, row, [&](const SampleRun& run) {
      const std::int64_t column = run.column - segment.x;
      matches = matches && samplesMatch(run, column, bytes, planned);
      copyBits(bytes, rest_, column * format_.bits, (column + run.count) * format_.bits, format_.reversedBytes);
    });
    return matches && std::equal(rest_.begin(), rest_.end(), bytes.begin());
  }

  // Then no bit of a row is the source's.
  [[nodiscard]] bool isAllSamples(const Segment& segment) const {
    return expected_.given.all() && expected_.inverse == nullptr &&
           segment.columns * format_.bits == 8 * layout_.rowBytes();
  }

  // `column` is that of the run in the stored row `bytes`; the row as it was before is asked for with a table only.
  bool samplesMatch(const SampleRun& run, std::int64_t column, std::span<const std::byte> bytes,
                    std::span<const std::byte> before) {
    const std::span<const std::uint16_t> written = expected_.written(run);
    const std::span<const std::uint16_t> codes = unpacked(bytes, column, run.count, codes_);
    if (expected_.inverse == nullptr) return std::equal(codes.begin(), codes.end(), written.begin());
    const std::span<const std::uint16_t> old = unpacked(before, column, run.count, oldCodes_);
    for (std::size_t i = 0; i < codes.size(); ++i) {
      if (codes[i] != expected_.inverse->code(written[i], old[i])) return false;
    }
    return true;
  }

  // Unpacking starts on a group boundary.
  [[nodiscard]] std::span<const std::uint16_t> unpacked(std::span<const std::byte> row, std::int64_t column,
                                                        std::int64_t count, RawSamples& codes) const {
    const std::int64_t lead = column % SampleFormat::samplesPerGroup;
    codes.resize(static_cast<std::size_t>(lead + count));
    unpackSamples(format_, row.subspan(static_cast<std::size_t>(format_.byteCount(column - lead))), codes);
    return std::span(codes).subspan(static_cast<std::size_t>(lead));
  }

  // A table may not hold the very sample that was written; then the one that the written code stands for is right.
  bool everySampleMatches() {
    assert(expected_.given.all());
    bool matches = true;
    const auto isRight = [&](std::uint16_t read, std::uint16_t written) {
      return read == written || (expected_.inverse != nullptr && read == expected_.inverse->readBack(written));
    };
    inContext(path_, [&] {
      RawPlaneSource(file_, metadata_).forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> samples) {
        matches = matches && std::ranges::equal(samples, expected_.written(run), isRight);
      });
    });
    return matches;
  }

  const std::filesystem::path& path_;
  const InputFile& file_;
  const DNGMetadata& metadata_;
  const ExpectedCopy& expected_;
  SegmentLayout layout_;
  SampleFormat format_;
  PlannedBytes plan_;
  Slices copy_;
  Slices planned_;
  std::vector<std::byte> rest_;  // a row as planned, with the samples of the copy
  RawSamples codes_;
  RawSamples oldCodes_;
};

/// A copy that is open, with what it says of itself.
struct ReadBack {
  DNGContainer container;
  DNGMetadata metadata;
};

DNGMetadata readDescription(const DNGContainer& copy) {
  DNGMetadata metadata = parseMetadata(copy);
  SupportRules::requireSupported(metadata);
  return metadata;
}

ReadBack readBack(const std::filesystem::path& copy, const SourceImage& source, const CopyPlan& plan) {
  DNGContainer container = inContext(copy, [&] { return DNGContainer(copy); });
  DNGMetadata metadata = inContext(copy, [&] { return readDescription(container); });
  const bool isPlanned = describes(metadata, plannedMetadata(source, plan)) && container.file().size() == plan.length;
  if (!isPlanned) throwOtherBytes();
  return {std::move(container), std::move(metadata)};
}

}  // namespace

void throwOtherBytes() {
  throw DNGError::invalid("Writer re-read verification failed");
}

void requirePlannedDescription(const std::filesystem::path& copy, const SourceImage& source, const CopyPlan& plan) {
  static_cast<void>(readBack(copy, source, plan));
}

void verifyCopy(const std::filesystem::path& copy, const ExpectedCopy& expected) {
  const ReadBack read = readBack(copy, expected.source, expected.plan);
  if (!Comparison(copy, read.container, read.metadata, expected).holds()) throwOtherBytes();
}

}  // namespace tessaly
