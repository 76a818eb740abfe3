// calibrate FOLDER_OR_FILES…: from calibration frames to candidates, a preview and a profile.
#include "calibration/CalibrationEngine.h"
#include "calibration/review/Inspection.h"
#include "calibration/review/InvalidInput.h"
#include "calibration/review/NumberParsing.h"
#include "calibration/review/Preselection.h"
#include "calibration/review/ProfileBuilding.h"
#include "cli/CalibrationFrames.h"
#include "cli/CalibrationResultJSON.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "cli/OutputFiles.h"
#include "cli/ProgressDisplay.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/CalibrationTexts.h"
#include "presentation/DuplicateColumns.h"
#include "presentation/ForeignFrames.h"
#include "presentation/SecondOpinionTexts.h"
#include "presentation/SensorReport.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <set>
#include <span>
#include <vector>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

struct CalibrateOptions {
  std::vector<std::string> frames;
  std::string result;
  std::string preview;
  std::string inspect;
  std::optional<std::string> name;
  std::string profile;
  std::string report;
  bool save = false;
  bool secondOpinion = false;
  bool json = false;
  std::string pixelConfidence = "98";
  std::string include = "preselected";

  [[nodiscard]] bool makesProfile() const { return save || !profile.empty(); }
  [[nodiscard]] std::vector<fs::path> outputs() const { return {result, preview, profile, report, json ? "-" : ""}; }
  [[nodiscard]] bool looksClosely() const { return secondOpinion || !report.empty(); }
};

double pixelConfidence(const CalibrateOptions& options) {
  try {
    return CandidateSelection::requireConfidence(options.pixelConfidence);
  } catch (const InvalidInput& error) {
    throw UsageError("--pixel-confidence: " + L(error.what()));
  }
}

/// What can be said before minutes of work.
void checkOptions(const CalibrateOptions& options) {
  if (!options.makesProfile()) return;
  if (!options.name) throw UsageError("--profile and --save need --name");
  if (trimmed(*options.name).empty()) throw InvalidInput("Enter a camera profile name.");
}

void checkOutputs(const CalibrateOptions& options, const CalibrationFrames& frames) {
  std::vector<fs::path> inputs = frames.files;
  inputs.emplace_back(options.inspect);
  OutputFiles::check(options.outputs(), inputs);
}

CalibrationResult analyze(const CalibrationFrames& frames, bool secondOpinion, const Interruption& interruption) {
  ProgressDisplay display;
  std::int64_t printed = 0;
  const auto report = [&](const CalibrationProgress& progress) {
    interruption.check();
    const std::string text = CalibrationTexts::progress(progress);
    display.show(progress.completed, progress.total, text);
    if (display.isTerminal() || progress.completed <= printed) return;
    printed = progress.completed;
    display.print({fmt::format("{}/{}  {}", progress.completed, progress.total, text)});
  };
  using CalibrationEngine::Opinions;
  return CalibrationEngine::analyze(frames.files, report, secondOpinion ? Opinions::both : Opinions::documented);
}

std::set<UUID> includedCandidates(const CalibrateOptions& options, const CalibrationResult& result, double threshold) {
  std::set<UUID> included;
  if (options.include == "preselected") included = CandidateSelection::preselected(result.candidates, threshold);
  if (options.include != "all") return included;
  for (const CalibrationCandidate& candidate : result.candidates)
    included.insert(candidate.id);
  return included;
}

void writePreview(const CalibrateOptions& options, const CalibrationResult& result) {
  const RawPreviewImage image =
      options.inspect.empty() ? result.preview : inspectionOf(options.inspect, result.metadata);
  if (options.preview.empty()) return;
  std::string file = fmt::format("P5\n{} {}\n255\n", image.width, image.height);
  file.append(image.pixels.begin(), image.pixels.end());
  OutputFiles::write(options.preview, std::as_bytes(std::span(file)));
}

void tellDuplicates(std::int64_t count) {
  if (count > 0) Console::note(DuplicateColumns::sentence(count));
}

std::int64_t linesInsideColumns(const CalibrationResult& result) {
  return static_cast<std::int64_t>(DuplicateColumns::linesInsideColumns(result.candidates, result.metadata).size());
}

