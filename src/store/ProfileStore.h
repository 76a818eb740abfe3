// The user's camera profiles, one JSON file each in a per-user folder. No state besides the files.
//
// Stateless; safe from several threads and beside other processes: files appear and change as a whole. What the file
// system refuses is thrown as std::system_error.
#pragma once

#include "profile/CameraProfile.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessaly {

/// A profile that cannot be imported; what() is the text for the user, in the interface's language.
class InvalidProfile final : public std::runtime_error {
 public:
  /// `reason`: what is wrong with the profile, in English.
  explicit InvalidProfile(std::string reason);

  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

/// A file of the store that cannot be read as a profile; what() is its full path, ": " and the reason.
class UnreadableProfile final : public std::runtime_error {
 public:
  UnreadableProfile(std::filesystem::path file, std::string reason);

  [[nodiscard]] const std::filesystem::path& file() const { return file_; }

  /// The decoder's or the system's words, in English.
  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  std::filesystem::path file_;
  std::string reason_;
};

namespace ProfileStore {

/// The folder of the profiles; not created by asking.
[[nodiscard]] std::filesystem::path directory();

/// The file that a profile is kept in, whether or not it is there.
[[nodiscard]] std::filesystem::path fileOf(const CameraProfile& profile);

/// The profile files in the folder, in no particular order; none when there is no folder.
[[nodiscard]] std::vector<std::filesystem::path> files();

/// The file of an earlier version of the application that a profile file of this name is copied from when it is
/// missing; nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> earlierFileOf(const std::filesystem::path& file);

/// Writes the profile atomically to the file named after its id, over an earlier version of it or a link of its
/// name. Returns that file.
std::filesystem::path save(const CameraProfile& profile);

/// All profiles, sorted by name in natural order, then by id, after copying those of an earlier version of the
/// application. One file that cannot be read fails the whole call: throws UnreadableProfile. One that another process
/// deletes meanwhile is not among them.
[[nodiscard]] std::vector<CameraProfile> loadAll();

/// Takes a file of the store that cannot be read out of the way, for loadAll() to succeed: gives it the ending
/// ".unreadable", numbered where that name is taken, so that nothing is replaced. Returns where it is now. It is not
/// migrated again from the folder of an earlier version of the application.
std::filesystem::path setAside(const std::filesystem::path& file);

/// Removes the profile's file; one that is missing is no error.
void remove(const CameraProfile& profile);

/// Reads, checks and saves a profile file under a new id, so that nothing is replaced; returns the saved profile.
/// Throws InvalidProfile for a file of 0 or more than 5,000,000 bytes, no profile, or values out of their limits.
CameraProfile importProfile(const std::filesystem::path& url);

/// Writes the profile's JSON form atomically to `url`, over an earlier file.
void exportProfile(const CameraProfile& profile, const std::filesystem::path& url);

/// Throws InvalidProfile unless every field is within its limits.
void validateImported(const CameraProfile& profile);

}  // namespace ProfileStore
}  // namespace tessaly
