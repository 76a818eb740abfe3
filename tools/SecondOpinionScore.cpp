#include "tools/SecondOpinionScore.h"

#include "calibration/CalibrationEngine.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace tessaly::tools {
namespace {

using Kind = CalibrationCandidate::Kind;
using Finder = SecondOpinionFinding::Finder;

constexpr double warmByNature = 4;   // electrons a second
constexpr double noisyByNature = 2;  // times the usual
constexpr double sharedRows = 0.75;

std::string nameOf(Finder finder) {
  constexpr std::array<const char*, 6> names{"dim", "warm", "unsteady", "column", "run", "shadow"};
  return names.at(static_cast<std::size_t>(finder));
}

/// "kind, from … to" for the interval of strengths that a strength falls into.
std::string interval(const std::string& kind, double strength, const std::vector<double>& bounds) {
  const auto next = std::upper_bound(bounds.begin(), bounds.end(), strength);
  const std::string from = next == bounds.begin() ? "below" : fmt::format("{:8g} …", *(next - 1));
  return fmt::format("{}, {} {}", kind, from, next == bounds.end() ? "" : fmt::format("{:g}", *next));
}

/// In active coordinates, as bodies tell them.
struct Finding {
  CalibrationCandidate record;
  Finder finder = Finder::dim;

  Finding(const SecondOpinionFinding& finding, const BodyDescription& body)
      : record(finding.candidate), finder(finding.finder) {
    record.x -= body.left;
    record.yStart -= body.top;
    record.yEnd -= body.top;
  }

  [[nodiscard]] bool isAt(double x, double y, double radius) const {
    return record.kind != Kind::line &&
           std::hypot(static_cast<double>(record.x) - x, static_cast<double>(record.yStart) - y) <= radius;
  }
  [[nodiscard]] bool isOn(const BodyLine& line) const {
    return record.kind == Kind::line && record.x < line.x + line.width && line.x < record.x + record.width;
  }
};

double rowsInCommon(const CalibrationCandidate& record, const BodyLine& line) {
  const auto shared = std::min(record.yEnd, line.yEnd) - std::max(record.yStart, line.yStart) + 1;
  const auto all = std::max(record.yEnd, line.yEnd) - std::min(record.yStart, line.yStart) + 1;
  return static_cast<double>(shared) / static_cast<double>(all);
}

std::string nameOf(const BodyPixel& pixel) {
  using PixelKind = BodyPixel::Kind;
  if (pixel.kind == PixelKind::hot) return interval("hot e/s", pixel.strength, {30, 300, 3000});
  if (pixel.kind == PixelKind::offset) return interval("offset u", pixel.strength, {4, 16, 64});
  if (pixel.kind == PixelKind::dim) return interval("dim", pixel.strength, {0.03, 0.06, 0.12});
  if (pixel.kind == PixelKind::stuck) return "stuck";
  return interval("telegraph e", pixel.strength, {5, 15, 50});
}

class Scorer {
 public:
  Scorer(const SensorBody& body, double fNumber, const CalibrationResult& result) : body_(body), fNumber_(fNumber) {
    for (const SecondOpinionFinding& finding : result.secondOpinion->findings)
      findings_.emplace_back(finding, body.description());
  }

  SecondOpinionScore score() {
    scorePixels();
    scoreLines();
    scoreShadows();
    for (const Finding& finding : findings_) {
      Precision& precision = score_.precision[nameOf(finding.finder)];
      ++(isRight(finding) ? precision.right : precision.wrong);
    }
    return std::move(score_);
  }

 private:
  void count(const std::string& row, bool isFound, bool isRightEnd = false) {
    score_.recall[row] += {1, isFound ? 1 : 0, isRightEnd ? 1 : 0};
  }

  void scorePixels() {
    for (const BodyPixel& pixel : body_.defects().pixels) {
      const bool isFound = std::any_of(findings_.begin(), findings_.end(), [&](const Finding& finding) {
        return finding.record.kind == Kind::pixel && finding.record.x == pixel.x && finding.record.yStart == pixel.y;
      });
      const bool isHead = std::any_of(body_.defects().lines.begin(), body_.defects().lines.end(),
                                      [&](const BodyLine& line) { return line.isPartial && line.x == pixel.x; });
      if (!isHead) count(nameOf(pixel), isFound);
    }
  }

