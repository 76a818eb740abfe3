// A fresh folder for one test, removed with everything in it when the test ends. Not copyable: it owns the folder.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessaly::tests {

class TemporaryFolder {
 public:
  /// Below the system's temporary folder, or below `parent` (to try another file system).
  explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string name = (parent / "tessaly-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("Cannot make a folder like " + name);
    path_ = name;
  }

  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// The path of a file or folder of that name in it.
  [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace tessaly::tests
