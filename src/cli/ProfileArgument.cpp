#include "cli/ProfileArgument.h"

#include "cli/Failures.h"
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
    throw CommandFailure(error, displayName(path));
  }
}

std::vector<CameraProfile> loadStore() {
  try {
    return ProfileStore::loadAll();
  } catch (const std::exception& error) {
    throw CommandFailure(error, displayName(ProfileStore::directory()));
  }
}

[[noreturn]] void refuse(const std::string& argument, const std::string& words) {
  throw CommandFailure({displayText(argument) + ": " + words, words});
}

CameraProfile fromStore(const std::string& argument) {
  std::vector<CameraProfile> named;
  for (CameraProfile& profile : loadStore()) {
    if (profile.id == UUID::parse(argument)) return std::move(profile);
    if (profile.name == argument) named.push_back(std::move(profile));
  }
  if (named.empty()) refuse(argument, systemMessage(ENOENT));
  if (named.size() > 1) refuse(argument, "More than one camera profile has this name; give its id");
  return std::move(named.front());
}

}  // namespace

ProfileArgument loadProfile(const std::string& argument) {
  if (namesFile(argument)) return fromFile(argument);
  return {fromStore(argument), ProfileStore::files(), true};
}

}  // namespace tessaly::cli