  void scoreLines() {
    for (const BodyLine& line : body_.defects().lines) {
      const Finding* found = nullptr;
      for (const Finding& finding : findings_)
        if (finding.isOn(line)) found = &finding;
      const std::string kind = line.isPartial ? "partial u" : line.gain != 0 ? "column gain u" : "column offset u";
      count(interval(kind, line.strength, {0.5, 1, 2, 8}), found != nullptr,
            found != nullptr && rowsInCommon(found->record, line) >= sharedRows);
    }
  }

  void scoreShadows() {
    const auto isFound = [&](double x, double y, double radius) {
      return std::any_of(findings_.begin(), findings_.end(),
                         [&](const Finding& finding) { return finding.isAt(x, y, radius); });
    };
    for (const BodyDust& dust : body_.defects().dust) {
      const bool isSeen = std::any_of(findings_.begin(), findings_.end(), [&](const Finding& finding) {
        return finding.record.kind == Kind::spot && finding.isAt(dust.x, dust.y, dust.shadowRadius(fNumber_) / 2);
      });
      count(interval("dust", dust.depth(fNumber_), {0.01, 0.03, 0.1}), isSeen);
    }
    for (const BodySpeck& speck : body_.defects().specks)
      count(interval("speck", speck.depth, {0.05, 0.1, 0.2}), isFound(speck.x, speck.y, speck.radiusX + 1.5));
  }

  [[nodiscard]] bool isRight(const Finding& finding) const {
    if (finding.record.kind == Kind::line) return isOnLine(finding);
    return isInShadow(finding) || (finding.record.kind == Kind::pixel && isOddPhotosite(finding.record));
  }

  [[nodiscard]] bool isOnLine(const Finding& finding) const {
    return std::any_of(body_.defects().lines.begin(), body_.defects().lines.end(),
                       [&](const BodyLine& line) { return finding.isOn(line); });
  }

  [[nodiscard]] bool isInShadow(const Finding& finding) const {
    const BodyDefects& defects = body_.defects();
    return std::any_of(
               defects.dust.begin(), defects.dust.end(),
               [&](const auto& dust) { return finding.isAt(dust.x, dust.y, dust.shadowRadius(fNumber_) + 2); }) ||
           std::any_of(defects.specks.begin(), defects.specks.end(),
                       [&](const auto& speck) { return finding.isAt(speck.x, speck.y, speck.radiusX + 2); });
  }

  [[nodiscard]] bool isOddPhotosite(const CalibrationCandidate& record) const {
    const BodyDefects& defects = body_.defects();
    const bool isPlanted = std::any_of(defects.pixels.begin(), defects.pixels.end(), [&](const BodyPixel& pixel) {
      return pixel.x == record.x && pixel.y == record.yStart;
    });
    const bool isOnColumn = std::any_of(defects.lines.begin(), defects.lines.end(), [&](const BodyLine& line) {
      return record.x >= line.x && record.x < line.x + line.width;
    });
    return isPlanted || isOnColumn || body_.darkRate(record.x, record.yStart) >= warmByNature ||
           body_.noisiness(record.x, record.yStart) >= noisyByNature;
  }

