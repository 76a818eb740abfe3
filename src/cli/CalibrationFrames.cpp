#include "cli/CalibrationFrames.h"

#include "batch/SourceFiles.h"
#include "cli/Failures.h"
#include "dng/DNGError.h"
#include "platform/Text.h"
#include "presentation/CalibrationStart.h"

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& argument, bool isFolder) {
  const fs::path absolute = fs::absolute(argument).lexically_normal();
  return isFolder ? absolute : absolute.parent_path();
}

/// Adds what one argument names; tells whether it is a folder.
bool addFrames(const fs::path& argument, std::vector<fs::path>& files) {
  try {
    if (fs::is_directory(fs::status(argument))) {
      const std::vector<fs::path> listed = sourceFiles(argument);
      files.insert(files.end(), listed.begin(), listed.end());
      return true;
    }
    if (!fs::exists(argument))
      throw fs::filesystem_error("", std::make_error_code(std::errc::no_such_file_or_directory));
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, argument);
  }
  files.push_back(argument);
  return false;
}

}  // namespace

CalibrationFrames calibrationFrames(const std::vector<std::string>& arguments) {
  CalibrationFrames frames;
  bool anyFolder = false;
  for (const std::string& argument : arguments) {
    const bool isFolder = addFrames(argument, frames.files);
    anyFolder = anyFolder || isFolder;
    if (frames.folder.empty()) frames.folder = displayName(folderOf(argument, isFolder));
  }
  if (!anyFolder) return frames;
  if (const auto problem = CalibrationStart::tooFewFiles(frames.files))
    throw CommandFailure({*problem, DNGError::invalid("At least three calibration DNG files are required").what()});
  return frames;
}

}  // namespace tessaly::cli
