// repair SOURCE… --profile PROFILE: the batch over a folder, over exactly one file, or over a selection of both.
#include "batch/BatchJSON.h"
#include "batch/BatchProcessor.h"
#include "batch/OutputFolder.h"
#include "cli/BatchReport.h"
#include "cli/BatchResultJSON.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/CopyNames.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "cli/OutputFiles.h"
#include "cli/ProfileArgument.h"
#include "cli/RepairSources.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/BatchStart.h"
#include "presentation/BatchTexts.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

struct RepairOptions {
  SourceArguments sources;
  std::string profile;
  std::optional<std::string> output;
  std::optional<std::int64_t> workers;
  std::optional<std::string> existing;
  bool noLog = false;
  std::string summary;
  bool keepDates = false;
  bool sidecars = false;
  bool dryRun = false;
  bool quiet = false;
  bool verbose = false;
  bool json = false;
  bool jsonLines = false;

  [[nodiscard]] bool writesJSON() const { return json || jsonLines; }

  /// Where results go, with standard output for the JSON.
  [[nodiscard]] std::vector<fs::path> outputs() const {
    return writesJSON() ? std::vector<fs::path>{summary, "-"} : std::vector<fs::path>{summary};
  }
};

void checkOptions(const RepairOptions& options) {
  if (options.json && options.jsonLines) throw UsageError("--json and --json-lines: only one of them");
  if (options.quiet && options.verbose) throw UsageError("--quiet and --verbose: only one of them");
  if (options.dryRun && !options.summary.empty()) throw UsageError("--dry-run writes no --summary; use --json");
}

void checkOutput(const RepairOptions& options, const RepairSources& sources) {
  if (sources.named.size() > 1 && !options.output) throw UsageError("More than one SOURCE needs --output");
}

BatchOptions batchOptions(const RepairOptions& options) {
  BatchOptions chosen = BatchStart::options();
  if (options.existing) chosen.existingOutputPolicy = *existingOutputPolicy(*options.existing);
  if (options.noLog) chosen.saveLog = false;
  if (options.keepDates) chosen.keepDates = true;
  if (options.sidecars) chosen.copySidecars = true;
  chosen.onlyRehearses = options.dryRun;
  return chosen;
}

/// Beside a single file lies the folder of its results, whatever the preferences say of folders. A list that names
/// nothing gives no folder; the batch refuses it.
fs::path outputFolder(const RepairOptions& options, const RepairSources& sources) {
  if (options.output) return *options.output;
  const fs::path source = sources.named.empty() ? fs::path() : sources.named.front();
  if (sources.isFolder) return BatchStart::outputFolder(std::nullopt, source);
  std::error_code error;  // of an empty path, which the batch itself refuses
  return defaultOutputFolder(fs::absolute(source, error).parent_path());
}

bool isNameOfACopy(const fs::path& path, const fs::path& output, const SourceListing& listing) {
  if (listing.subfolders.empty()) return isNameOfCopy(path, output, listing.files);
  for (std::size_t i = 0; i < listing.files.size(); ++i) {
    if (isNameOfCopy(path, output / listing.subfolderOf(i), {listing.files[i]})) return true;
  }
  return false;
}

/// The summary must replace neither what is read nor the copies that this very run makes.
void checkSummary(const RepairOptions& options, const RepairSources& sources, const ProfileArgument& profile,
                  const fs::path& output) {
  std::vector<fs::path> own = profile.files;
  own.insert(own.end(), sources.listing.files.begin(), sources.listing.files.end());
  if (sources.isSelection && !options.sources.list.empty()) own.emplace_back(options.sources.list);
  OutputFiles::check(options.outputs(), std::move(own));
  if (!options.summary.empty() && isNameOfACopy(options.summary, output, sources.listing))
    throw UsageError(displayText(options.summary) + ": a copy has or gets this name");
}

void tellWorkers(const RepairOptions& options) {
  const std::string remark = BatchTexts::usedWorkers(options.workers.value_or(0));
  if (!remark.empty()) Console::note(remark);
}

BatchOrder batchOrder(const RepairOptions& options, const RepairSources& sources, const CameraProfile& profile,
                      const fs::path& output) {
  BatchOrder order;
  order.outputFolder = output;
  order.profile = profile;
  order.workers = BatchStart::workers(options.workers.value_or(AppPreferences::shared().workers()));
  if (options.dryRun) order.workers = 1;  // told in the order of the list
  order.options = batchOptions(options);
  order.shard = sources.shard;
  return order;
}

ReportStyle reportStyle(const RepairOptions& options) {
  ReportStyle style;
  if (options.quiet) style.loudness = Loudness::quiet;
  if (options.verbose) style.loudness = Loudness::verbose;
  style.isRehearsal = options.dryRun;
  style.keepsFiles = options.json;
  style.writesLines = options.jsonLines;
  return style;
}

BatchSummary process(BatchProcessor& processor, const RepairSources& sources, BatchOrder order) {
  if (sources.isSelection) {
    SourceSelection selection = sources.selection(order.outputFolder);
    return processor.processSelection(std::move(selection), std::move(order));
  }
  return sources.isFolder ? processor.processFolder(sources.named.front(), std::move(order))
                          : processor.processFiles(sources.listing.files, std::move(order));
}

BatchSummary runBatch(const RepairSources& sources, BatchOrder order, BatchReport& report, Interruption& interruption) {
  order.file = [&report](const BatchFileOutcome& outcome) { report.finished(outcome); };
  BatchProcessor processor;
  const Interruption::Handler handler(interruption, [&] {
    processor.cancel();
    report.stopping();
  });
  return process(processor, sources, std::move(order));
}

