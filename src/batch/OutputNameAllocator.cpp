#include "batch/OutputNameAllocator.h"

#include "platform/Text.h"

#include <fmt/format.h>

#include <cstdint>
#include <string_view>

namespace tessaly {

namespace {

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

std::string numbered(const NameParts& parts, std::int64_t number) {
  const std::string_view dot = parts.extension.empty() ? "" : ".";
  return fmt::format("{}-{}{}{}", parts.stem, number, dot, parts.extension);
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
