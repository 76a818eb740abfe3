#include "cli/CopyNames.h"

#include "platform/SameEntry.h"
#include "platform/Text.h"

#include <algorithm>
#include <string>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

/// From this length on the stem of a numbered copy may have been shortened to make room for its number.
constexpr std::size_t longName = 240;

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Whether `name` is "stem-2.ext" for the source "stem.ext", with any number.
bool isNumbered(const fs::path& name, const fs::path& source) {
  if (name.extension() != source.extension()) return false;
  const std::string numbered = name.stem();
  const std::string stem = source.stem();
  const auto digits = std::find_if_not(numbered.rbegin(), numbered.rend(), isDigit);
  if (digits == numbered.rbegin() || digits == numbered.rend() || *digits != '-') return false;
  const std::string before(numbered.begin(), digits.base() - 1);
  return before == stem || (name.native().size() >= longName && stem.starts_with(before));
}

}  // namespace

bool isNameOfCopy(const fs::path& path, const fs::path& folder, const std::vector<fs::path>& sources) {
  const fs::path name = lowerCased(path.filename().native());
  const auto isTaken = [&name](const fs::path& source) {
    const fs::path copy = lowerCased(source.filename().native());
    return name == copy || isNumbered(name, copy);
  };
  return std::any_of(sources.begin(), sources.end(), isTaken) && isSameEntry(fs::absolute(path).parent_path(), folder);
}

}  // namespace tessaly::cli
