// Whole files as bytes, for tests that compare or damage them. Both throw std::runtime_error.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessaly::tests {

[[nodiscard]] inline std::vector<std::byte> readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("Cannot open " + path.string());
  std::vector<std::byte> bytes(std::filesystem::file_size(path));
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) throw std::runtime_error("Cannot read " + path.string());
  return bytes;
}

[[nodiscard]] inline std::string readText(const std::filesystem::path& path) {
  const std::vector<std::byte> bytes = readBytes(path);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (!file) throw std::runtime_error("Cannot write " + path.string());
}

/// Bytes from numbers, as they are written down by hand: bytesOf({0xAB, 0xC1, 0x23}).
[[nodiscard]] inline std::vector<std::byte> bytesOf(std::initializer_list<int> numbers) {
  std::vector<std::byte> bytes;
  for (const int number : numbers)
    bytes.push_back(static_cast<std::byte>(number));
  return bytes;
}

}  // namespace tessaly::tests
