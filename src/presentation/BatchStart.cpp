#include "presentation/BatchStart.h"

#include "batch/OutputFolder.h"
#include "batch/OutputFolderAccess.h"
#include "localization/Localization.h"
#include "preferences/AppPreferences.h"

namespace tessaly::BatchStart {

std::optional<std::string> missingChoice(bool hasProfile, bool hasInputFolder) {
  if (!hasProfile) return L("Create and save a camera profile first.");
  if (!hasInputFolder) return L("Choose an input folder.");
  return std::nullopt;
}

std::filesystem::path outputFolder(const std::optional<std::filesystem::path>& chosen,
                                   const std::filesystem::path& inputFolder) {
  if (chosen) return *chosen;
  if (AppPreferences::shared().useCustomOutput()) return OutputFolderAccess::resolve();
  return defaultOutputFolder(inputFolder);
}

std::optional<std::string> sameFolder(const std::filesystem::path& inputFolder,
                                      const std::filesystem::path& outputFolder) {
  if (!isSameFolder(inputFolder, outputFolder)) return std::nullopt;
  return L("Input and output folders cannot be the same.");
}

BatchOptions options() {
  const AppPreferences& preferences = AppPreferences::shared();
  return {preferences.existingOutputPolicy(), preferences.saveLog()};
}

std::int64_t workers(std::int64_t choice) {
  return choice == 0 ? AppPreferences::automaticWorkers() : choice;
}

}  // namespace tessaly::BatchStart
