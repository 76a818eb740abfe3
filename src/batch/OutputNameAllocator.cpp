#include "batch/OutputNameAllocator.h"

#include "platform/Text.h"

#include <fmt/format.h>
#include <limits.h>

#include <cstdint>
#include <string_view>

namespace tessaly {

namespace {

constexpr std::size_t longestName = NAME_MAX;

struct NameParts {
  std::string_view stem;
  std::string_view extension;  ///< without its dot
};

// A dot at the front begins no extension: of ".dng" everything is stem.
NameParts split(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {name, {}};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// At most so many bytes of the text, without a part of a character at the end.
std::string_view shortened(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && continuesCharacter(text[most]))
    --most;
  return text.substr(0, most);
}

/// A stem that leaves no room for itself stays: the file system shall say why it refuses the name.
std::string numbered(const NameParts& parts, std::int64_t number) {
  const std::string_view dot = parts.extension.empty() ? "" : ".";
  const std::string ending = fmt::format("-{}{}{}", number, dot, parts.extension);
  const bool hasRoom = ending.size() < longestName;
  const std::string_view stem = hasRoom ? shortened(parts.stem, longestName - ending.size()) : parts.stem;
  return std::string(stem) + ending;
}

}  // namespace

OutputNameAllocator::OutputNameAllocator(const std::vector<std::string>& existingNames) {
  for (const std::string& name : existingNames)
    reserved_.insert(lowerCased(name));
}

std::optional<std::string> OutputNameAllocator::allocate(const std::string& name, ExistingOutputPolicy policy) {
  if (reserved_.insert(lowerCased(name)).second) return name;
  if (policy == ExistingOutputPolicy::skip) return std::nullopt;
  const NameParts parts = split(name);
  for (std::int64_t number = 2;; ++number) {
    std::string candidate = numbered(parts, number);
    if (reserved_.insert(lowerCased(candidate)).second) return candidate;
  }
}

}  // namespace tessaly
