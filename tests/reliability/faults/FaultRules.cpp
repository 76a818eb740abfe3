#include "reliability/faults/FaultRules.h"

#include "platform/AbandonedFiles.h"
#include "profile/CameraProfileJSON.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <regex>
#include <set>

namespace tessaly::faults {
namespace {

namespace fs = std::filesystem;

bool isPhotograph(const std::string& path) {
  return path.ends_with(".dng");
}

bool isTemporary(const std::string& path) {
  return isTemporaryName(fs::path(path).filename());
}

bool isLog(const std::string& path) {
  return fs::path(path).filename().native().starts_with("Repair Log-");
}

bool isProfile(const std::string& path) {
  return path.find("/Profiles/") != std::string::npos || path == "new.json";
}

/// Names and contents that differ from run to run.
bool isVolatile(const std::string& path) {
  return isLog(path) || isProfile(path) || path == "result.json" || path == "summary.json";
}

bool isWholeLog(const std::string& text) {
  static const std::regex row(R"re("([^"]|"")*",(Success|Failed|Skipped),[0-9]+,"([^"]|"")*")re");
  const std::string header = "File,Status,Repaired Samples,Details";
  if (!text.starts_with(header)) return false;
  std::string rest = text.substr(header.size());
  while (!rest.empty() && rest.front() == '\n') {
    const std::size_t end = std::min(rest.find('\n', 1), rest.size());
    if (!std::regex_match(rest.substr(1, end - 1), row)) return false;
    rest.erase(0, end);
  }
  return rest.empty();
}

bool isWholeProfile(const std::string& text) {
  try {
    static_cast<void>(decodeProfile(text));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool isWhole(const std::string& path, const std::string& bytes) {
  if (isLog(path)) return isWholeLog(bytes);
  if (isProfile(path)) return isWholeProfile(bytes);
  return nlohmann::json::accept(bytes);
}

class Judge {
 public:
  Judge(const Reference& reference, const Fault& fault, const Outcome& outcome, const Tree& after)
      : reference_(reference), fault_(fault), outcome_(outcome), after_(after) {}

  std::vector<std::string> judge() {
    for (const auto& [path, bytes] : reference_.before)
      judgeOld(path, bytes);
    for (const auto& [path, bytes] : after_)
      if (!reference_.before.contains(path)) judgeNew(path, bytes);
    wasKilled() ? static_cast<void>(0) : judgeEnd();
    return found_;
  }

 private:
  [[nodiscard]] bool wasKilled() const { return fault_.kind == Kind::kill && outcome_.hits > 0; }

  void complain(const std::string& words) { found_.push_back(words); }

  [[nodiscard]] bool isExpected(const std::string& path, const std::string& bytes) const {
    const auto expected = reference_.after.find(path);
    if (expected != reference_.after.end() && expected->second == bytes) return true;
    return isVolatile(path) && isWhole(path, bytes);
  }

  void judgeOld(const std::string& path, const std::string& bytes) {
    const auto now = after_.find(path);
    if (now == after_.end()) {
      if (isPhotograph(path) || reference_.after.contains(path)) complain(path + " is lost");
    } else if (now->second != bytes) {
      if (isPhotograph(path) || !isExpected(path, now->second)) complain(path + " was changed");
    }
  }

  void judgeNew(const std::string& path, const std::string& bytes) {
    if (isTemporary(path)) {
      const bool isExcused = wasKilled() || outcome_.call.starts_with("unlink");
      if (!isExcused) complain(path + " was left behind");
    } else if (!isExpected(path, bytes) && !path.starts_with("home/Tessaly/Tessaly.")) {
      complain(path + " is not what a run makes");
    }
  }

  void judgeEnd() {
    if (outcome_.hung) return complain("it hung");
    if (outcome_.status > 2) return complain("it ended with " + std::to_string(outcome_.status));
    if (outcome_.status == 0) return judgeSuccess();
    judgeFailure();
    judgeCounts();
  }

  void judgeSuccess() {
    for (const auto& [path, bytes] : reference_.after) {
      if (isLog(path) || isProfile(path)) continue;
      if (!after_.contains(path)) complain("all was well, and " + path + " is missing");
    }
    for (const auto& [path, bytes] : reference_.before)
      if (!reference_.after.contains(path) && after_.contains(path)) complain(path + " is still there");
    const auto logs = [](const Tree& tree) {
      return std::ranges::count_if(tree, [](const auto& file) { return isLog(file.first); });
    };
    const auto profiles = [](const Tree& tree) {
      return std::ranges::count_if(tree, [](const auto& file) { return isProfile(file.first); });
    };
    if (logs(after_) != logs(reference_.after)) complain("all was well, and there is no log");
    if (profiles(after_) != profiles(reference_.after)) complain("all was well, and a profile is missing");
  }

  // What a signal interrupts or does by halves is done again.
  [[nodiscard]] bool mustSucceed() const {
    static const std::set<std::string> interruptible{"open",   "read",  "pread", "write",
                                                     "pwrite", "fsync", "poll",  "copy_file_range"};
    if (outcome_.hits == 0) return fault_.kind == Kind::error || fault_.kind == Kind::shortCount;
    if (fault_.kind == Kind::shortCount) return true;
    return fault_.kind == Kind::error && fault_.error == EINTR && interruptible.contains(outcome_.call);
  }

  void judgeFailure() {
    if (mustSucceed()) complain("it failed: " + outcome_.errors);
    const bool mayBeMute = outcome_.call.starts_with("write");
    const bool isTold = outcome_.errors.find("Cause: ") != std::string::npos ||
                        (outcome_.status == 2 && outcome_.errors.find("tessaly-cli: ") != std::string::npos);
    if (!isTold && !mayBeMute) complain("it failed without a cause: " + outcome_.errors);
  }

  void judgeCounts() {
    const auto file = after_.find("summary.json");
    if (file == after_.end()) return;
    const auto summary = nlohmann::json::parse(file->second, nullptr, false);
    if (!summary.is_object()) return complain("summary.json is no summary");
    std::int64_t copies = 0;
    for (const auto& [path, bytes] : after_)
      copies += isPhotograph(path) && !reference_.before.contains(path) ? 1 : 0;
    if (summary["succeeded"] != copies) complain("the summary counts other copies than there are");
  }

  const Reference& reference_;
  const Fault& fault_;
  const Outcome& outcome_;
  const Tree& after_;
  std::vector<std::string> found_;
};

}  // namespace

std::vector<std::string> violations(const Reference& reference, const Fault& fault, const Outcome& outcome,
                                    const Tree& after) {
  return Judge(reference, fault, outcome, after).judge();
}

}  // namespace tessaly::faults
