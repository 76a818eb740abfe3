#include "house/HouseRules.h"

#include "house/SourceTree.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace tessaly::house {
namespace {

namespace fs = std::filesystem;

std::string at(const TextFile& file, std::size_t line) {
  return file.path + ":" + std::to_string(line + 1) + ": ";
}

using LineCheck = std::function<std::string(const TextFile& file, const std::string& line)>;

/// What `check` says of the lines of these files, each with its place.
Complaints complaintsOf(const std::vector<TextFile>& files, const LineCheck& check) {
  Complaints complaints;
  for (const TextFile& file : files) {
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      const std::string complaint = check(file, file.lines[i]);
      if (!complaint.empty()) complaints.push_back(at(file, i) + complaint);
    }
  }
  return complaints;
}

std::string folderOf(const std::string& path) {
  const std::string below = path.starts_with("src/") ? path.substr(4) : path;
  const std::size_t slash = below.find('/');
  return slash == std::string::npos ? "" : below.substr(0, slash);
}

// The floors from below; folders of one floor do not know each other.
const std::map<std::string, int>& floors() {
  static const std::map<std::string, int> floors{
      {"platform", 0},     {"dng", 1},   {"profile", 2}, {"preferences", 2},  {"repair", 3}, {"calibration", 3},
      {"localization", 3}, {"store", 4}, {"batch", 5},   {"presentation", 6}, {"cli", 7},    {"app", 7}};
  return floors;
}

std::string upwardInclude(const TextFile& file, const std::string& line) {
  if (!line.starts_with("#include \"")) return {};
  const std::string from = folderOf(file.path);
  const std::string to = folderOf(includedBy(line));
  if (from == to) return {};
  if (!floors().contains(from)) return "stands on no known floor";
  const bool isBelow = floors().contains(to) && floors().at(to) < floors().at(from);
  return isBelow ? "" : "includes " + includedBy(line);
}

/// Who may include what lies inside another folder.
struct OpenRoom {
  std::string guest;  ///< a folder of src/; empty: every one
  std::string inside;
};

const std::vector<OpenRoom>& openRooms() {
  static const std::vector<OpenRoom> rooms{
      // The decisions of the profile tab without its widgets, which exist to be shared by window and command line.
      {"", "calibration/review/"},
      // The JSON form of the metadata is part of the engine's public face, but its rules are those of the metadata.
      {"cli", "dng/metadata/DNGMetadataJSON.h"},
      // Repairing a file opens it once: the planes, the source and the copy share one reader, step by step.
      {"repair", "dng/copy/CopyWriter.h"},
      {"repair", "dng/copy/SampleWindow.h"},
      {"repair", "dng/copy/StreamedCopy.h"},
      {"repair", "dng/samples/SliceLayout.h"},
      {"repair", "dng/copy/SourceImage.h"},
      {"repair", "dng/samples/RawPlaneSource.h"}};
  return rooms;
}

std::string intrusion(const TextFile& file, const std::string& line) {
  if (!line.starts_with("#include \"")) return {};
  const std::string included = includedBy(line);
  const std::string guest = folderOf(file.path);
  const bool isAtHome = folderOf(included) == guest;
  const bool isFace = std::count(included.begin(), included.end(), '/') < 2;
  if (isAtHome || isFace) return {};
  const bool isInvited = std::any_of(openRooms().begin(), openRooms().end(), [&](const OpenRoom& room) {
    return (room.guest.empty() || room.guest == guest) && included.starts_with(room.inside);
  });
  return isInvited ? "" : "includes " + included + ", which is not in that folder's face";
}

// "Reader.h" is the header of Reader.cpp and of ReaderLimits.cpp, not of Readership.cpp.
bool implements(const fs::path& source, const fs::path& header) {
  const std::string part = source.stem().string();
  const std::string whole = header.stem().string();
  if (source.parent_path() != header.parent_path() || !part.starts_with(whole)) return false;
  return part.size() == whole.size() || (part[whole.size()] >= 'A' && part[whole.size()] <= 'Z');
}

std::string toolkitInclude(const TextFile& file, const std::string& line) {
  const std::string included = includedBy(line);
  const bool isToolkit = included.size() > 1 && included[0] == 'Q' && included[1] >= 'A' && included[1] <= 'z';
  return isToolkit && !file.path.starts_with("src/app/") ? "includes " + included : "";
}

std::string costlyInclude(const TextFile& file, const std::string& line) {
  static const std::set<std::string> readers{"src/cli/Grammar.cpp", "src/app/main.cpp"};
  const std::string included = includedBy(line);
  const bool isCostly = (included.starts_with("CLI/") && !readers.contains(file.path)) ||
                        (included == "nlohmann/json.hpp" && file.path.ends_with(".h"));
  return isCostly ? "includes " + included : "";
}

std::string localeBoundCall(const TextFile&, const std::string& line) {
  static const std::set<std::string> functions{"printf",       "snprintf",      "sprintf", "fprintf", "strtod",
                                               "strtof",       "atof",          "stod",    "stof",    "sscanf",
                                               "stringstream", "ostringstream", "tolower"};
  for (const std::string& word : wordsOf(line))
    if (functions.contains(word)) return word + " depends on the locale";
  return {};
}

std::vector<std::string> listedPackages(const fs::path& root) {
  std::vector<std::string> packages = linesOf(root / "packages.txt");
  std::erase_if(packages, [](const std::string& line) { return line.empty() || line[0] == '#' || line[0] == '['; });
  return packages;
}

