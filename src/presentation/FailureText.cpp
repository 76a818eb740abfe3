#include "presentation/FailureText.h"

#include "batch/OutputFolderAccess.h"
#include "calibration/review/InvalidInput.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"

namespace tessaly {
namespace {

FailureText dngFailure(const DNGError& error, std::string_view subject) {
  const bool namesItsFile = error.kind() == DNGError::Case::file;
  return {
      Localization::rejectionMessage(error.rejectionReason(), namesItsFile ? error.message() : std::string(subject)),
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
    return {unreadable->what(), unreadable->reason()};
  if (dynamic_cast<const ProfileDecodingError*>(&error))
    return {withSubject(subject, InvalidProfile(error.what()).what()), error.what()};
  const std::string words = exceptionMessage(error);
  return {withSubject(subject, words), words};
}

}  // namespace tessaly
