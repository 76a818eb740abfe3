#include "calibration/second/Confirmation.h"

#include "calibration/CalibrationSentences.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

namespace tessaly::second {
namespace {

using Kind = CalibrationCandidate::Kind;
using Finder = SecondOpinionFinding::Finder;

constexpr double sharedRows = 0.7;

double confidence(double evidence, double threshold) {
  return std::min(0.5 + 0.45 * (1 - std::exp(-(evidence - threshold) / threshold)), 0.95);
}

double shared(std::int64_t first, std::int64_t last, std::int64_t otherFirst, std::int64_t otherLast) {
  const std::int64_t rows = std::min(last, otherLast) - std::max(first, otherFirst) + 1;
  const std::int64_t longer = std::max(last - first, otherLast - otherFirst) + 1;
  return static_cast<double>(rows) / static_cast<double>(longer);
}

/// Adjacent columns that depart together.
struct Line {
  FoundColumn strongest;
  std::int64_t x = 0;
  std::int64_t width = 1;
  bool isDark = false;
};

void appendLines(const std::vector<FoundColumn>& columns, bool isDark, std::vector<Line>& lines) {
  bool isFirst = true;
  for (const FoundColumn& column : columns) {
    Line* last = isFirst ? nullptr : &lines.back();
    isFirst = false;
    const bool continues =
        last != nullptr && last->x + last->width == column.x && last->strongest.mean * column.mean > 0 &&
        shared(last->strongest.firstRow, last->strongest.lastRow, column.firstRow, column.lastRow) > sharedRows;
    if (!continues) {
      lines.push_back({column, column.x, 1, isDark});
      continue;
    }
    ++last->width;
    if (column.score > last->strongest.score) last->strongest = column;
  }
}

bool overlaps(const Line& line, const Line& other) {
  return line.x < other.x + other.width && other.x < line.x + line.width;
}

/// What dark and bright frames both show stays as the stronger evidence tells it.
std::vector<Line> linesOf(const Found& found) {
  std::vector<Line> all;
  appendLines(found.darkLines, true, all);
  appendLines(found.brightLines, false, all);
  std::stable_sort(all.begin(), all.end(),
                   [](const Line& left, const Line& right) { return left.strongest.score > right.strongest.score; });
  std::vector<Line> kept;
  for (const Line& line : all) {
    const bool isNew = std::none_of(kept.begin(), kept.end(), [&](const Line& other) { return overlaps(line, other); });
    if (isNew) kept.push_back(line);
  }
  return kept;
}

/// Makes records.
class Recorder {
 public:
  explicit Recorder(const DNGMetadata& metadata) : metadata_(metadata) {}

  void line(const Line& line) {
    const FoundColumn& column = line.strongest;
    CalibrationCandidate record = candidate(Kind::line, line.x, column.firstRow, column.lastRow);
    record.width = line.width;
    record.evidenceSigma = column.score;
    record.reason = lineReason(line);
    const double effect = column.mean / (line.isDark ? unitQuanta : lightQuanta);
    add(column.isWhole ? Finder::column : Finder::run, std::move(record), {column.score, effect}, lineThreshold);
  }

  void shadow(const Shadow& shadow) {
    const std::int64_t row = std::llround(shadow.y);
    CalibrationCandidate record = candidate(Kind::spot, std::llround(shadow.x), row, row);
    record.radiusX = std::llround(shadow.radiusX);
    record.radiusY = std::llround(shadow.radiusY);
    record.reason = CandidateReasons::softShadow(shadow.depth * 100, shadow.evidence);
    add(Finder::shadow, std::move(record), {shadow.evidence, shadow.depth}, shadowThreshold);
  }

  void point(Finder finder, const PointPlace& place) {
    CalibrationCandidate record = candidate(Kind::pixel, place.x, place.y, place.y);
    record.reason = pointReason(finder, place);
    add(finder, std::move(record), {place.evidence, place.effect}, pointThreshold);
  }

  [[nodiscard]] std::vector<SecondOpinionFinding> all() && { return std::move(all_); }

 private:
  struct Strength {
    double evidence = 0;
    double effect = 0;
  };

  static std::string lineReason(const Line& line) {
    using namespace CandidateReasons;
    const FoundColumn& column = line.strongest;
    if (line.isDark) {
      const double u = column.mean / unitQuanta;
      return column.isWhole ? weakColumn(u, column.score) : weakPartialColumn(u, column.score);
    }
    const double percent = column.mean / (lightQuanta / 100.0);
    return column.isWhole ? weakColumnInLight(percent, column.score) : weakPartialColumnInLight(percent, column.score);
  }

  static std::string pointReason(Finder finder, const PointPlace& place) {
    using namespace CandidateReasons;
    if (finder == Finder::dim) return oddResponse(place.effect * 100, place.evidence);
    if (finder == Finder::warm) return warmPixel(place.effect, place.evidence);
    return unsteadyPixel(place.effect, place.evidence);
  }

  [[nodiscard]] CalibrationCandidate candidate(Kind kind, std::int64_t x, std::int64_t first, std::int64_t last) const {
    CalibrationCandidate record;
    record.id = UUID::random();
    record.kind = kind;
    record.x = metadata_.activeX + x;
    record.yStart = metadata_.activeY + first;
    record.yEnd = metadata_.activeY + last;
    return record;
  }

