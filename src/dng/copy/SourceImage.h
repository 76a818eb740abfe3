// A source DNG that is open for repair: its container, its raw directory and its metadata, all read from one open file.
// Another file that takes the source's name meanwhile is never mixed in.
//
// Not copyable: it owns the open file. Used by one thread at a time.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/tiff/DNGContainer.h"

#include <filesystem>

namespace tessaly {

class SourceImage {
 public:
  /// Opens and describes the file. Errors of the container leave as they are, those of the metadata as
  /// DNGError::Case::file, so that both read like the errors of DNGContainer and DNGReader::readMetadata.
  explicit SourceImage(std::filesystem::path url);
  SourceImage(const SourceImage&) = delete;
  SourceImage& operator=(const SourceImage&) = delete;

  [[nodiscard]] const std::filesystem::path& url() const { return url_; }
  [[nodiscard]] const DNGContainer& container() const { return container_; }
  [[nodiscard]] const TIFFDirectory& rawDirectory() const { return rawDirectory_; }
  [[nodiscard]] const DNGMetadata& metadata() const { return metadata_; }

  /// How the raw image is stored.
  [[nodiscard]] const DNGSourceEncoding& encoding() const { return *metadata_.sourceEncoding; }

 private:
  std::filesystem::path url_;
  DNGContainer container_;
  const TIFFDirectory& rawDirectory_;
  DNGMetadata metadata_;
};

}  // namespace tessaly
