// profiles list|show|validate|import|export|delete: the profile store.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/OutputFiles.h"
#include "cli/ProfileArgument.h"
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <system_error>
#include <utility>
#include <vector>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

struct ListOptions {
  bool json = false;
};

struct ProfileOptions {
  std::string profile;
  std::string file;
  bool json = false;
};

/// What is done to a profile file or to the store, failing with the name of it.
template <typename Work>
auto attempt(const fs::path& subject, Work work) {
  try {
    return work();
  } catch (const std::exception& error) {
    throw CommandFailure(error, subjectName(subject));
  }
}

std::string listLine(const CameraProfile& profile) {
  return fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\n", profile.id.text(), Console::singleLine(profile.name),
                     Console::singleLine(profile.cameraModel), Console::singleLine(profile.cameraSerial.value_or("-")),
                     profile.pixels.size(), profile.lines.size(), profile.spots ? profile.spots->size() : 0);
}

nlohmann::ordered_json listJSON(const std::vector<CameraProfile>& profiles) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const CameraProfile& profile : profiles) {
    nlohmann::ordered_json entry{
        {"id", profile.id.text()}, {"name", profile.name}, {"cameraModel", profile.cameraModel}};
    if (profile.cameraSerial) entry["cameraSerial"] = *profile.cameraSerial;
    entry["pixels"] = profile.pixels.size();
    entry["lines"] = profile.lines.size();
    entry["spots"] = profile.spots ? profile.spots->size() : 0;
    list.push_back(std::move(entry));
  }
  return {{"profiles", std::move(list)}};
}

ExitStatus list(const ListOptions& options, const Context&) {
  const std::vector<CameraProfile> profiles = attempt(ProfileStore::directory(), ProfileStore::loadAll);
  std::string lines;
  for (const CameraProfile& profile : profiles)
    lines += listLine(profile);
  if (options.json) lines = listJSON(profiles).dump(2) + "\n";
  Console::write(lines);
  return ExitStatus::done;
}

ExitStatus show(const ProfileOptions& options, const Context&) {
  Console::write(encodeProfile(loadProfile(options.profile).profile));
  return ExitStatus::done;
}

ExitStatus validate(const ProfileOptions& options, const Context&) {
  const CameraProfile profile = loadProfile(options.profile).profile;
  const DNGMetadata metadata = DNGReader::readMetadata(options.file);
  try {
    profile.validate(metadata);
  } catch (const DNGError& error) {
    throw DNGError::contextualize(error, options.file);
  }
  return ExitStatus::done;
}

ExitStatus import(const ProfileOptions& options, const Context&) {
  const CameraProfile profile = attempt(options.file, [&] { return ProfileStore::importProfile(options.file); });
  Console::write(listLine(profile));
  Console::note(L("Imported profile saved as a new copy."));
  return ExitStatus::done;
}

ExitStatus exportTo(const ProfileOptions& options, const Context&) {
  const ProfileArgument argument = loadProfile(options.profile);
  OutputFiles::check({options.file}, argument.files);
  OutputFiles::write(options.file, encodeProfile(argument.profile));
  Console::note(L("Profile exported."));
  return ExitStatus::done;
}

/// The file that is meant: one of the store's by its path or, where no other path is meant, by its name; else that of
/// the profile. It need not be there.
fs::path fileToRemove(const std::string& argument) {
  if (auto file = storedFile(argument)) return *std::move(file);
  return ProfileStore::fileOf(loadProfile(argument).profile);
}

/// What a missing file would be copied from again, also for one that was set aside.
void tellReturn(const fs::path& file) {
  const bool wasSetAside = file.extension() == ".unreadable";
  const auto earlier = ProfileStore::earlierFileOf(wasSetAside ? file.stem() : file.filename());
  if (earlier) Console::note(LF("This profile comes back: it also lies in %@", {displayText(earlier->native())}));
}

ExitStatus remove(const ProfileOptions& options, const Context&) {
  const fs::path file = fileToRemove(options.profile);
  attempt(options.profile, [&] {
    // A profile given by its path need not be in the store; saying that it was deleted would be wrong.
    if (!fs::remove(file)) throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
  });
  tellReturn(file);
  return ExitStatus::done;
}

using Run = ExitStatus (*)(const ProfileOptions&, const Context&);

struct Subcommand {
  const char* name;
  const char* description;
  const char* profile;  ///< what the operand P is for; null when there is none
  const char* file;     ///< what the operand FILE is for; null when there is none
  Run run;
};

constexpr const char* which = "A profile file, or a stored profile's id or name";
constexpr const char* whichToRemove = "A profile file, a file name in the store, or a stored profile's id or name";

constexpr Subcommand subcommands[] = {
    {"show", "Print a profile as JSON", which, nullptr, show},
    {"validate", "Check that a profile fits a DNG file; prints nothing when it does", which, "A DNG file", validate},
    {"import", "Put a profile file into the store, as a new copy", nullptr, "A profile file", import},
    {"export", "Write a profile to a file", which, "The file; one of that name is replaced; - is standard output",
     exportTo},
    {"delete", "Remove a profile from the store", whichToRemove, nullptr, remove},
};

void addSubcommand(Program& program, Command parent, const Subcommand& subcommand) {
  auto options = std::make_shared<ProfileOptions>();
  Command command = addCommand(program, parent, subcommand.name, subcommand.description);
  if (subcommand.profile) command.addOperand("P", options->profile, subcommand.profile);
  if (subcommand.file) command.addOperand("FILE", options->file, subcommand.file);
  if (subcommand.run == show) command.addFlag("--json", options->json, "One JSON object, as without it");
  setAction(program, command, options, subcommand.run);
}

}  // namespace

void addProfiles(Program& program) {
  Command profiles = addCommand(program, "profiles", "The stored camera profiles");
  profiles.requireCommand();
  Command listing =
      addCommand(program, profiles, "list",
                 "Print a line a profile: id, name, camera model, serial, numbers of pixels, columns and spots");
  auto listOptions = std::make_shared<ListOptions>();
  listing.addFlag("--json", listOptions->json, "Print them as one JSON object");
  setAction(program, listing, listOptions, list);
  for (const Subcommand& subcommand : subcommands)
    addSubcommand(program, profiles, subcommand);
}

}  // namespace tessaly::cli
