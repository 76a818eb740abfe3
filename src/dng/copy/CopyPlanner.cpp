#include "dng/copy/CopyPlanner.h"

#include "dng/DNGError.h"
#include "dng/copy/DirectoryBuilder.h"
#include "dng/copy/ReencodedDirectory.h"
#include "dng/copy/SyntheticExposure.h"
#include "dng/tiff/TIFFTags.h"
#include "dng/tiff/TIFFTypes.h"

#include <utility>

namespace tessaly {
namespace {

constexpr std::int64_t uncompressed = 1;

// Offsets of classic TIFF have 32 bits; beyond them only BigTIFF, which few programs read, could hold the copy.
constexpr std::int64_t longestClassicTIFF = 4'294'967'295;

// What the program's own reader accepts, so that the verification could only fail.
constexpr std::int64_t longestReadable = 2'000'000'000;

void append(CopyPlan& plan, DirectoryImage image) {
  for (FilePatch& patch : image.patches)
    plan.patches.push_back(std::move(patch));
  plan.values.insert(plan.values.end(), image.values.begin(), image.values.end());
}

void requireLength(std::int64_t length) {
  if (length > longestClassicTIFF) throw DNGError::invalid("Classic TIFF output overflow");
  if (length > longestReadable) throw DNGError::invalid("DNG size limit (2 GB)");
}

// Reserves an even offset behind everything that is planned so far.
std::int64_t reserve(CopyPlan& plan, std::int64_t length) {
  const std::int64_t offset = evenOffset(plan.length);
  plan.length = offset + length;
  return offset;
}

// Where the pieces of one copy stand, and the directories among them.
class Planner {
 public:
  Planner(const SourceImage& source, bool reencoded, std::optional<double> exposure)
      : source_(source), little_(source.container().little()) {
    plan_.length = source.container().file().size();
    if (reencoded) planRawImage();
    if (exposure) planExposure(*exposure);
  }

  CopyPlan finish() {
    requireLength(plan_.length);
    if (rawDirectory_) buildRawDirectory();
    if (exif_) buildEXIF();
    return std::move(plan_);
  }

 private:
  void planRawImage() {
    plan_.rawSegment = reserve(plan_, 2 * source_.metadata().pixelCount());
    rawDirectory_ = reencodedDirectory(source_, *plan_.rawSegment);
    plan_.rawDirectory = reserve(plan_, rawDirectory_->length());
  }

  void planExposure(double seconds) {
    exif_ = exposureDirectory(source_.container(), seconds);
    exifOffset_ = reserve(plan_, exif_->length());
    if (firstDirectoryIsNew()) rawDirectory_->putInteger(TIFFTag::exifIFD, exifPointerType(), exifOffset_);
  }

  void buildRawDirectory() {
    const std::int64_t next = source_.container().uint(source_.rawDirectory().nextPointer, 4);
    append(plan_, rawDirectory_->build(plan_.rawDirectory, next));
    FilePatch pointer{source_.encoding().parentPointer, std::vector<std::byte>(4)};
    storeInteger(pointer.bytes, plan_.rawDirectory, little_);
    plan_.patches.push_back(std::move(pointer));
  }

  void buildEXIF() {
    append(plan_, exif_->build(exifOffset_, nextOfEXIF(source_.container())));
    if (firstDirectoryIsNew()) return;
    const std::int64_t afterTag = exifEntry().entry + 2;
    plan_.patches.push_back({afterTag, pointerRecord(exifPointerType(), exifOffset_, little_)});
  }

  [[nodiscard]] const TIFFField& exifEntry() const {
    return *source_.container().directories().front().field(TIFFTag::exifIFD);
  }

  [[nodiscard]] std::int64_t exifPointerType() const {
    return exifEntry().type == TIFFType::directory ? TIFFType::directory : TIFFType::longInteger;
  }

  // The first directory of the copy is the rewritten raw directory.
  [[nodiscard]] bool firstDirectoryIsNew() const {
    return rawDirectory_ && &source_.rawDirectory() == &source_.container().directories().front();
  }

  const SourceImage& source_;
  bool little_;
  CopyPlan plan_;
  std::optional<DirectoryBuilder> rawDirectory_;
  std::optional<DirectoryBuilder> exif_;
  std::int64_t exifOffset_ = 0;
};

}  // namespace

bool takesReencodedForm(const DNGMetadata& metadata, bool preserveEncoding) {
  const DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  const bool isOneStrip = !encoding.tileWidth && encoding.offsets.size() == 1;
  return !preserveEncoding && metadata.compression == uncompressed && isOneStrip && !encoding.linearization.empty();
}

CopyPlan planCopy(const SourceImage& source, bool reencoded, std::optional<double> exposure) {
  return Planner(source, reencoded, exposure).finish();
}

DNGMetadata plannedMetadata(const SourceImage& source, const CopyPlan& plan) {
  DNGMetadata metadata = source.metadata();
  if (!plan.rawSegment) return metadata;
  metadata.bitsPerSample = 16;
  metadata.packing = RawPacking::littleEndian16;
  metadata.rowsPerStrip = metadata.rawHeight;
  metadata.rawOffset = static_cast<std::uint64_t>(*plan.rawSegment);
  metadata.rawByteCount = 2 * metadata.pixelCount();
  DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  encoding.ifdOffset = plan.rawDirectory;
  encoding.offsets = {*plan.rawSegment};
  encoding.byteCounts = {metadata.rawByteCount};
  encoding.fillOrder = 1;
  encoding.linearization.clear();
  encoding.whiteLevels = {metadata.whiteLevel};
  return metadata;
}

}  // namespace tessaly
