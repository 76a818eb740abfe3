// The texts of the interface that no other program knows by their order: English (the key), Simplified Chinese, French.
//
// Placeholders stand in the same order in all three columns. French sets a no-break space before : ; ! ? and inside «
// ».
#include "localization/Localization.h"

#include <vector>

namespace tessaly::Localization {
namespace {

// clang-format off
const std::vector<Entry>& table() {
  static const std::vector<Entry> rows = {
  };
  return rows;
}
// clang-format on

}  // namespace

std::span<const Entry> additions() {
  return table();
}

}  // namespace tessaly::Localization
