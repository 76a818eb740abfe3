// A folder of photographs from one camera, a profile that fits them, and what each repaired copy must be, byte for
// byte: the ground that runs are disturbed on.
#pragma once

#include "profile/CameraProfile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessaly::tests {

using Bytes = std::vector<std::byte>;

struct SceneSize {
  int files = 12;
  std::int64_t width = 512;
  std::int64_t height = 384;
};

class RepairScene {
 public:
  /// Makes the photographs in `folder`/input. Scenes with different seeds show different photographs under the same
  /// names.
  RepairScene(const std::filesystem::path& folder, const SceneSize& size, unsigned seed = 1);

  [[nodiscard]] const std::filesystem::path& input() const { return input_; }
  [[nodiscard]] const std::filesystem::path& profileFile() const { return profileFile_; }
  [[nodiscard]] const CameraProfile& profile() const { return profile_; }
  [[nodiscard]] const std::map<std::string, Bytes>& originals() const { return originals_; }

  /// The repaired copy of each photograph, as made by repairing it alone.
  [[nodiscard]] const std::map<std::string, Bytes>& copies() const { return copies_; }

  [[nodiscard]] std::size_t count() const { return originals_.size(); }

  /// Puts the photographs back as they were made.
  void restore() const;

  /// Fails the test unless every photograph is as it was made and nothing else is in their folder.
  void expectOriginalsUntouched() const;

 private:
  std::filesystem::path input_;
  std::filesystem::path profileFile_;
  CameraProfile profile_;
  std::map<std::string, Bytes> originals_;
  std::map<std::string, Bytes> copies_;
};

/// What lies in an output folder.
struct OutputContents {
  std::map<std::string, Bytes> copies;   ///< under final names
  std::vector<std::string> temporaries;  ///< ".<UUID>.partial"
  std::vector<std::filesystem::path> logs;
  std::vector<std::string> others;  ///< whatever no run may leave
};

[[nodiscard]] OutputContents contentsOf(const std::filesystem::path& folder);

/// Fails the test unless every file under a final name is the whole copy of the photograph of that name, every log is
/// whole, and there is nothing else but hidden temporary files.
void expectOnlyWholeCopies(const OutputContents& contents, const RepairScene& scene);

/// Fails the test unless the log's lines are the header and one whole line for each of `files` files.
void expectWholeLog(const std::filesystem::path& log, std::size_t files);

}  // namespace tessaly::tests
