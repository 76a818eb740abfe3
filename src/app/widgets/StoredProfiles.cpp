#include "app/widgets/StoredProfiles.h"

#include "localization/Localization.h"
#include "platform/VisibleText.h"
#include "presentation/FailureText.h"
#include "store/ProfileStore.h"

#include <exception>
#include <utility>

namespace tessaly {
namespace {

/// What is said of the failure, in whatever language it is asked for later.
TextSource textAbout(std::exception_ptr failure) {
  return [failure = std::move(failure)] {
    try {
      std::rethrow_exception(failure);
    } catch (const std::exception& error) {
      return LF("Unable to load camera profiles: %@", {visibleText(failureText(error, "").description)});
    }
  };
}

}  // namespace

StoredProfiles StoredProfiles::load() {
  try {
    return {ProfileStore::loadAll(), {}, {}};
  } catch (const UnreadableProfile& error) {
    return {{}, textAbout(std::current_exception()), error.file()};
  } catch (const std::exception&) {
    return {{}, textAbout(std::current_exception()), {}};
  }
}

}  // namespace tessaly
