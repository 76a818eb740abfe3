#include "preferences/AppPreferences.h"

#include "preferences/RawValues.h"
#include "preferences/SettingsFile.h"
#include "preferences/UserFolders.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

constexpr const char* settingsPrefix = "Tessaly.settings.";
constexpr std::int64_t maximumWorkers = 4;

constexpr std::array<RawValue<AppAppearance>, 3> appearances{{
    {AppAppearance::system, "system"},
    {AppAppearance::light, "light"},
    {AppAppearance::dark, "dark"},
}};

constexpr std::array<RawValue<ExistingOutputPolicy>, 2> policies{{
    {ExistingOutputPolicy::skip, "skip"},
    {ExistingOutputPolicy::numberedCopy, "numberedCopy"},
}};

std::string key(const char* name) {
  return std::string(settingsPrefix) + name;
}

}  // namespace

std::string_view rawValue(AppAppearance appearance) {
  return rawValueOf(appearances, appearance);
}
std::optional<AppAppearance> appAppearance(std::string_view rawValue) {
  return caseOf(appearances, rawValue);
}

std::string_view rawValue(ExistingOutputPolicy policy) {
  return rawValueOf(policies, policy);
}
std::optional<ExistingOutputPolicy> existingOutputPolicy(std::string_view rawValue) {
  return caseOf(policies, rawValue);
}

/// The settings in their file, and who wants to hear of changes.
struct AppPreferences::Store {
  explicit Store(const std::filesystem::path& path) : file(path) {}

  nlohmann::json read(const char* name) const { return file.value(key(name)); }

  void write(const char* name, const nlohmann::json& value) { file.setValue(key(name), value); }

  /// What is no text reads as an empty one.
  std::string text(const char* name) const {
    const nlohmann::json stored = read(name);
    return stored.is_string() ? stored.get<std::string>() : "";
  }

  /// Only a boolean counts as one.
  bool flag(const char* name, bool fallback) const {
    const nlohmann::json stored = read(name);
    return stored.is_boolean() ? stored.get<bool>() : fallback;
  }

  /// The whole part of a number, clamped; what is no number counts as 0.
  std::int64_t number(const char* name, std::int64_t lowest, std::int64_t highest) const {
    const nlohmann::json stored = read(name);
    const double value = stored.is_number() ? stored.get<double>() : 0;
    return static_cast<std::int64_t>(std::clamp(value, static_cast<double>(lowest), static_cast<double>(highest)));
  }

  SettingsFile file;
  std::mutex observersLock;
  std::vector<std::weak_ptr<std::function<void()>>> observers;
};

AppPreferences& AppPreferences::shared() {
  static AppPreferences preferences(preferencesFile());
  return preferences;
}

AppPreferences::AppPreferences(const std::filesystem::path& file) : store_(std::make_unique<Store>(file)) {}

AppPreferences::~AppPreferences() = default;

AppLanguage AppPreferences::language() const {
  return appLanguage(store_->text("language")).value_or(AppLanguage::system);
}

void AppPreferences::setLanguage(AppLanguage language) {
  store_->write("language", rawValue(language));
}

AppAppearance AppPreferences::appearance() const {
  return appAppearance(store_->text("appearance")).value_or(AppAppearance::system);
}

void AppPreferences::setAppearance(AppAppearance appearance) {
  store_->write("appearance", rawValue(appearance));
}

std::int64_t AppPreferences::workers() const {
  return store_->number("workers", 0, maximumWorkers);
}

void AppPreferences::setWorkers(std::int64_t workers) {
  store_->write("workers", std::clamp<std::int64_t>(workers, 0, maximumWorkers));
}

// The key is older than the property's name.
ExistingOutputPolicy AppPreferences::existingOutputPolicy() const {
  return tessaly::existingOutputPolicy(store_->text("collision")).value_or(ExistingOutputPolicy::skip);
}

void AppPreferences::setExistingOutputPolicy(ExistingOutputPolicy policy) {
  store_->write("collision", rawValue(policy));
}

bool AppPreferences::saveLog() const {
  return store_->flag("saveLog", true);
}
void AppPreferences::setSaveLog(bool save) {
  store_->write("saveLog", save);
}

bool AppPreferences::openAfterCompletion() const {
  return store_->flag("autoOpen", true);
}
void AppPreferences::setOpenAfterCompletion(bool open) {
  store_->write("autoOpen", open);
}

bool AppPreferences::useCustomOutput() const {
  return store_->flag("customOutput", false);
}
void AppPreferences::setUseCustomOutput(bool use) {
  store_->write("customOutput", use);
}

std::optional<std::string> AppPreferences::outputBookmark() const {
  return bytesOfValue(store_->read("outputBookmark"));
}

void AppPreferences::setOutputBookmark(const std::optional<std::string>& bookmark) {
  store_->write("outputBookmark", bookmark ? valueOfBytes(*bookmark) : nlohmann::json());
}

std::string AppPreferences::outputPath() const {
  return store_->text("outputPath");
}
void AppPreferences::setOutputPath(const std::string& path) {
  store_->write("outputPath", path);
}

void AppPreferences::reset() {
  store_->file.removeAll(settingsPrefix);
}

void AppPreferences::notify() {
  std::vector<std::weak_ptr<std::function<void()>>> observers;
  {
    const std::lock_guard guard(store_->observersLock);
    std::erase_if(store_->observers, [](const auto& observer) { return observer.expired(); });
    observers = store_->observers;
  }
  // Called without the lock, and each looked at again: an observer may end its own registration or another's.
  for (const auto& observer : observers) {
    if (const auto function = observer.lock()) (*function)();
  }
}

AppPreferences::Registration AppPreferences::observe(std::function<void()> observer) {
  auto registration = std::make_shared<std::function<void()>>(std::move(observer));
  const std::lock_guard guard(store_->observersLock);
  store_->observers.push_back(registration);
  return registration;
}

}  // namespace tessaly