  void add(Finder finder, CalibrationCandidate record, const Strength& strength, double threshold) {
    record.confidence = confidence(strength.evidence, threshold);
    all_.push_back({finder, std::move(record), strength.evidence, strength.effect});
  }

  const DNGMetadata& metadata_;
  std::vector<SecondOpinionFinding> all_;
};

bool isOn(const PointPlace& place, const std::vector<Line>& lines) {
  return std::any_of(lines.begin(), lines.end(), [&](const Line& line) {
    return place.x >= line.x && place.x < line.x + line.width && place.y >= line.strongest.firstRow &&
           place.y <= line.strongest.lastRow;
  });
}

bool isIn(const PointPlace& place, const std::vector<Shadow>& shadows) {
  return std::any_of(shadows.begin(), shadows.end(), [&](const Shadow& shadow) {
    return shadow.contains(static_cast<double>(place.x), static_cast<double>(place.y));
  });
}

/// The order in which a photosite that several finders saw is told: by the strongest.
void recordPoints(const Found& found, const std::vector<Line>& lines, Recorder& recorder) {
  std::vector<std::pair<Finder, PointPlace>> all;
  for (const PointPlace& place : found.dim)
    if (!isIn(place, found.shadows)) all.emplace_back(Finder::dim, place);
  for (const PointPlace& place : found.warm)
    all.emplace_back(Finder::warm, place);
  for (const PointPlace& place : found.unsteady)
    all.emplace_back(Finder::unsteady, place);
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& left, const auto& right) { return left.second.evidence > right.second.evidence; });
  std::set<std::pair<std::int64_t, std::int64_t>> told;
  for (const auto& [finder, place] : all)
    if (!isOn(place, lines) && told.emplace(place.x, place.y).second) recorder.point(finder, place);
}

int rank(Kind kind) {
  if (kind == Kind::line) return 0;
  return kind == Kind::spot ? 1 : 2;
}

bool comesBefore(const SecondOpinionFinding& left, const SecondOpinionFinding& right) {
  const auto key = [](const SecondOpinionFinding& finding) {
    return std::tuple(rank(finding.candidate.kind), -finding.evidence, finding.candidate.x, finding.candidate.yStart);
  };
  return key(left) < key(right);
}

bool confirmsLine(const CalibrationCandidate& line, const CalibrationCandidate& found) {
  return found.kind == Kind::line && found.x < line.x + line.width && line.x < found.x + found.width &&
         shared(line.yStart, line.yEnd, found.yStart, found.yEnd) > sharedRows;
}

bool confirmsSpot(const CalibrationCandidate& spot, const CalibrationCandidate& found) {
  if (found.kind != Kind::spot) return false;
  const double across =
      static_cast<double>(found.x - spot.x) / static_cast<double>(std::max<std::int64_t>(spot.radiusX, 1));
  const double down =
      static_cast<double>(found.yStart - spot.yStart) / static_cast<double>(std::max<std::int64_t>(spot.radiusY, 1));
  return across * across + down * down <= 1;
}

using Photosites = std::set<std::pair<std::int64_t, std::int64_t>>;

/// By active coordinates.
Photosites photosites(const Found& found) {
  Photosites all;
  for (const PointPlaces* places : {&found.dim, &found.warm, &found.unsteady}) {
    for (const PointPlace& place : *places)
      all.emplace(place.x, place.y);
  }
  return all;
}

}  // namespace

std::vector<SecondOpinionFinding> findings(const Found& found, const DNGMetadata& metadata) {
  Recorder recorder(metadata);
  const std::vector<Line> lines = linesOf(found);
  for (const Line& line : lines)
    recorder.line(line);
  for (const Shadow& shadow : found.shadows)
    recorder.shadow(shadow);
  recordPoints(found, lines, recorder);
  std::vector<SecondOpinionFinding> all = std::move(recorder).all();
  std::sort(all.begin(), all.end(), comesBefore);
  return all;
}

bool isSameDefect(const CalibrationCandidate& documented, const CalibrationCandidate& found) {
  switch (documented.kind) {
    case Kind::line:
      return confirmsLine(documented, found);
    case Kind::spot:
      return confirmsSpot(documented, found);
    case Kind::pixel:
      break;
  }
  return found.kind == Kind::pixel && found.x == documented.x && found.yStart == documented.yStart;
}

std::vector<std::optional<bool>> confirmations(std::span<const CalibrationCandidate> documented, const Found& found,
                                               std::span<const SecondOpinionFinding> findings,
                                               const DNGMetadata& metadata, const Decides& decides) {
  const Photosites pixels = photosites(found);
  std::vector<std::optional<bool>> result;
  for (const CalibrationCandidate& candidate : documented) {
    const std::int64_t x = candidate.x - metadata.activeX;
    const std::int64_t y = (candidate.yStart + candidate.yEnd) / 2 - metadata.activeY;
    const bool isConfirmed = candidate.kind == Kind::pixel
                                 ? pixels.contains({x, y})
                                 : std::any_of(findings.begin(), findings.end(), [&](const auto& finding) {
                                     return isSameDefect(candidate, finding.candidate);
                                   });
    result.push_back(decides(candidate.kind, x, y) ? std::optional(isConfirmed) : std::nullopt);
  }
  return result;
}

}  // namespace tessaly::second
