#include "preferences/AppPreferences.h"

#include "preferences/QtGate.h"
#include "preferences/RawValues.h"
#include "preferences/StoredNumber.h"
#include "preferences/UserFolders.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <algorithm>
#include <mutex>
#include <vector>

namespace tessaly {
namespace {

constexpr const char* prefix = "Tessaly.settings.";
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

QString key(const char* name) {
  return QString::fromLatin1(prefix) + QString::fromLatin1(name);
}

QString qText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
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
  explicit Store(const std::filesystem::path& file)
      : settings(QString::fromLocal8Bit(file.c_str()), QSettings::IniFormat) {}

  /// What the file holds now, also when another process has written it since.
  QVariant read(const char* name) {
    const std::lock_guard guard(qtGate());
    settings.sync();
    return settings.value(key(name));
  }

  void write(const char* name, const QVariant& value) {
    const std::lock_guard guard(qtGate());
    settings.setValue(key(name), value);
    settings.sync();
  }

  void remove(const char* name) {
    const std::lock_guard guard(qtGate());
    settings.remove(key(name));
    settings.sync();
  }

  void removeAll() {
    const std::lock_guard guard(qtGate());
    settings.sync();
    for (const QString& name : settings.allKeys()) {
      if (name.startsWith(QString::fromLatin1(prefix))) settings.remove(name);
    }
    settings.sync();
  }

  std::string text(const char* name) { return read(name).toString().toStdString(); }

  /// A boolean counts only where the file says "true" or "false".
  bool flag(const char* name, bool fallback) {
    const std::string stored = text(name);
    return stored == "true" || (stored != "false" && fallback);
  }

  QSettings settings;
  std::mutex observersLock;
  std::vector<std::weak_ptr<std::function<void()>>> observers;
};

AppPreferences& AppPreferences::shared() {
  static AppPreferences preferences(preferencesFile());
  return preferences;
}

AppPreferences::AppPreferences(const std::filesystem::path& file) {
  const std::lock_guard guard(qtGate());
  store_ = std::make_unique<Store>(file);
}

AppPreferences::~AppPreferences() {
  const std::lock_guard guard(qtGate());
  store_.reset();
}

AppLanguage AppPreferences::language() const {
  return appLanguage(store_->text("language")).value_or(AppLanguage::system);
}

void AppPreferences::setLanguage(AppLanguage language) {
  store_->write("language", qText(rawValue(language)));
}

AppAppearance AppPreferences::appearance() const {
  return appAppearance(store_->text("appearance")).value_or(AppAppearance::system);
}

void AppPreferences::setAppearance(AppAppearance appearance) {
  store_->write("appearance", qText(rawValue(appearance)));
}

std::int64_t AppPreferences::workers() const {
  return storedNumber(store_->text("workers"), 0, maximumWorkers);
}

void AppPreferences::setWorkers(std::int64_t workers) {
  store_->write("workers", static_cast<qlonglong>(std::clamp<std::int64_t>(workers, 0, maximumWorkers)));
}

// The key is older than the property's name.
ExistingOutputPolicy AppPreferences::existingOutputPolicy() const {
  return tessaly::existingOutputPolicy(store_->text("collision")).value_or(ExistingOutputPolicy::skip);
}

void AppPreferences::setExistingOutputPolicy(ExistingOutputPolicy policy) {
  store_->write("collision", qText(rawValue(policy)));
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
  const QVariant stored = store_->read("outputBookmark");
  if (stored.typeId() != QMetaType::QByteArray) return std::nullopt;
  return stored.toByteArray().toStdString();
}

void AppPreferences::setOutputBookmark(const std::optional<std::string>& bookmark) {
  if (bookmark) {
    store_->write("outputBookmark", QByteArray::fromStdString(*bookmark));
  } else {
    store_->remove("outputBookmark");
  }
}

std::string AppPreferences::outputPath() const {
  return store_->text("outputPath");
}
void AppPreferences::setOutputPath(const std::string& path) {
  store_->write("outputPath", qText(path));
}

void AppPreferences::reset() {
  store_->removeAll();
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
