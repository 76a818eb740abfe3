// The error that an action ends with, as the technical description without file names: what tests compare.
#pragma once

#include "dng/DNGError.h"

#include <exception>
#include <string>

namespace tessaly::tests {

/// "Invalid DNG structure: Raw dimensions"; an empty text when nothing is thrown.
template <typename Action>
[[nodiscard]] std::string refusalOf(Action action) {
  try {
    static_cast<void>(action());
  } catch (const DNGError& error) {
    return error.innermost().what();
  } catch (const std::exception& error) {
    return std::string("not a DNGError: ") + error.what();
  }
  return "";
}

}  // namespace tessaly::tests
