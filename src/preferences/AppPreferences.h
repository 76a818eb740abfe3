// The user's settings over the per-user store. Every getter reads the store, every setter writes it at once; a bad
// stored value reads as the default. All members are safe from any thread.
#pragma once

#include "preferences/AppLanguage.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

enum class AppAppearance { system, light, dark };

[[nodiscard]] std::string_view rawValue(AppAppearance appearance);
[[nodiscard]] std::optional<AppAppearance> appAppearance(std::string_view rawValue);

/// What to do when the output name of a source is already taken.
enum class ExistingOutputPolicy { skip, numberedCopy };

[[nodiscard]] std::string_view rawValue(ExistingOutputPolicy policy);
[[nodiscard]] std::optional<ExistingOutputPolicy> existingOutputPolicy(std::string_view rawValue);

class AppPreferences {
 public:
  /// The application's own settings: in TESSALY_HOME when that is set, else in the user's configuration folder.
  [[nodiscard]] static AppPreferences& shared();

  /// Settings kept in the file at this path (see SettingsFile).
  explicit AppPreferences(const std::filesystem::path& file);
  ~AppPreferences();

  [[nodiscard]] AppLanguage language() const;
  void setLanguage(AppLanguage language);

  [[nodiscard]] AppAppearance appearance() const;
  void setAppearance(AppAppearance appearance);

  /// 0 (automatic) to 4; clamped when read and when written.
  [[nodiscard]] std::int64_t workers() const;
  void setWorkers(std::int64_t workers);

  [[nodiscard]] ExistingOutputPolicy existingOutputPolicy() const;
  void setExistingOutputPolicy(ExistingOutputPolicy policy);

  [[nodiscard]] bool saveLog() const;
  void setSaveLog(bool save);

  [[nodiscard]] bool openAfterCompletion() const;
  void setOpenAfterCompletion(bool open);

  [[nodiscard]] bool useCustomOutput() const;
  void setUseCustomOutput(bool use);

  /// The custom output folder's native path, byte for byte; nothing removes it.
  [[nodiscard]] std::optional<std::string> outputBookmark() const;
  void setOutputBookmark(const std::optional<std::string>& bookmark);

  /// The custom output folder as it is shown.
  [[nodiscard]] std::string outputPath() const;
  void setOutputPath(const std::string& path);

  /// Removes every setting of this application, and nothing else, from the store.
  void reset();

  /// Tells every observer, on the calling thread, that settings have changed ("Tessaly.preferencesChanged").
  void notify();

  /// Calls `observer` at every notify() until the returned registration is destroyed.
  using Registration = std::shared_ptr<void>;
  [[nodiscard]] Registration observe(std::function<void()> observer);

  /// How many files to repair at once on a machine with this much memory (bytes) and this many processors.
  [[nodiscard]] static std::int64_t automaticWorkers(std::uint64_t memory, std::int64_t processors);
  [[nodiscard]] static std::int64_t automaticWorkers();

 private:
  struct Store;
  std::unique_ptr<Store> store_;
};

}  // namespace tessaly
