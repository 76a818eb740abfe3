#include "presentation/AlertPage.h"

#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/BatchTexts.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tessaly {
namespace {

// More of them nobody reads in an alert; the log has them all.
constexpr std::size_t mostNames = 100;

/// Why files failed, and which ones.
struct Reason {
  std::string words;
  std::vector<std::string> names;  ///< empty for the batch as a whole
};

/// A failure's message apart from the file's name before it and the help line behind it.
struct Told {
  std::string words;
  std::string help;
};

// The batch has worded its failures in the language that it ran in, which may have changed since.
Told told(const BatchFailure& failure) {
  Told result{BatchTexts::message(failure), ""};
  const std::string subject = failure.filename + ": ";
  if (!failure.filename.empty() && result.words.starts_with(subject)) result.words.erase(0, subject.size());
  for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    const std::string help = Localization::helpLine(language);
    if (!result.words.ends_with(" " + help)) continue;
    result.words.resize(result.words.size() - help.size() - 1);
    result.help = help;
  }
  return result;
}

void add(std::vector<Reason>& reasons, const std::string& words, const std::string& name) {
  auto known = std::ranges::find(reasons, words, &Reason::words);
  if (known == reasons.end()) known = reasons.insert(known, {words, {}});
  if (!name.empty()) known->names.push_back(name);
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i)
    text += (i > 0 ? ", " : "") + names[i];
  return names.size() > mostNames ? text + ", …" : text;
}

std::string paragraph(const Reason& reason) {
  if (reason.names.empty()) return reason.words;
  if (reason.names.size() == 1) return reason.names.front() + ": " + reason.words;
  return LF("%d files: %@", {static_cast<std::int64_t>(reason.names.size()), reason.words}) + "\n" +
         joined(reason.names);
}

std::string logLines(const BatchSummary& summary) {
  const std::string log =
      LF("Log: %@", {summary.logURL ? displayText(summary.logURL->native()) : L("No log generated")});
  return summary.logError ? log + "\n" + LF("Log writing failed: %@", {L(*summary.logError)}) : log;
}

/// What failed or was left out, a paragraph each; the help line of the failures goes into `help`.
std::vector<std::string> paragraphs(const BatchSummary& summary, std::string& help) {
  std::vector<Reason> reasons;
  for (const BatchFailure& failure : summary.failures) {
    const Told words = told(failure);
    add(reasons, words.words, failure.filename);
    if (help.empty()) help = words.help;
  }
  std::vector<std::string> result;
  std::ranges::transform(reasons, std::back_inserter(result), paragraph);
  std::ranges::transform(summary.unexamined, std::back_inserter(result), BatchTexts::unexamined);
  std::ranges::transform(summary.unaccounted, std::back_inserter(result), BatchTexts::unaccounted);
  return result;
}

}  // namespace

AlertPage batchEndPage(const BatchSummary& summary) {
  AlertPage page;
  page.first = L("Processing complete") + (summary.cancelled ? " (" + L("Cancelled") + ")" : "");
  const std::string left = BatchTexts::filesLeft(summary);
  page.emphasis = LF("%d succeeded, %d failed, %d skipped", {summary.succeeded, summary.failed, summary.skipped});
  if (!left.empty()) page.emphasis += "\n" + left;
  for (const std::string& part : paragraphs(summary, page.note))
    page.details += (page.details.empty() ? "" : "\n\n") + part;
  page.last = logLines(summary);
  return page;
}

}  // namespace tessaly
