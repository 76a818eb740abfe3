#include "presentation/DuplicateColumns.h"

#include "localization/Localization.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace tessaly::DuplicateColumns {
namespace {

/// Columns and rows, the ends included.
struct Range {
  std::int64_t x = 0;
  std::int64_t xEnd = 0;
  std::int64_t yStart = 0;
  std::int64_t yEnd = 0;

  bool operator==(const Range&) const = default;

  [[nodiscard]] bool contains(const Range& other) const {
    return x <= other.x && other.xEnd <= xEnd && yStart <= other.yStart && other.yEnd <= yEnd;
  }
};

/// What a candidate and a profile's line have in common.
template <typename Line>
Range rangeOf(const Line& line) {
  return {line.x, line.x + line.width - 1, line.yStart, line.yEnd};
}

/// For each range the first column of a full one around it.
std::vector<std::optional<std::int64_t>> surroundingColumns(const std::vector<Range>& ranges, std::int64_t firstRow) {
  std::vector<std::optional<std::int64_t>> columns(ranges.size());
  for (std::size_t inner = 0; inner < ranges.size(); ++inner) {
    for (std::size_t outer = 0; outer < ranges.size() && !columns[inner]; ++outer) {
      const bool isFull = ranges[outer].yStart <= firstRow;
      const bool isTheSame = ranges[outer] == ranges[inner] && outer >= inner;
      if (isFull && !isTheSame && ranges[outer].contains(ranges[inner])) columns[inner] = ranges[outer].x;
    }
  }
  return columns;
}

}  // namespace

std::map<UUID, std::int64_t> linesInsideColumns(const std::vector<CalibrationCandidate>& candidates,
                                                const DNGMetadata& metadata) {
  std::vector<UUID> ids;
  std::vector<Range> ranges;
  for (const CalibrationCandidate& candidate : candidates) {
    if (candidate.kind != CalibrationCandidate::Kind::line) continue;
    ids.push_back(candidate.id);
    ranges.push_back(rangeOf(candidate));
  }
  const auto columns = surroundingColumns(ranges, metadata.activeY);
  std::map<UUID, std::int64_t> inside;
  for (std::size_t line = 0; line < ids.size(); ++line) {
    if (columns[line]) inside.emplace(ids[line], *columns[line]);
  }
  return inside;
}

std::int64_t linesInsideColumns(const CameraProfile& profile) {
  std::vector<Range> ranges;
  for (const DefectLine& line : profile.lines)
    ranges.push_back(rangeOf(line));
  const auto columns = surroundingColumns(ranges, profile.activeY);
  return std::count_if(columns.begin(), columns.end(), [](const auto& column) { return column.has_value(); });
}

std::int64_t count(const CalibrationResult& result) {
  return static_cast<std::int64_t>(linesInsideColumns(result.candidates, result.metadata).size());
}

std::string mark(std::int64_t column, const DNGMetadata& metadata) {
  return LF("inside the full column at x %d", {column - metadata.activeX});
}

std::string sentence(std::int64_t count) {
  if (count == 0) return "";
  return count == 1 ? L("One column lies inside another.") : LF("%d columns lie inside others.", {count});
}

std::string behind(const std::string& text, std::string_view gap, std::int64_t count) {
  if (count == 0) return text;
  const bool isJoined = gap == " " && Localization::language() == AppLanguage::chinese;
  return text + std::string(isJoined ? "" : gap) + sentence(count);
}

}  // namespace tessaly::DuplicateColumns
