#include "presentation/FailureText.h"

#include "batch/OutputFolderAccess.h"
#include "calibration/review/InvalidInput.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

#include <cerrno>

namespace tessaly {
namespace {

// A name that is taken was chosen by whoever gave it: that is told as a refusal of the file, like any other.
bool isDestinationsFault(const DNGError& error) {
  return error.destination() != nullptr && error.destination()->code().value() != EEXIST;
}

FailureText dngFailure(const DNGError& error, std::string_view subject) {
  if (isDestinationsFault(error)) return {errorDescription(error), error.innermost().what()};
  const bool namesItsFile = error.kind() == DNGError::Case::file;
  const std::string name = namesItsFile ? error.message() : std::string(subject);
  return {Localization::rejectionMessage(error.rejectionReason(), name.empty() ? "\"\"" : name),
          error.innermost().what()};
}

std::string withSubject(std::string_view subject, const std::string& words) {
  return subject.empty() ? words : std::string(subject) + ": " + words;
}

}  // namespace

FailureText failureText(const std::exception& error, std::string_view subject) {
  if (const auto* dngError = dynamic_cast<const DNGError*>(&error)) return dngFailure(*dngError, subject);
  if (dynamic_cast<const InvalidInput*>(&error)) return {L(error.what()), error.what()};
  if (dynamic_cast<const OutputFolderPermission*>(&error)) {
    const std::string english = Localization::original(error.what());
    return {L(english), english};
  }
  if (const auto* invalid = dynamic_cast<const InvalidProfile*>(&error))
    return {withSubject(subject, InvalidProfile(invalid->reason()).what()), invalid->reason()};
  if (const auto* unreadable = dynamic_cast<const UnreadableProfile*>(&error))
    return {withSubject(displayText(unreadable->file().native()), L(unreadable->reason())), unreadable->reason()};
  if (dynamic_cast<const ProfileDecodingError*>(&error))
    return {withSubject(subject, InvalidProfile(error.what()).what()), error.what()};
  return {withSubject(subject, errorDescription(error)), exceptionMessage(error)};
}

}  // namespace tessaly
