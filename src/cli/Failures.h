// The ways in which a command ends early, as exceptions that only the outermost function catches.
#pragma once

#include "presentation/FailureText.h"

#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace tessaly::cli {

/// The work could not be done; already worded.
class CommandFailure final : public std::exception {
 public:
  explicit CommandFailure(FailureText text) : text_(std::move(text)) {}

  /// `error` as it is told about `subject` (see failureText).
  CommandFailure(const std::exception& error, std::string_view subject) : text_(failureText(error, subject)) {}

  [[nodiscard]] const FailureText& text() const { return text_; }
  [[nodiscard]] const char* what() const noexcept override { return text_.description.c_str(); }

 private:
  FailureText text_;
};

/// The command line is wrong in a way that its grammar does not show.
class UsageError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Ctrl-C came and the work was given up.
class Interrupted final : public std::exception {};

}  // namespace tessaly::cli
