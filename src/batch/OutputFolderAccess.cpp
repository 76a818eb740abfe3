#include "batch/OutputFolderAccess.h"

#include "localization/Localization.h"
#include "platform/Text.h"
#include "preferences/AppPreferences.h"

#include <unistd.h>

#include <optional>
#include <string>
#include <system_error>

namespace tessaly::OutputFolderAccess {

namespace {

constexpr std::string_view permissionText =
    "The saved output folder needs permission again. Choose it in Settings or choose an output folder for this batch.";

bool isWritableFolder(const std::filesystem::path& folder) {
  std::error_code error;
  return std::filesystem::is_directory(folder, error) && ::access(folder.c_str(), W_OK | X_OK) == 0;
}

std::system_error systemError(std::errc error) {
  return std::system_error(std::make_error_code(error));
}

}  // namespace

void save(const std::filesystem::path& folder) {
  const std::filesystem::file_status status = std::filesystem::status(folder);
  if (!std::filesystem::exists(status)) throw systemError(std::errc::no_such_file_or_directory);
  if (!std::filesystem::is_directory(status)) throw systemError(std::errc::not_a_directory);
  const std::filesystem::path absolute = std::filesystem::absolute(folder);
  AppPreferences::shared().setOutputBookmark(absolute.native());
  AppPreferences::shared().setOutputPath(displayText(absolute.native()));
}

std::filesystem::path resolve() {
  const std::optional<std::string> bookmark = AppPreferences::shared().outputBookmark();
  if (!bookmark || !isWritableFolder(*bookmark)) throw OutputFolderPermission(L(permissionText));
  return *bookmark;
}

}  // namespace tessaly::OutputFolderAccess
