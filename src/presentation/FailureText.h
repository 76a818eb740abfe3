// How a failure is told: what the user reads, and the technical cause for whoever helps the user.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace tessaly {

struct FailureText {
  std::string description;  ///< for the user, in the interface's language
  std::string cause;        ///< the innermost error's own words, always English

  bool operator==(const FailureText&) const = default;
};

/// `subject`: the name of the file or folder that the work was about, for an error that does not carry a file's name
/// itself. A DNGError is described by its rejection message; a text that the window shows is shown as it is; the
/// system's words, and what is said of a profile file, follow the subject.
[[nodiscard]] FailureText failureText(const std::exception& error, std::string_view subject);

}  // namespace tessaly