void tell(const std::string& description, const std::string& cause) {
  Console::note(description);
  Console::note("Cause: " + cause);
}

/// Failed files were told when they failed; this is the rest.
void tellFailures(const BatchSummary& summary) {
  for (const BatchFailure& failure : summary.failures) {
    if (failure.filename.empty()) tell(BatchTexts::description(failure), failure.message);
  }
  for (const BatchOmission& entry : summary.unexamined)
    tell(BatchTexts::unexamined(entry), entry.cause);
  for (const BatchOmission& file : summary.unaccounted)
    tell(BatchTexts::unaccounted(file), file.cause);
  for (const LeftFile& file : summary.leftFiles)
    Console::note(BatchTexts::leftFile(file));
  if (summary.logError) tell(LF("Log writing failed: %@", {L(*summary.logError)}), *summary.logError);
}

/// On a terminal the names in it can break no line.
std::string alertText(const BatchSummary& summary, const RepairOptions& options) {
  const bool isShown = OutputFiles::tellsTerminal(options.outputs());
  return BatchTexts::alertText(isShown ? BatchTexts::visible(summary) : summary);
}

/// What is said in the end, where no program reads it.
void say(const RepairOptions& options, const BatchSummary& summary) {
  if (options.quiet) return;
  const std::string text = options.dryRun ? BatchTexts::rehearsalLine(summary) : alertText(summary, options);
  OutputFiles::say(text, options.outputs());
}

void finish(const RepairOptions& options, const BatchSummary& summary, const BatchReport& report) {
  tellFailures(summary);
  if (const std::string left = BatchTexts::filesLeft(summary); !left.empty()) Console::note(left);
  std::vector<nlohmann::ordered_json> files = report.files();
  say(options, summary);
  if (options.json) Console::write(toJSON(summary, std::move(files)).dump(2) + "\n");
  if (!options.summary.empty()) OutputFiles::write(options.summary, batchSummaryJSON(summary).dump(2) + "\n");
}

ExitStatus repair(const RepairOptions& options, const Context& context) {
  checkOptions(options);
  RepairSources sources = namedSources(options.sources);
  checkOutput(options, sources);
  const ProfileArgument profile = loadProfile(options.profile);
  const fs::path output = outputFolder(options, sources);
  listFiles(sources, output);
  const BatchOrder order = batchOrder(options, sources, profile.profile, output);
  if (order.options.existingOutputPolicy != ExistingOutputPolicy::numberedCopy) refuseMeetings(sources);
  checkSummary(options, sources, profile, output);
  if (!options.quiet) tellWorkers(options);
  BatchSummary summary;
  {
    BatchReport report(static_cast<std::int64_t>(sources.ownCount()), reportStyle(options));
    summary = runBatch(sources, order, report, context.interruption);
    report.end();
    finish(options, summary, report);
  }
  return BatchTexts::isWarning(summary) ? ExitStatus::failed : ExitStatus::done;
}

void addSources(Command& command, SourceArguments& sources) {
  const Argument source =
      command.addOperand("SOURCE", sources.sources, "The folder that directly contains the DNG files, or one file");
  command
      .addOption("--files-from", sources.list, "LIST",
                 "Also repair what this file names, one a line; - is standard input")
      .replaces(source);
  command.addFlag("-0,--null", sources.endsInNul, "Names in the list end in a zero byte instead of a line feed");
  command.addFlag("--recursive", sources.isRecursive,
                  "With everything below the folders; the copies mirror them below the output folder");
  command.addOption("--shard", sources.shard, "K/N", "Only every N-th file, from the K-th on, for one of N machines");
}

}  // namespace

void addRepair(Program& program) {
  auto options = std::make_shared<RepairOptions>();
  Command command = addCommand(program, "repair", "Write repaired copies of all DNG files of a folder, or of one file");
  addSources(command, options->sources);
  command.addOption("--profile", options->profile, "PROFILE", "A profile file, or a stored profile's id or name")
      .require();
  command.addOption("--output", options->output, "FOLDER",
                    "The folder for the copies; otherwise as the preferences say");
  command.addOption("--workers", options->workers, "N", "How many files at once, 1 to 4; 0 is automatic");
  command.addOption("--existing", options->existing, "skip|numberedCopy", "What to do when a copy's name is taken")
      .oneOf({"skip", "numberedCopy"});
  command.addFlag("--no-log", options->noLog, "Write no CSV log into the output folder");
  command.addOption("--summary", options->summary, "OUT.json",
                    "Write what became of the files as JSON; - is standard output");
  command.addFlag("--keep-dates", options->keepDates, "Give each copy the modification time of its original");
  command.addFlag("--sidecars", options->sidecars, "Copy .xmp and .pp3 files beside an original to its copy");
  command.addFlag("--dry-run", options->dryRun, "Say what would happen, by the metadata alone; write nothing");
  command.addFlag("-q,--quiet", options->quiet, "Say only what went wrong");
  command.addFlag("-v,--verbose", options->verbose, "Say where each copy is and how many samples were repaired");
  command.addFlag("--json", options->json, "Print what became of the files as one JSON object, and nothing else");
  command.addFlag("--json-lines", options->jsonLines, "Print a JSON object a line for each file as it finishes");
  setAction(program, command, options, repair);
}

}  // namespace tessaly::cli
