#include "house/SourceTree.h"

#include <algorithm>
#include <fstream>
#include <set>

namespace tessaly::house {
namespace {

namespace fs = std::filesystem;

bool isSkippedFolder(const std::string& name) {
  return name.starts_with("build") || name == "sample-set" || (name.starts_with('.') && name != ".ci");
}

bool isText(const fs::path& file) {
  static const std::set<std::string> endings{".cpp", ".h",   ".txt",     ".cmake", ".md",  ".sh",
                                             ".svg", ".qrc", ".desktop", ".json",  ".yml", ""};
  return endings.contains(file.extension().string());
}

bool isWordLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
         letter == '_';
}

/// The longest pieces of a line that consist of such letters.
template <typename Belongs>
std::vector<std::string> piecesOf(std::string_view line, Belongs belongs) {
  std::vector<std::string> pieces;
  auto end = line.begin();
  while (true) {
    const auto start = std::find_if(end, line.end(), belongs);
    if (start == line.end()) return pieces;
    end = std::find_if_not(start, line.end(), belongs);
    pieces.emplace_back(start, end);
  }
}

}  // namespace

std::vector<std::string> linesOf(const fs::path& file) {
  std::ifstream stream(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

std::vector<TextFile> textFiles(const fs::path& root) {
  std::vector<TextFile> files;
  for (auto entry = fs::recursive_directory_iterator(root); entry != fs::recursive_directory_iterator(); ++entry) {
    const fs::path& path = entry->path();
    if (entry->is_directory() && isSkippedFolder(path.filename().string())) entry.disable_recursion_pending();
    if (entry->is_regular_file() && isText(path))
      files.push_back({path.lexically_relative(root).generic_string(), linesOf(path)});
  }
  std::sort(files.begin(), files.end(), [](const TextFile& a, const TextFile& b) { return a.path < b.path; });
  return files;
}

std::vector<TextFile> cppFiles(const fs::path& root, std::string_view below) {
  std::vector<TextFile> files = textFiles(root);
  std::erase_if(files, [&](const TextFile& file) {
    return !file.path.starts_with(below) || (!file.path.ends_with(".cpp") && !file.path.ends_with(".h"));
  });
  return files;
}

std::vector<std::string> wordsOf(std::string_view line) {
  return piecesOf(line, isWordLetter);
}

std::vector<std::string> argumentsOf(std::string_view line) {
  return piecesOf(line, [](char letter) { return std::string_view(" \t()\"").find(letter) == std::string_view::npos; });
}

std::string includedBy(std::string_view line) {
  constexpr std::string_view directive = "#include ";
  if (!line.starts_with(directive) || line.size() < directive.size() + 2) return {};
  line.remove_prefix(directive.size() + 1);
  return std::string(line.substr(0, line.find_first_of("\">")));
}

}  // namespace tessaly::house
