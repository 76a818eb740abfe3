#include "cli/ProfileArgument.h"

#include "cli/Failures.h"
#include "localization/Localization.h"
#include "platform/SameEntry.h"
#include "platform/Text.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

/// Whether something that could be a profile file stands there. What cannot be looked at is left to the reading, which
/// says why; a folder is not meant when a stored profile has its name.
bool namesFile(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (status.type() == fs::file_type::not_found || error == std::errc::filename_too_long) return false;
  return !fs::is_directory(path, error);
}

ProfileArgument fromFile(const fs::path& path) {
  try {
    return {readProfile(path), {path}, false};
  } catch (const std::exception& error) {
    throw CommandFailure(error, subjectName(path));
  }
}

std::vector<CameraProfile> loadStore() {
  try {
    return ProfileStore::loadAll();
  } catch (const std::exception& error) {
    throw CommandFailure(error, displayName(ProfileStore::directory()));
  }
}

FailureText about(const std::string& argument, const std::string& words) {
  return {(argument.empty() ? "\"\"" : displayText(argument)) + ": " + L(words), words};
}

/// Whether the argument can hardly be meant for a profile's name.
bool looksLikePath(const std::string& argument) {
  return argument.find('/') != std::string::npos || fs::path(argument).extension() == ".json";
}

std::string storedNames(const std::vector<CameraProfile>& profiles) {
  if (profiles.empty()) return L("No camera profile is stored.");
  std::string names;
  for (const CameraProfile& profile : profiles)
    names += (names.empty() ? "" : ", ") + profile.name;
  return LF("Stored profiles: %@", {names});
}

[[noreturn]] void refuseUnknown(const std::string& argument, const std::vector<CameraProfile>& profiles) {
  if (looksLikePath(argument)) throw CommandFailure(about(argument, systemMessage(ENOENT)));
  throw CommandFailure(about(argument, "No stored profile has this name"), storedNames(profiles));
}

CameraProfile fromStore(const std::string& argument) {
  const std::vector<CameraProfile> profiles = loadStore();
  std::vector<CameraProfile> named;
  for (const CameraProfile& profile : profiles) {
    if (profile.id == UUID::parse(argument)) return profile;
    if (profile.name == argument) named.push_back(profile);
  }
  if (named.empty()) refuseUnknown(argument, profiles);
  if (named.size() > 1)
    throw CommandFailure(about(argument, "More than one camera profile has this name; give its id"));
  return std::move(named.front());
}

}  // namespace

std::optional<fs::path> storedFile(const std::string& argument) {
  std::error_code error;
  const fs::path path = argument;
  const bool isElsewhere = fs::exists(fs::symlink_status(path, error));
  const bool isInStore = isSameEntry(fs::absolute(path, error).parent_path(), ProfileStore::directory());
  if (!isInStore && (isElsewhere || path.has_parent_path())) return std::nullopt;
  fs::path file = ProfileStore::directory() / path.filename();
  if (!fs::is_regular_file(fs::symlink_status(file, error))) return std::nullopt;
  return file;
}

ProfileArgument loadProfile(const std::string& argument) {
  if (namesFile(argument)) return fromFile(argument);
  return {fromStore(argument), ProfileStore::files(), true};
}

}  // namespace tessaly::cli
