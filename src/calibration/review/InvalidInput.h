// What was typed or selected cannot be used: the failure of the review's rules, with the English text shown for it.
#pragma once

#include "dng/DNGMetadata.h"

#include <stdexcept>

namespace tessaly {

/// what() is the English text for the user.
class InvalidInput final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

namespace CandidateSelection {

/// The metadata of the result; null, no result yet, is InvalidInput.
[[nodiscard]] const DNGMetadata& requireResult(const DNGMetadata* metadata);

}  // namespace CandidateSelection
}  // namespace tessaly