  const SensorBody& body_;
  double fNumber_;
  std::vector<Finding> findings_;
  SecondOpinionScore score_;
};

Referee refereeOf(const SensorBody& body, const CalibrationResult& result) {
  Referee referee;
  for (std::size_t i = 0; i < result.candidates.size(); ++i) {
    const CalibrationCandidate& candidate = result.candidates[i];
    const std::optional<bool>& confirmed = result.secondOpinion->confirmed[i];
    if (candidate.kind != Kind::line || candidate.evidenceSigma || !confirmed) continue;
    const Finding finding({Finder::run, candidate, 0, 0}, body.description());
    const bool isTrue = std::any_of(
        body.defects().lines.begin(), body.defects().lines.end(),
        [&](const BodyLine& line) { return finding.isOn(line) && rowsInCommon(finding.record, line) >= sharedRows; });
    int& number = isTrue ? (*confirmed ? referee.trueConfirmed : referee.trueDenied)
                         : (*confirmed ? referee.falseConfirmed : referee.falseDenied);
    ++number;
  }
  return referee;
}

/// A folder that is removed at the end.
class SessionFolder {
 public:
  SessionFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tessaly-session-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  SessionFolder(const SessionFolder&) = delete;
  SessionFolder& operator=(const SessionFolder&) = delete;
  ~SessionFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace

Recall& Recall::operator+=(const Recall& other) {
  planted += other.planted;
  found += other.found;
  endsRight += other.endsRight;
  return *this;
}

Precision& Precision::operator+=(const Precision& other) {
  right += other.right;
  wrong += other.wrong;
  return *this;
}

Referee& Referee::operator+=(const Referee& other) {
  trueConfirmed += other.trueConfirmed;
  trueDenied += other.trueDenied;
  falseConfirmed += other.falseConfirmed;
  falseDenied += other.falseDenied;
  return *this;
}

SecondOpinionScore& SecondOpinionScore::operator+=(const SecondOpinionScore& other) {
  for (const auto& [row, part] : other.recall)
    recall[row] += part;
  for (const auto& [finder, part] : other.precision)
    precision[finder] += part;
  referee += other.referee;
  return *this;
}

int SecondOpinionScore::falseFindings() const {
  int wrong = 0;
  for (const auto& [finder, part] : precision)
    wrong += part.wrong;
  return wrong;
}

double SecondOpinionScore::recallOf(const std::string& beginning) const {
  Recall all;
  for (const auto& [row, part] : recall)
    if (row.starts_with(beginning)) all += part;
  return all.planted == 0 ? 1 : static_cast<double>(all.found) / all.planted;
}

SecondOpinionScore scoreOf(const SensorBody& body, double fNumber, const CalibrationResult& result) {
  SecondOpinionScore score = Scorer(body, fNumber, result).score();
  score.referee = refereeOf(body, result);
  return score;
}

SecondOpinionScore scoreOf(const SecondOpinionTrial& trial) {
  const BodyDescription& sensor = trial.description;
  const BodyDefectCounts counts =
      trial.isHealthy ? BodyDefectCounts{} : BodyDefectCounts::of(sensor.activeWidth, sensor.activeHeight);
  const SensorBody body(sensor, plantBodyDefects(sensor.activeWidth, sensor.activeHeight, counts, sensor.seed));
  const std::vector<BodySeries> series = sessionSeries(trial.session);
  const SessionFolder folder;
  const CalibrationResult result =
      CalibrationEngine::analyze(writeSession(body, series, folder.path()), nullptr, CalibrationEngine::Opinions::both);
  return scoreOf(body, series.front().exposure.fNumber, result);
}

std::string table(const SecondOpinionScore& score) {
  std::string text = fmt::format("{:<34}{:>8}{:>8}{:>8}{:>11}\n", "planted", "planted", "found", "%", "ends right");
  for (const auto& [row, part] : score.recall) {
    const double share = 100.0 * part.found / std::max(part.planted, 1);
    text += fmt::format("{:<34}{:>8}{:>8}{:>8.1f}", row, part.planted, part.found, share);
    text += row.starts_with("partial") ? fmt::format("{:>11}\n", part.endsRight) : "\n";
  }
  text += fmt::format("\n{:<34}{:>8}{:>8}{:>8}\n", "finder", "right", "false", "%");
  for (const auto& [finder, part] : score.precision)
    text += fmt::format("{:<34}{:>8}{:>8}{:>8.1f}\n", finder, part.right, part.wrong, 100 * part.share());
  text += fmt::format("\ndocumented partial columns: true {} confirmed, {} not; false {} confirmed, {} not\n",
                      score.referee.trueConfirmed, score.referee.trueDenied, score.referee.falseConfirmed,
                      score.referee.falseDenied);
  return text;
}

}  // namespace tessaly::tools
