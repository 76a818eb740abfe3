#include "platform/InputFile.h"
#include "profile/CameraProfileJSON.h"

namespace tessaly {

CameraProfile readProfile(const std::filesystem::path& path) {
  const InputFile file(path);
  if (!file.isRegular()) throw ProfileDecodingError("Not a regular file");
  if (file.size() > maximumProfileFileSize) throw ProfileDecodingError("The file is too large for a profile");
  std::string text(static_cast<std::size_t>(file.size()), '\0');
  text.resize(file.readAt(0, std::as_writable_bytes(std::span(text))));
  return decodeProfile(text);
}

}  // namespace tessaly
