// The user's camera profiles, one JSON file each in a per-user folder. No state besides the files.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "profile/CameraProfile.h"

namespace tessaly {

/// A profile file that cannot be imported; what() is the text for the user, in the interface's language.
class InvalidProfile final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

namespace ProfileStore {

/// The folder of the profiles; not created by asking.
[[nodiscard]] std::filesystem::path directory();

/// Writes the profile atomically to the file named after its id, over an earlier version of it. Returns that file.
std::filesystem::path save(const CameraProfile& profile);

/// All profiles, sorted by name in natural order, then by id, after copying those of an earlier version of the
/// application. One file that cannot be read fails the whole call, with its name.
[[nodiscard]] std::vector<CameraProfile> loadAll();

/// Removes the profile's file; one that is missing is no error.
void remove(const CameraProfile& profile);

/// Reads, checks and saves a profile file under a new id, so that nothing is replaced. Throws InvalidProfile.
CameraProfile importProfile(const std::filesystem::path& url);

/// Writes the profile's JSON form atomically to `url`, over an earlier file.
void exportProfile(const CameraProfile& profile, const std::filesystem::path& url);

/// Throws InvalidProfile unless every field is within its limits.
void validateImported(const CameraProfile& profile);

}  // namespace ProfileStore
}  // namespace tessaly
