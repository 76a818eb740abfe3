#include "presentation/CandidateTexts.h"

#include "calibration/review/PartialColumn.h"
#include "localization/Shown.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>

namespace tessaly::CandidateTexts {
namespace {

std::string range(std::int64_t first, std::int64_t last) {
  return first == last ? fmt::format("{}", first) : fmt::format("{}–{}", first, last);
}

std::string radius(const CalibrationCandidate& spot) {
  return spot.radiusX == spot.radiusY ? fmt::format("{}", spot.radiusX)
                                      : fmt::format("{} × {}", spot.radiusX, spot.radiusY);
}

}  // namespace

Kind kindOf(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  switch (candidate.kind) {
    case CandidateKind::pixel:
      return Kind::pixel;
    case CandidateKind::spot:
      return Kind::fixedSpot;
    case CandidateKind::line:
      break;
  }
  return CandidateSelection::isPartialColumn(candidate, metadata) ? Kind::partialColumn : Kind::column;
}

std::string_view name(Kind kind) {
#define TESSALY_NAME(kind, name) name,
  static constexpr std::array<std::string_view, kinds.size()> names{TESSALY_SHOWN_KINDS(TESSALY_NAME)};
#undef TESSALY_NAME
  return names[static_cast<std::size_t>(kind)];
}

std::string kind(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return Localization::shownText(name(kindOf(candidate, metadata)));
}

std::string position(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  const std::int64_t x = candidate.x - metadata.activeX;
  const std::int64_t y = candidate.yStart - metadata.activeY;
  std::string columns = "x " + range(x, x + candidate.width - 1);
  switch (kindOf(candidate, metadata)) {
    case Kind::pixel:
      return fmt::format("{}, {}", x, y);
    case Kind::column:
      return columns;
    case Kind::partialColumn:
      return columns + ", y " + range(y, candidate.yEnd - metadata.activeY);
    case Kind::fixedSpot:
      break;
  }
  return fmt::format("{}, {}  r {}", x, y, radius(candidate));
}

std::string confidence(const CalibrationCandidate& candidate) {
  return fmt::format("{} %", std::lround(candidate.confidence * 100));
}

std::string reason(const CalibrationCandidate& candidate) {
  const Localization::ShownWording shown;
  return Localization::composedText(candidate.reason);
}

}  // namespace tessaly::CandidateTexts