// What find_package and pkg_check_modules are asked for, and the package that brings it.
const std::map<std::string, std::string>& packageOfLibrary() {
  static const std::map<std::string, std::string> packages{
      {"Threads", "g++"},         {"fmt", "libfmt-dev"},
      {"ICU", "libicu-dev"},      {"nlohmann_json", "nlohmann-json3-dev"},
      {"CLI11", "libcli11-dev"},  {"PkgConfig", "pkg-config"},
      {"uuid", "uuid-dev"},       {"Qt6", "qt6-base-dev"},
      {"Svg", "qt6-svg-dev"},     {"GTest", "libgtest-dev"},
      {"libraw_r", "libraw-dev"}, {"benchmark", "libbenchmark-dev"}};
  return packages;
}

// The library that a line of CMake looks for, and Qt's modules that have packages of their own.
std::vector<std::string> librariesWanted(const std::string& line) {
  const std::vector<std::string> words = wordsOf(line);
  if (words.size() < 2) return {};
  if (words[0] == "pkg_check_modules") return {words.back()};
  if (words[0] != "find_package") return {};
  std::vector<std::string> wanted{words[1]};
  if (words[1] == "Qt6" && std::find(words.begin(), words.end(), "Svg") != words.end()) wanted.emplace_back("Svg");
  return wanted;
}

bool isCMake(const TextFile& file) {
  return file.path.ends_with("CMakeLists.txt") || file.path.ends_with(".cmake");
}

/// The .cpp files that a CMakeLists.txt names, below the root.
std::set<std::string> builtSources(const std::vector<TextFile>& files) {
  std::set<std::string> built;
  for (const TextFile& file : files) {
    if (!isCMake(file)) continue;
    const fs::path folder = fs::path(file.path).parent_path();
    for (const std::string& line : file.lines)
      for (const std::string& argument : argumentsOf(line))
        if (argument.ends_with(".cpp")) built.insert((folder / argument).lexically_normal().generic_string());
  }
  return built;
}

// Longer ones, with the reason.
std::size_t longestAllowed(const std::string& path) {
  static const std::map<std::string, std::size_t> exceptions{
      {"src/localization/LocalizationEntries.cpp", 800},     // a table: one text a row, in three languages
      {"tests/calibration/ReferenceCalibration.cpp", 800}};  // the rules in one piece, to be read from top to bottom
  if (exceptions.contains(path)) return exceptions.at(path);
  return path.starts_with("tests/") ? 750 : 400;
}

}  // namespace

Complaints upwardIncludes(const fs::path& root) {
  return complaintsOf(cppFiles(root, "src/"), upwardInclude);
}

Complaints intrusions(const fs::path& root) {
  return complaintsOf(cppFiles(root, "src/"), intrusion);
}

Complaints sourcesWithoutHeader(const fs::path& root) {
  std::vector<fs::path> headers;
  std::vector<fs::path> sources;
  for (const TextFile& file : cppFiles(root, "src/"))
    (file.path.ends_with(".h") ? headers : sources).emplace_back(file.path);
  Complaints complaints;
  for (const fs::path& source : sources) {
    const auto isOwn = [&](const fs::path& header) { return implements(source, header); };
    if (source.filename() != "main.cpp" && std::none_of(headers.begin(), headers.end(), isOwn))
      complaints.push_back(source.generic_string() + " has no header and is not named after one beside it");
  }
  return complaints;
}

Complaints toolkitIncludes(const fs::path& root) {
  return complaintsOf(cppFiles(root, "src/"), toolkitInclude);
}

Complaints costlyIncludes(const fs::path& root) {
  return complaintsOf(cppFiles(root, "src/"), costlyInclude);
}

Complaints localeBoundCalls(const fs::path& root) {
  return complaintsOf(cppFiles(root, "src/"), localeBoundCall);
}

Complaints packageFaults(const fs::path& root) {
  Complaints complaints;
  std::set<std::string> listed;
  for (const std::string& package : listedPackages(root))
    if (!listed.insert(package).second) complaints.push_back("packages.txt: lists " + package + " twice");
  std::vector<TextFile> files = textFiles(root);
  std::erase_if(files, [](const TextFile& file) { return !isCMake(file); });
  const auto missing = complaintsOf(files, [&](const TextFile&, const std::string& line) {
    for (const std::string& library : librariesWanted(line)) {
      const auto package = packageOfLibrary().find(library);
      if (package == packageOfLibrary().end()) return "no package is known here for " + library;
      if (!listed.contains(package->second)) return "packages.txt lacks " + package->second + " for " + library;
    }
    return std::string();
  });
  complaints.insert(complaints.end(), missing.begin(), missing.end());
  return complaints;
}

Complaints unbuiltSources(const fs::path& root) {
  const std::vector<TextFile> files = textFiles(root);
  const std::set<std::string> built = builtSources(files);
  Complaints complaints;
  for (const TextFile& file : files)
    if (file.path.ends_with(".cpp") && !built.contains(file.path)) complaints.push_back(file.path + " is not built");
  return complaints;
}

Complaints longFiles(const fs::path& root) {
  Complaints complaints;
  for (const TextFile& file : cppFiles(root, ""))
    if (file.lines.size() > longestAllowed(file.path))
      complaints.push_back(file.path + " has " + std::to_string(file.lines.size()) + " lines");
  return complaints;
}

Complaints silentHeaders(const fs::path& root) {
  Complaints complaints;
  for (const TextFile& file : cppFiles(root, ""))
    if (file.path.ends_with(".h") && (file.lines.empty() || !file.lines[0].starts_with("// ")))
      complaints.push_back(file.path + " does not say what it is");
  return complaints;
}

}  // namespace tessaly::house
