// Makes DNG files for tests, benchmarks, fuzzing seeds and the sample set. It shares no code with the reader or the
// writer, so that neither can hide the other's mistakes.
//
//   DNGBuilder().size(64, 48).bits(12).tiles(32, 16).bigEndian().cfa("GRBG").samples(values).write(path);
//
// Whatever is not said is the plainest valid DNG: little-endian, 8 × 6 samples of 16 bits, RGGB, one strip, the raw
// image in the first directory, samples 0, UniqueCameraModel "Tessaly Test Camera", no levels, no serial, no EXIF. A
// builder is a value; each call returns it for chaining. Where a call and a generated entry disagree, the call wins:
// rawTag(256, …) changes the width that the file claims and nothing else. Impossible samples throw
// std::invalid_argument.
#pragma once

#include "tools/SegmentPacker.h"
#include "tools/TIFFLayout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tools {

class DNGBuilder {
 public:
  DNGBuilder& littleEndian();
  DNGBuilder& bigEndian();

  DNGBuilder& size(std::int64_t width, std::int64_t height);
  DNGBuilder& bits(int bitsPerSample);
  DNGBuilder& fillOrder(int order);  ///< writes the tag too, 1 as well
  DNGBuilder& strips(std::int64_t rowsPerStrip);
  DNGBuilder& tiles(std::int64_t width, std::int64_t height);

  DNGBuilder& cfa(const std::string& colours);             ///< four letters of R, G and B, row after row
  DNGBuilder& linear(std::int64_t photometric = 34892);    ///< no mosaic
  DNGBuilder& samples(std::vector<std::uint16_t> values);  ///< stored codes, before any linearization; row after row
  DNGBuilder& linearization(const std::vector<std::uint16_t>& table);

  DNGBuilder& black(std::int64_t level);
  DNGBuilder& white(std::int64_t level);
  DNGBuilder& activeArea(std::int64_t top, std::int64_t left, std::int64_t bottom, std::int64_t right);
  DNGBuilder& crop(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height);

  /// AsShotNeutral: what a white surface gives in the raw image; red, green, blue.
  DNGBuilder& neutral(const std::array<double, 3>& white);
  /// ColorMatrix1, row after row, and the illuminant (a light source as Exif numbers them) for which it holds.
  DNGBuilder& colourMatrix(const std::array<double, 9>& fromXYZ, int illuminant);

  DNGBuilder& make(const std::string& text);
  DNGBuilder& model(const std::string& text);        ///< Model
  DNGBuilder& uniqueModel(const std::string& text);  ///< UniqueCameraModel
  DNGBuilder& serial(const std::string& text);       ///< CameraSerialNumber of the first directory
  DNGBuilder& exif(std::optional<std::int64_t> iso, std::optional<std::pair<std::int64_t, std::int64_t>> exposure,
                   std::optional<std::string> bodySerial = std::nullopt);  ///< exposure as numerator, denominator

  DNGBuilder& fNumber(double aperture);  ///< in tenths, beside exif()

  /// Puts the raw image into a SubIFD behind a first directory with a small RGB preview.
  DNGBuilder& inSubIFD();

  /// Sets (or replaces) an entry of the raw directory / first directory / EXIF directory. Where the raw image is in
  /// the first directory the first two are the same.
  DNGBuilder& rawTag(int tag, TIFFValues values);
  DNGBuilder& firstTag(int tag, TIFFValues values);
  DNGBuilder& exifTag(int tag, TIFFValues values);
  DNGBuilder& rawText(int tag, const std::string& text);
  DNGBuilder& firstText(int tag, const std::string& text);
  DNGBuilder& withoutRawTag(int tag);
  DNGBuilder& withoutFirstTag(int tag);

  /// Fills padding bits of rows, padding samples of tiles, gaps and the tail with this byte instead of zero.
  DNGBuilder& paddingByte(std::uint8_t value);
  DNGBuilder& gapBetweenSegments(std::int64_t bytes);
  DNGBuilder& segmentsInReverseOrder();  ///< the last strip or tile comes first in the file
  DNGBuilder& trailingBytes(std::int64_t bytes);

  [[nodiscard]] std::vector<std::byte> build() const;
  /// The file offset of each strip or tile in what build() returns.
  [[nodiscard]] std::vector<std::int64_t> segmentOffsets() const;
  void write(const std::filesystem::path& path) const;

 private:
  /// Where in the file each thing stands that an entry points to.
  struct Places {
    std::int64_t rawDirectory = 0;
    std::int64_t exifDirectory = 0;
    std::int64_t preview = 0;
    std::vector<std::int64_t> segments;
  };

  /// The three directories; without a SubIFD the raw entries are in `first` and `raw` is empty.
  struct Directories {
    TIFFEntries first;
    TIFFEntries raw;
    TIFFEntries exif;
  };

  [[nodiscard]] SegmentLayout segmentLayout() const;
  [[nodiscard]] TIFFEntries segmentEntries(const Places& places) const;
  [[nodiscard]] TIFFEntries imageEntries(const Places& places) const;
  [[nodiscard]] TIFFEntries cameraEntries(const Places& places) const;
  [[nodiscard]] Directories directories(const Places& places) const;
  [[nodiscard]] Places places() const;
  void requireSamplesThatFit() const;
  void appendSegments(Bytes& file, const Places& places) const;

  bool littleEndian_ = true;
  bool inSubIFD_ = false;
  bool segmentsInReverseOrder_ = false;
  std::int64_t gap_ = 0;
  std::int64_t trailing_ = 0;
  SegmentLayout layout_;
  std::int64_t rowsPerStrip_ = 0;  ///< 0: the whole height
  std::vector<std::uint16_t> samples_;
  TIFFEntries rawTags_;
  TIFFEntries firstTags_;
  TIFFEntries exifTags_;
  std::set<int> withoutRawTags_;
  std::set<int> withoutFirstTags_;
};

/// Writes bytes to a file, replacing it; throws std::runtime_error.
void writeBytes(const std::filesystem::path& path, const std::vector<std::byte>& bytes);

}  // namespace tessaly::tools
