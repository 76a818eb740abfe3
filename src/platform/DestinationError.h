// A failure of the place that a file is written to, as opposed to that of what is read: a full disk, a folder without
// permission, a name that is taken.
#pragma once

#include <filesystem>
#include <system_error>
#include <utility>

namespace tessaly {

class DestinationError final : public std::system_error {
 public:
  DestinationError(int errorNumber, std::filesystem::path folder)
      : std::system_error(errorNumber, std::generic_category()), folder_(std::move(folder)) {}

  /// The folder that was to hold the file.
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

/// Runs a step of writing into `folder`; what the system refuses there leaves as DestinationError.
template <typename Step>
auto atDestination(const std::filesystem::path& folder, Step step) {
  try {
    return step();
  } catch (const std::system_error& error) {
    throw DestinationError(error.code().value(), folder);
  }
}

}  // namespace tessaly
