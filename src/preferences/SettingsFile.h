// The user's settings as a file: one JSON object, a line a key. What others write into it shows at the next reading,
// keys that nobody here knows are kept, and what cannot be written holds as long as this object.
//
// Safe from several threads, and with several processes that change the same file.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

class SettingsFile {
 public:
  /// The file and its folder need not be there. A file that is no JSON object counts as empty; the first change sets it
  /// aside under its name with ".unreadable".
  explicit SettingsFile(std::filesystem::path file);
  ~SettingsFile();

  /// What the file holds now under a key; null when there is none.
  [[nodiscard]] nlohmann::json value(const std::string& key) const;

  /// Stores the value at once; null removes the key.
  void setValue(const std::string& key, const nlohmann::json& value);

  /// Removes every key that begins like this.
  void removeAll(const std::string& prefix);

  /// Adds the members of an object whose keys are not there yet; false when they could not be written.
  bool addMissing(const nlohmann::json& values);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Bytes as a value, a path's for example: a text where they are UTF-8, else {"bytes": [255, …]}.
[[nodiscard]] nlohmann::json valueOfBytes(std::string_view bytes);

/// The bytes again; nothing for any other value.
[[nodiscard]] std::optional<std::string> bytesOfValue(const nlohmann::json& value);

}  // namespace tessaly
