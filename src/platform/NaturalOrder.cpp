#include "platform/NaturalOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <stdexcept>

namespace tessaly {
namespace {

void require(UErrorCode error, const char* step) {
  if (U_FAILURE(error)) throw std::runtime_error(std::string("Natural order: ") + step + ": " + u_errorName(error));
}

// ICU counts bytes in 32 bits; a file name has at most 255.
icu::StringPiece piece(std::string_view text) {
  assert(text.size() <= INT32_MAX);
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

}  // namespace

struct NaturalOrder::Implementation {
  /// Made at the first comparison: its tables are read from ICU's data, a millisecond that one name alone never needs.
  const icu::Collator& collator() {
    if (!made) {
      UErrorCode error = U_ZERO_ERROR;
      made.reset(icu::Collator::createInstance(icu::Locale::getRoot(), error));
      require(error, "collator");
      made->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, error);
      made->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, error);
      require(error, "attributes");
    }
    return *made;
  }

  std::unique_ptr<icu::Collator> made;
};

NaturalOrder::NaturalOrder() : implementation_(std::make_unique<Implementation>()) {}

NaturalOrder::~NaturalOrder() = default;

int NaturalOrder::compare(std::string_view left, std::string_view right) const {
  UErrorCode error = U_ZERO_ERROR;
  const UCollationResult result = implementation_->collator().compareUTF8(piece(left), piece(right), error);
  require(error, "comparison");
  return result != UCOL_EQUAL ? static_cast<int>(result) : left.compare(right);
}

void sortByFileName(std::vector<std::filesystem::path>& paths) {
  const NaturalOrder order;
  std::stable_sort(paths.begin(), paths.end(), [&order](const auto& left, const auto& right) {
    return order.compare(left.filename().native(), right.filename().native()) < 0;
  });
}

}  // namespace tessaly
