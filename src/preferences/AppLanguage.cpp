#include "preferences/AppLanguage.h"

#include "preferences/QtGate.h"
#include "preferences/RawValues.h"

#include <QLocale>
#include <QStringList>
#include <mutex>

namespace tessaly {
namespace {

constexpr std::array<RawValue<AppLanguage>, 4> rawValues{{
    {AppLanguage::system, "system"},
    {AppLanguage::english, "en"},
    {AppLanguage::chinese, "zh-Hans"},
    {AppLanguage::french, "fr"},
}};

std::optional<AppLanguage> spoken(const std::string& tag) {
  if (tag.starts_with("zh")) return AppLanguage::chinese;
  if (tag.starts_with("fr")) return AppLanguage::french;
  if (tag.starts_with("en")) return AppLanguage::english;
  return std::nullopt;
}

}  // namespace

std::string_view rawValue(AppLanguage language) {
  return rawValueOf(rawValues, language);
}

std::optional<AppLanguage> appLanguage(std::string_view rawValue) {
  return caseOf(rawValues, rawValue);
}

std::vector<std::string> preferredLanguages() {
  const std::lock_guard guard(qtGate());
  std::vector<std::string> tags;
  for (const QString& tag : QLocale::system().uiLanguages())
    tags.push_back(tag.toStdString());
  return tags;
}

AppLanguage resolved(AppLanguage language, const std::vector<std::string>& preferred) {
  if (language != AppLanguage::system) return language;
  for (const std::string& tag : preferred) {
    if (const auto match = spoken(tag)) return *match;
  }
  return AppLanguage::english;
}

AppLanguage resolved(AppLanguage language) {
  return language == AppLanguage::system ? resolved(language, preferredLanguages()) : language;
}

}  // namespace tessaly
