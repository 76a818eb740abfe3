// The ways in which a command ends early, as exceptions that only the outermost function catches.
#pragma once

#include "platform/Text.h"
#include "presentation/FailureText.h"

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tessaly::cli {

/// The work could not be done; already worded.
class CommandFailure final : public std::exception {
 public:
  explicit CommandFailure(FailureText text) : text_(std::move(text)) {}

  /// With one more line, in the interface's language, behind the two.
  CommandFailure(FailureText text, std::string remark) : text_(std::move(text)), remark_(std::move(remark)) {}

  /// `error` as it is told about `subject` (see failureText).
  CommandFailure(const std::exception& error, std::string_view subject) : text_(failureText(error, subject)) {}

  [[nodiscard]] const FailureText& text() const { return text_; }
  [[nodiscard]] const std::string& remark() const { return remark_; }
  [[nodiscard]] const char* what() const noexcept override { return text_.description.c_str(); }

 private:
  FailureText text_;
  std::string remark_;
};

/// The name that a failure is told with; two quotation marks for an empty path.
[[nodiscard]] inline std::string subjectName(const std::filesystem::path& path) {
  return path.empty() ? "\"\"" : displayName(path);
}

/// The command line is wrong in a way that its grammar does not show.
class UsageError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The request to stop came and the work was given up.
class Interrupted final : public std::exception {};

}  // namespace tessaly::cli
