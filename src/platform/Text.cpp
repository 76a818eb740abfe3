#include "platform/Text.h"

#include <fmt/format.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cassert>
#include <cstdint>
#include <cstring>
#include <new>
#include <system_error>

namespace tessaly {
namespace {

// ICU counts bytes in 32 bits; no text of this program comes near that.
std::int32_t length32(std::string_view text) {
  assert(text.size() <= INT32_MAX);
  return static_cast<std::int32_t>(text.size());
}

// The code point at `position`, which moves past it; negative for bytes that are not UTF-8.
UChar32 takeCharacter(std::string_view text, std::int32_t& position) {
  const std::int32_t length = length32(text);
  UChar32 character = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside ICU's macro
  U8_NEXT(text.data(), position, length, character);
#pragma GCC diagnostic pop
  return character;
}

// The length of the part that is UTF-8 from `start` on.
std::int32_t validLength(std::string_view bytes, std::int32_t start) {
  const std::int32_t length = length32(bytes);
  std::int32_t end = start;
  for (std::int32_t next = start; next < length; end = next) {
    if (takeCharacter(bytes, next) < 0) break;
  }
  return end - start;
}

std::int32_t leadingWhiteSpace(std::string_view text) {
  const std::int32_t length = length32(text);
  std::int32_t start = 0;
  for (std::int32_t next = 0; next < length; start = next) {
    if (!u_isUWhiteSpace(takeCharacter(text, next))) break;
  }
  return start;
}

std::int32_t withoutTrailingWhiteSpace(std::string_view text) {
  std::int32_t end = length32(text);
  for (std::int32_t previous = end; previous > 0; end = previous) {
    UChar32 character = 0;
    U8_PREV(text.data(), 0, previous, character);
    if (!u_isUWhiteSpace(character)) break;
  }
  return end;
}

void appendLowerCased(std::string_view valid, std::string& lowered) {
  icu::StringByteSink<std::string> sink(&lowered);
  UErrorCode error = U_ZERO_ERROR;
  icu::CaseMap::utf8ToLower("", 0, icu::StringPiece(valid.data(), length32(valid)), sink, nullptr, error);
  if (U_FAILURE(error)) throw std::bad_alloc();  // the only way lower-casing UTF-8 fails
}

std::filesystem::path lastComponent(const std::filesystem::path& path) {
  if (path.has_filename()) return path.filename();
  return path.has_relative_path() ? lastComponent(path.parent_path()) : path.root_directory();
}

}  // namespace

std::string displayText(std::string_view bytes) {
  std::string text;
  icu::UnicodeString::fromUTF8(icu::StringPiece(bytes.data(), length32(bytes))).toUTF8String(text);
  return text;
}

std::string displayName(const std::filesystem::path& path) {
  return displayText(lastComponent(path).native());
}

bool isValidUTF8(std::string_view bytes) {
  return validLength(bytes, 0) == length32(bytes);
}

std::string trimmed(std::string_view text) {
  const std::int32_t end = withoutTrailingWhiteSpace(text);
  const std::string_view head = text.substr(0, static_cast<std::size_t>(end));
  return std::string(head.substr(static_cast<std::size_t>(leadingWhiteSpace(head))));
}

std::string lowerCased(std::string_view bytes) {
  std::string lowered;
  std::int32_t position = 0;
  while (position < length32(bytes)) {
    const std::int32_t valid = validLength(bytes, position);
    const auto start = static_cast<std::size_t>(position);
    appendLowerCased(bytes.substr(start, static_cast<std::size_t>(valid)), lowered);
    position += valid;
    if (position < length32(bytes)) lowered += bytes[static_cast<std::size_t>(position++)];
  }
  return lowered;
}

std::string lowerCasedExtension(const std::filesystem::path& path) {
  const std::string extension = lastComponent(path).extension().native();
  return extension.empty() ? extension : lowerCased(std::string_view(extension).substr(1));
}

std::string systemMessage(int errorNumber) {
  const char* const words = strerrordesc_np(errorNumber);
  return words != nullptr ? std::string(words) : fmt::format("Unknown error {}", errorNumber);
}

std::string exceptionMessage(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return systemMessage(ENOMEM);
  if (const auto* system = dynamic_cast<const std::system_error*>(&error)) {
    const std::error_category& category = system->code().category();
    const bool isErrorNumber = category == std::generic_category() || category == std::system_category();
    if (isErrorNumber) return systemMessage(system->code().value());
  }
  return error.what();
}

}  // namespace tessaly
