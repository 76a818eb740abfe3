// The one error type of reading, writing, matching and calibration.
//
// An error is a case and an English message. The case decides what a caller does; the message is for people and for
// the rejection category, which is chosen by phrases in it, so every message is part of the contract and is written
// exactly as it stands. DNGError is a value: copying shares an immutable payload and is safe between threads.
#pragma once

#include "dng/RejectionReason.h"
#include "platform/DestinationError.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <string>

namespace tessaly {

class DNGError final : public std::exception {
 public:
  enum class Case {
    file,             ///< another error, with the name of the file it belongs to
    unreadable,       ///< the file could not be opened or read, or another system error
    truncated,        ///< a read would run past the end of the file
    unsupported,      ///< a well-formed file that uses something this system does not handle
    invalid,          ///< a malformed or out-of-limits structure
    profileMismatch,  ///< a camera profile does not fit the file
  };

  [[nodiscard]] static DNGError file(std::string fileName, DNGError underlying);
  [[nodiscard]] static DNGError unreadable(std::string message);
  [[nodiscard]] static DNGError truncated(std::string message);
  [[nodiscard]] static DNGError unsupported(std::string message);
  [[nodiscard]] static DNGError invalid(std::string message);
  [[nodiscard]] static DNGError profileMismatch(std::string message);

  /// Any error met while a file was processed, as a `file` error: one that is already `file` is returned unchanged,
  /// any other DNGError is wrapped, and everything else becomes `unreadable` with the system's own English words. What
  /// the destination refused stays known to have been the destination.
  [[nodiscard]] static DNGError contextualize(const std::exception& error, const std::filesystem::path& url);

  /// The same error, known to lie with the place that a copy is written to.
  [[nodiscard]] DNGError at(const DestinationError& destination) const;

  [[nodiscard]] Case kind() const { return payload_->kind; }

  /// The message without its technical prefix; for `file` the file's name, as text that can be shown.
  [[nodiscard]] const std::string& message() const { return payload_->message; }

  /// The error that `file` wraps; null for every other case.
  [[nodiscard]] const DNGError* underlying() const { return payload_->underlying.get(); }

  /// The error inside all `file` wrappings; the error itself when it is not `file`.
  [[nodiscard]] const DNGError& innermost() const;

  [[nodiscard]] RejectionReason rejectionReason() const;

  /// What the place that a copy is written to refused; null when the error is about what was read.
  [[nodiscard]] const DestinationError* destination() const { return innermost().payload_->destination.get(); }

  /// The technical description, always English: "Invalid DNG structure: Raw dimensions"; for `file` the file's name,
  /// ": " and the technical description of the underlying error.
  [[nodiscard]] const char* what() const noexcept override { return payload_->description.c_str(); }

 private:
  struct Payload {
    Case kind;
    std::string message;
    std::string description;
    std::shared_ptr<const DNGError> underlying;
    std::shared_ptr<const DestinationError> destination;  ///< of an innermost error only
  };

  DNGError(Case kind, std::string message, std::shared_ptr<const DNGError> underlying);

  std::shared_ptr<const Payload> payload_;
};

}  // namespace tessaly
