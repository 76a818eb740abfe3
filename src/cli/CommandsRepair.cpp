// repair SOURCE --profile PROFILE: the batch over a folder, or over exactly one file.
#include "batch/BatchJSON.h"
#include "batch/BatchProcessor.h"
#include "batch/OutputFolder.h"
#include "batch/SourceFiles.h"
#include "cli/BatchReport.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/CopyNames.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "cli/OutputFiles.h"
#include "cli/ProfileArgument.h"
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
  std::string source;
  std::string profile;
  std::optional<std::string> output;
  std::optional<std::int64_t> workers;
  std::optional<std::string> existing;
  bool noLog = false;
  std::string summary;
};

/// What is repaired: the files that are read, and whether they were listed in a folder.
struct Sources {
  fs::path source;
  bool isFolder = false;
  std::vector<fs::path> files;
};

Sources sourcesOf(const fs::path& source) {
  std::error_code error;
  if (!fs::is_directory(source, error)) return {source, false, {source}};
  try {
    return {source, true, sourceFiles(source)};
  } catch (const std::exception&) {
    return {source, true, {}};  // the batch itself finds out, and says why
  }
}

BatchOptions batchOptions(const RepairOptions& options) {
  BatchOptions chosen = BatchStart::options();
  if (options.existing) chosen.existingOutputPolicy = *existingOutputPolicy(*options.existing);
  if (options.noLog) chosen.saveLog = false;
  return chosen;
}

/// Beside a single file lies the folder of its results, whatever the preferences say of folders.
fs::path outputFolder(const RepairOptions& options, const Sources& sources) {
  if (options.output) return *options.output;
  if (sources.isFolder) return BatchStart::outputFolder(std::nullopt, sources.source);
  std::error_code error;  // of an empty path, which the batch itself refuses
  return defaultOutputFolder(fs::absolute(sources.source, error).parent_path());
}

/// The summary must replace neither what is read nor the copies that this very run makes.
void checkSummary(const RepairOptions& options, const Sources& sources, const ProfileArgument& profile,
                  const fs::path& output) {
  std::vector<fs::path> own = profile.files;
  own.insert(own.end(), sources.files.begin(), sources.files.end());
  OutputFiles::check({options.summary}, std::move(own));
  if (!options.summary.empty() && isNameOfCopy(options.summary, output, sources.files))
    throw UsageError(displayText(options.summary) + ": a copy has or gets this name");
}

void tellWorkers(const RepairOptions& options) {
  const std::string remark = BatchTexts::usedWorkers(options.workers.value_or(0));
  if (!remark.empty()) Console::note(remark);
}

BatchSummary runBatch(const RepairOptions& options, const Sources& sources, const CameraProfile& profile,
                      const fs::path& output, Interruption& interruption) {
  BatchReport report(static_cast<std::int64_t>(sources.files.size()));
  BatchOrder order;
  order.outputFolder = output;
  order.profile = profile;
  order.workers = BatchStart::workers(options.workers.value_or(AppPreferences::shared().workers()));
  order.options = batchOptions(options);
  order.file = [&report](const BatchFileOutcome& outcome) { report.finished(outcome); };
  BatchProcessor processor;
  const Interruption::Handler handler(interruption, [&] {
    processor.cancel();
    report.stopping();
  });
  return sources.isFolder ? processor.processFolder(sources.source, std::move(order))
                          : processor.processFiles(sources.files, std::move(order));
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
  const bool isShown = OutputFiles::tellsTerminal({options.summary});
  return BatchTexts::alertText(isShown ? BatchTexts::visible(summary) : summary);
}

ExitStatus repair(const RepairOptions& options, const Context& context) {
  const ProfileArgument profile = loadProfile(options.profile);
  const Sources sources = sourcesOf(options.source);
  const fs::path output = outputFolder(options, sources);
  checkSummary(options, sources, profile, output);
  tellWorkers(options);
  const BatchSummary summary = runBatch(options, sources, profile.profile, output, context.interruption);
  tellFailures(summary);
  if (const std::string left = BatchTexts::filesLeft(summary); !left.empty()) Console::note(left);
  OutputFiles::say(alertText(summary, options), {options.summary});
  if (!options.summary.empty()) OutputFiles::write(options.summary, batchSummaryJSON(summary).dump(2) + "\n");
  return BatchTexts::isWarning(summary) ? ExitStatus::failed : ExitStatus::done;
}

}  // namespace

void addRepair(Program& program) {
  auto options = std::make_shared<RepairOptions>();
  Command command = addCommand(program, "repair", "Write repaired copies of all DNG files of a folder, or of one file");
  command.addOperand("SOURCE", options->source, "The folder that directly contains the DNG files, or one file");
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
  setAction(program, command, options, repair);
}

}  // namespace tessaly::cli
