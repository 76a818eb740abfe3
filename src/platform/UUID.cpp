#include "platform/UUID.h"

#include <uuid/uuid.h>

namespace tessaly {

UUID UUID::random() {
  UUID made;
  uuid_generate_random(made.bytes.data());
  return made;
}

std::optional<UUID> UUID::parse(std::string_view text) {
  UUID parsed;
  if (uuid_parse_range(text.data(), text.data() + text.size(), parsed.bytes.data()) != 0) {
    return std::nullopt;
  }
  return parsed;
}

std::string UUID::text() const {
  std::array<char, UUID_STR_LEN> buffer{};
  uuid_unparse_upper(bytes.data(), buffer.data());
  return buffer.data();
}

}  // namespace tessaly
