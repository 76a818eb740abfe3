#include "store/ProfileStore.h"

#include "localization/Localization.h"
#include "platform/AtomicFile.h"
#include "platform/FolderNames.h"
#include "platform/InputFile.h"
#include "platform/MoveFile.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"
#include "preferences/UserFolders.h"
#include "profile/CameraProfileJSON.h"
#include "store/LegacyProfiles.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

namespace tessaly {

namespace fs = std::filesystem;

InvalidProfile::InvalidProfile(std::string reason)
    : std::runtime_error(L("This profile is invalid or uses an unsupported version.")), reason_(std::move(reason)) {}

UnreadableProfile::UnreadableProfile(fs::path file, std::string reason)
    : std::runtime_error(displayText(file.native()) + ": " + L(reason)),
      file_(std::move(file)),
      reason_(std::move(reason)) {}

namespace ProfileStore {
namespace {

constexpr std::int64_t smallestImport = 1;
constexpr std::int64_t largestImport = 5'000'000;

fs::path legacyDirectory() {
  return applicationSupportFolder() / "Orvendel" / "Profiles";
}

bool isMissing(const fs::path& file) {
  std::error_code ignored;
  return fs::symlink_status(file, ignored).type() == fs::file_type::not_found;
}

// Nothing when another process has deleted it since the folder was listed.
std::optional<CameraProfile> loadStored(const fs::path& file) {
  try {
    return readProfile(file);
  } catch (const std::exception& error) {
    if (isMissing(file)) return std::nullopt;
    throw UnreadableProfile(file, exceptionMessage(error));
  }
}

// False when the name is taken.
bool movedTo(const fs::path& from, const fs::path& to) {
  try {
    moveWithoutReplacing(FileSystem::system(), from, to);
    return true;
  } catch (const std::system_error& error) {
    if (error.code() != std::errc::file_exists) throw;
    return false;
  }
}

void sortByName(std::vector<CameraProfile>& profiles) {
  const NaturalOrder order;
  std::ranges::stable_sort(profiles, [&order](const CameraProfile& left, const CameraProfile& right) {
    const int byName = order.compare(left.name, right.name);
    return byName < 0 || (byName == 0 && left.id < right.id);
  });
}

void requireImportSize(const fs::path& url) {
  const InputFile file(url);
  const bool fits = file.isRegular() && file.size() >= smallestImport && file.size() <= largestImport;
  if (!fits) throw InvalidProfile("Profile file size");
}

CameraProfile decodeImported(const fs::path& url) {
  try {
    return readProfile(url);
  } catch (const ProfileDecodingError& error) {
    throw InvalidProfile(error.what());
  }
}

}  // namespace

fs::path directory() {
  return applicationSupportFolder() / "Tessaly" / "Profiles";
}

fs::path fileOf(const CameraProfile& profile) {
  return directory() / (profile.id.text() + ".json");
}

std::vector<fs::path> files() {
  std::vector<fs::path> found;
  if (!fs::exists(directory())) return found;
  for (const std::string& name : namesInFolder(directory())) {
    if (isProfileFileName(name)) found.push_back(directory() / name);
  }
  return found;
}

std::optional<fs::path> earlierFileOf(const fs::path& file) {
  fs::path earlier = legacyDirectory() / file.filename();
  std::error_code error;
  const bool isCopied = isProfileFileName(earlier.filename()) && isMissing(asideOf(directory() / earlier.filename()));
  if (!isCopied || !fs::is_regular_file(earlier, error)) return std::nullopt;
  return earlier;
}

fs::path save(const CameraProfile& profile) {
  const std::string json = encodeProfile(profile);
  fs::create_directories(directory());
  fs::path file = fileOf(profile);
  replaceEntryAtomically(file, json);
  return file;
}

std::vector<CameraProfile> loadAll() {
  copyLegacyProfiles(legacyDirectory(), directory());
  fs::create_directories(directory());
  std::vector<CameraProfile> profiles;
  for (const fs::path& file : files()) {
    if (auto profile = loadStored(file)) profiles.push_back(std::move(*profile));
  }
  sortByName(profiles);
  return profiles;
}

fs::path setAside(const fs::path& file) {
  const fs::path first = asideOf(file);
  fs::path place = first;
  for (std::int64_t number = 2; !movedTo(file, place); ++number)
    place = first.native() + "-" + std::to_string(number);
  return place;
}

void remove(const CameraProfile& profile) {
  fs::remove(fileOf(profile));
}

CameraProfile importProfile(const fs::path& url) {
  requireImportSize(url);
  CameraProfile profile = decodeImported(url);
  validateImported(profile);
  profile.id = UUID::random();
  save(profile);
  return profile;
}

void exportProfile(const CameraProfile& profile, const fs::path& url) {
  replaceFileAtomically(url, encodeProfile(profile));
}

}  // namespace ProfileStore
}  // namespace tessaly
