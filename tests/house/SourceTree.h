// The text files of the project, as far as the rules of the house read them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::house {

struct TextFile {
  std::string path;  ///< below the root, with slashes
  std::vector<std::string> lines;
};

/// Everything that is committed, by name: no build folders, no hidden ones but .ci, no pictures.
[[nodiscard]] std::vector<TextFile> textFiles(const std::filesystem::path& root);

/// Only C++ headers and sources below a folder, for example "src/".
[[nodiscard]] std::vector<TextFile> cppFiles(const std::filesystem::path& root, std::string_view below);

[[nodiscard]] std::vector<std::string> linesOf(const std::filesystem::path& file);

/// The words of a line: letters, digits and underscores.
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view line);

/// A line of CMake in pieces: what stands between spaces, brackets and quotes.
[[nodiscard]] std::vector<std::string> argumentsOf(std::string_view line);

/// What an include line includes, without its quotes or brackets; empty for another line.
[[nodiscard]] std::string includedBy(std::string_view line);

}  // namespace tessaly::house
