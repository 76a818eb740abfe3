#include "localization/Localization.h"

#include "localization/DestinationMessages.h"
#include "localization/Format.h"
#include "localization/RejectionMessages.h"
#include "localization/Shown.h"
#include "platform/Text.h"
#include "preferences/AppPreferences.h"

#include <algorithm>
#include <atomic>
#include <iterator>

namespace tessaly {

namespace Localization {
namespace {

// `system` stands for "no override": it is never a language that a text is shown in.
std::atomic<AppLanguage> languageOverride = AppLanguage::system;

AppLanguage shown(std::optional<AppLanguage> asked) {
  return asked ? resolved(*asked) : language();
}

const Entry* entryOfEnglish(std::string_view english) {
  return findEntry([english](const Entry& entry) { return entry.english() == english; });
}

constexpr Entry helpFormat{
    "For help, email %@ with your camera model and we'll look at adding support.",
    "如需帮助，请发送邮件至 %@，注明相机型号，我们会评估添加支持。",
    "Pour obtenir de l’aide, écrivez à %@ avec le modèle de votre appareil ; nous étudierons sa prise en charge."};

}  // namespace

std::string helpLine(AppLanguage language) {
  return format(helpFormat.in(language), {std::string(supportEmail)});
}

const Entry* findEntry(const std::function<bool(const Entry&)>& fits) {
  for (const auto table : {entries(), additions()}) {
    const auto found = std::ranges::find_if(table, fits);
    if (found != table.end()) return &*found;
  }
  return nullptr;
}

AppLanguage language() {
  const AppLanguage chosen = languageOverride.load();
  return resolved(chosen == AppLanguage::system ? AppPreferences::shared().language() : chosen);
}

void setLanguageOverride(std::optional<AppLanguage> language) {
  languageOverride = language.value_or(AppLanguage::system);
}

std::string text(std::string_view english, std::optional<AppLanguage> language) {
  const Entry* entry = entryOfEnglish(english);
  return std::string(entry ? entry->in(shown(language)) : english);
}

std::string original(std::string_view text) {
  const Entry* entry =
      findEntry([text](const Entry& row) { return std::ranges::find(row.texts, text) != row.texts.end(); });
  return std::string(entry ? entry->english() : text);
}

std::string rejectionMessage(RejectionReason reason, std::string_view filename, std::optional<AppLanguage> language) {
  const AppLanguage tongue = shown(language);
  std::string message(filename);
  message.append(": ").append(rejectionMessages(reason).in(tongue)).append(" ");
  return message + helpLine(tongue);
}

}  // namespace Localization

std::string L(std::string_view english) {
  return Localization::ShownWording::isOn() ? Localization::shownText(english) : Localization::text(english);
}

std::string LF(std::string_view english, std::initializer_list<Localization::FormatArgument> arguments) {
  if (!Localization::ShownWording::isOn()) return Localization::format(L(english), arguments);
  return Localization::fillShown(L(english), Localization::valuesOf(arguments), Localization::language());
}

std::string errorDescription(const std::exception& error, std::optional<AppLanguage> language) {
  const auto* dngError = dynamic_cast<const DNGError*>(&error);
  if (!dngError) return Localization::text(exceptionMessage(error), language);
  if (dngError->kind() != DNGError::Case::file) return dngError->what();
  if (const DestinationError* destination = dngError->destination())
    return dngError->message() + ": " + Localization::destinationMessage(*destination, language);
  return Localization::rejectionMessage(dngError->rejectionReason(), dngError->message(), language);
}

}  // namespace tessaly