void save(const CameraProfile& profile) {
  try {
    const fs::path file = ProfileStore::save(profile);
    Console::tell(CalibrationTexts::saved(profile, file));
    tellDuplicates(DuplicateColumns::linesInsideColumns(profile));
  } catch (const std::exception& error) {
    throw CommandFailure(error, displayName(ProfileStore::directory()));
  }
}

/// What the second opinion is told by besides the result, which tells it only where it was asked for by itself.
struct OpinionTexts {
  std::string summary;
  std::string report;
};

OpinionTexts takeOpinion(const CalibrateOptions& options, CalibrationResult& result) {
  if (!options.looksClosely()) return {};
  OpinionTexts texts{SecondOpinionTexts::summary(result), SensorReport::page(result)};
  if (!options.secondOpinion) result.secondOpinion.reset();
  return texts;
}

void makeProfile(const CalibrateOptions& options, const CalibrationResult& result, const std::set<UUID>& included) {
  if (!options.makesProfile()) return;
  const CameraProfile profile =
      CandidateSelection::makeProfile(&result.metadata, *options.name, result.candidates, included);
  if (!options.profile.empty()) OutputFiles::write(options.profile, encodeProfile(profile));
  if (options.save) save(profile);
}

/// The result of the analysis stands on its own: it is written before anything that can still fail.
void finish(const CalibrateOptions& options, CalibrationResult result, double threshold) {
  const OpinionTexts opinion = takeOpinion(options, result);
  const std::set<UUID> included = includedCandidates(options, result, threshold);
  for (const std::string& output : {options.result, std::string(options.json ? "-" : "")}) {
    if (!output.empty()) OutputFiles::write(output, toJSON(result, included).dump(2) + "\n");
  }
  writePreview(options, result);
  if (!options.report.empty()) OutputFiles::write(options.report, opinion.report);
  makeProfile(options, result, included);
  OutputFiles::say(CalibrationTexts::completion(result, threshold), options.outputs());
  tellDuplicates(linesInsideColumns(result));
  if (!opinion.summary.empty()) Console::note(opinion.summary);
  if (options.name && !options.makesProfile())
    Console::note(L("No profile was kept. Add --save or --profile to keep one."));
}

ExitStatus calibrate(const CalibrateOptions& options, const Context& context) {
  const double threshold = pixelConfidence(options);
  checkOptions(options);
  const CalibrationFrames frames = calibrationFrames(options.frames);
  checkOutputs(options, frames);
  try {
    finish(options, analyze(frames, options.looksClosely(), context.interruption), threshold);
  } catch (const DNGError& error) {
    throw CommandFailure(failureText(error, frames.folder), ForeignFrames::line(error, frames.files));
  }
  return ExitStatus::done;
}

}  // namespace

void addCalibrate(Program& program) {
  auto options = std::make_shared<CalibrateOptions>();
  Command command = addCommand(program, "calibrate", "Find the fixed sensor defects in a set of calibration frames");
  command.addOperand("FOLDER_OR_FILES", options->frames, "A folder with calibration DNG files, or the files");
  command.addOption("--result", options->result, "OUT.json",
                    "Write the result of the analysis as JSON; - is standard output");
  command.addOption("--preview", options->preview, "OUT.pgm", "Write the preview as a picture (binary PGM)");
  command.addOption("--inspect", options->inspect, "FILE", "Preview this photograph instead of a bright-field frame");
  command.addOption("--name", options->name, "NAME", "The name of the profile");
  command.addOption("--profile", options->profile, "OUT.json", "Write a profile of the included candidates to a file");
  command.addFlag("--save", options->save, "Put a profile of the included candidates into the profile store");
  command.addOption("--pixel-confidence", options->pixelConfidence, "PERCENT",
                    "Include pixels from this confidence on, 50 to 100; otherwise 98");
  command.addOption("--include", options->include, "preselected|all|none", "Which candidates are included")
      .oneOf({"preselected", "all", "none"});
  command.addOption("--report", options->report, "OUT.html",
                    "Write a report of the sensor's noise and defects as a web page; looks closer for that");
  command.addFlag("--second-opinion", options->secondOpinion,
                  "Also look for soft shadows, weak columns and unsteady pixels; told in --result, never included");
  command.addFlag("--json", options->json, "Print what --result writes, and nothing else");
  setAction(program, command, options, calibrate);
}

}  // namespace tessaly::cli
