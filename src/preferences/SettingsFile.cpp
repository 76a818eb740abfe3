#include "preferences/SettingsFile.h"

#include "platform/AtomicFile.h"
#include "platform/FileLock.h"
#include "platform/InputFile.h"
#include "platform/JSONNumbers.h"
#include "platform/Text.h"
#include "preferences/FileStamp.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <exception>
#include <functional>
#include <iterator>
#include <mutex>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;

/// A change of the whole object.
using Edit = std::function<void(json&)>;

/// Nothing for a file that is no JSON object; an empty object where there is no file.
std::optional<json> objectIn(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error)) return json::object();
  const InputFile file(path);
  std::string text(static_cast<std::size_t>(file.size()), '\0');
  text.resize(file.readAt(0, std::as_writable_bytes(std::span(text))));
  json object = json::parse(text, nullptr, false);
  return object.is_object() ? std::optional(std::move(object)) : std::nullopt;
}

json objectOrEmpty(const fs::path& path) {
  try {
    return objectIn(path).value_or(json::object());
  } catch (const std::exception&) {
    return json::object();  // what cannot be read has no settings
  }
}

std::string dumped(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// A line a key, to be read and edited by people.
std::string textOf(const json& object) {
  std::string text;
  for (const auto& item : object.items())
    text += (text.empty() ? "{\n  " : ",\n  ") + dumped(item.key()) + ": " + dumped(item.value());
  return text.empty() ? "{}\n" : text + "\n}\n";
}

/// The object as it will be changed; a file that holds none makes room.
json objectToChange(const fs::path& path) {
  if (auto object = objectIn(path)) return *std::move(object);
  fs::rename(path, fs::path(path) += ".unreadable");
  return json::object();
}

void store(const fs::path& path, const std::vector<Edit>& edits) {
  fs::create_directories(path.parent_path());
  const FileLock lock(fs::path(path) += ".lock");
  const json before = objectToChange(path);
  json after = before;
  for (const Edit& edit : edits)
    edit(after);
  if (after != before) replaceFileAtomically(path, textOf(after));
}

}  // namespace

struct SettingsFile::State {
  explicit State(fs::path path) : file(std::move(path)) {}

  /// The file's keys with what could not be written into it.
  const json& object() {
    const FileStamp now(file);
    if (now.mayDifferFrom(stamp)) {
      contents = objectOrEmpty(file);
      for (const Edit& edit : unwritten)
        edit(contents);
      stamp = now;
    }
    return contents;
  }

  /// False when the change, and every one before it since the last success, could not be written.
  bool change(Edit edit) {
    unwritten.push_back(std::move(edit));
    stamp = FileStamp();
    try {
      store(file, unwritten);
      unwritten.clear();
      return true;
    } catch (const std::exception&) {
      return false;  // a full disk or a folder without permission must not end the program: they hold in memory
    }
  }

  const fs::path file;
  std::mutex lock;
  FileStamp stamp;
  json contents = json::object();
  std::vector<Edit> unwritten;
};

SettingsFile::SettingsFile(fs::path file) : state_(std::make_unique<State>(std::move(file))) {}

SettingsFile::~SettingsFile() = default;

json SettingsFile::value(const std::string& key) const {
  const std::lock_guard guard(state_->lock);
  const json& object = state_->object();
  const auto found = object.find(key);
  return found == object.end() ? json() : *found;
}

void SettingsFile::setValue(const std::string& key, const json& value) {
  const std::lock_guard guard(state_->lock);
  state_->change([key, value](json& object) {
    if (value.is_null()) {
      object.erase(key);
    } else {
      object[key] = value;
    }
  });
}

void SettingsFile::removeAll(const std::string& prefix) {
  const std::lock_guard guard(state_->lock);
  state_->change([prefix](json& object) {
    for (auto item = object.begin(); item != object.end();)
      item = item.key().starts_with(prefix) ? object.erase(item) : std::next(item);
  });
}

bool SettingsFile::addMissing(const json& values) {
  const std::lock_guard guard(state_->lock);
  return state_->change([values](json& object) { object.insert(values.begin(), values.end()); });
}

json valueOfBytes(std::string_view bytes) {
  if (isValidUTF8(bytes)) return std::string(bytes);
  json numbers = json::array();
  for (const char byte : bytes)
    numbers.push_back(static_cast<std::uint8_t>(byte));
  return {{"bytes", std::move(numbers)}};
}

std::optional<std::string> bytesOfValue(const json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_object() || !value.contains("bytes") || !value["bytes"].is_array()) return std::nullopt;
  std::string bytes;
  bytes.reserve(value["bytes"].size());
  for (const json& number : value["bytes"]) {
    const auto byte = wholeNumber<std::uint8_t>(number);
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  return bytes;
}

}  // namespace tessaly
