#include "platform/ExtendedAttributes.h"

#include <sys/types.h>
#include <sys/xattr.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace tessaly {
namespace {

// Asks `call(buffer, size)` for the length, then for the bytes; one that has grown in between is left out.
template <typename Call>
std::optional<std::vector<std::byte>> answerOf(Call call) {
  const ssize_t length = call(nullptr, 0);
  if (length < 0) return std::nullopt;
  std::vector<std::byte> bytes(static_cast<std::size_t>(length));
  if (bytes.empty()) return bytes;
  const ssize_t got = call(bytes.data(), bytes.size());
  if (got < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(got));
  return bytes;
}

// One after the other, each with a zero behind it.
std::vector<std::string> namesOf(int descriptor) {
  const auto list = answerOf([descriptor](std::byte* into, std::size_t size) {
    return ::flistxattr(descriptor, reinterpret_cast<char*>(into), size);
  });
  std::vector<std::string> names;
  if (!list) return names;
  std::string_view rest(reinterpret_cast<const char*>(list->data()), list->size());
  while (!rest.empty()) {
    names.emplace_back(rest.substr(0, rest.find('\0')));
    rest.remove_prefix(std::min(names.back().size() + 1, rest.size()));
  }
  return names;
}

}  // namespace

std::vector<ExtendedAttribute> userAttributes(int descriptor) {
  std::vector<ExtendedAttribute> attributes;
  for (std::string& name : namesOf(descriptor)) {
    if (!name.starts_with("user.")) continue;
    auto value =
        answerOf([&](std::byte* into, std::size_t size) { return ::fgetxattr(descriptor, name.c_str(), into, size); });
    if (value) attributes.push_back({std::move(name), std::move(*value)});
  }
  return attributes;
}

}  // namespace tessaly
