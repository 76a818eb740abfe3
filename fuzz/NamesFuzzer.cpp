// Any bytes as the names in a folder, one a line: every copy gets a name of its own that nothing bears, a row of the
// log can be taken apart again, and what is shown holds nothing that a terminal obeys.
#include "batch/OutputNameAllocator.h"
#include "batch/RepairLog.h"
#include "fuzz/FuzzFile.h"
#include "platform/Text.h"
#include "platform/VisibleText.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace tessaly;

std::vector<std::string> namesIn(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> names(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == '\n') {
      names.emplace_back();
    } else if (data[i] != 0 && data[i] != '/') {
      names.back() += static_cast<char>(data[i]);
    }
  }
  std::erase_if(names, [](const std::string& name) { return name.empty() || name.size() > 255; });
  return names;
}

void requireOwnNames(const std::vector<std::string>& names, ExistingOutputPolicy policy) {
  const std::size_t there = names.size() / 2;
  const std::vector<std::string> existing(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(there));
  OutputNameAllocator allocator(existing);
  std::set<std::string> taken;
  for (const std::string& name : existing)
    taken.insert(lowerCased(name));
  for (std::size_t i = there; i < names.size(); ++i) {
    const auto name = allocator.allocate(names[i], policy);
    fuzz::require(name || policy == ExistingOutputPolicy::skip);
    if (name) fuzz::require(taken.insert(lowerCased(*name)).second && name->find('/') == std::string::npos);
  }
}

void requireRow(const std::string& name) {
  BatchFileOutcome outcome;
  outcome.source = name;
  outcome.details = name;
  const std::string row = RepairLog::row(outcome);
  fuzz::require(std::ranges::count(row, '"') % 2 == 0 && isValidUTF8(displayText(row)));
}

void requireVisible(const std::string& name) {
  const std::string shown = visibleText(name);
  fuzz::require(isValidUTF8(shown) && visibleText(shown) == shown);
  fuzz::require(std::ranges::none_of(shown, [](char byte) { return static_cast<unsigned char>(byte) < 0x20; }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> names = namesIn(data, size);
  requireOwnNames(names, ExistingOutputPolicy::skip);
  requireOwnNames(names, ExistingOutputPolicy::numberedCopy);
  for (const std::string& name : names) {
    requireRow(name);
    requireVisible(name);
  }
  return 0;
}
