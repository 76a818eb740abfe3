// How the program ends.
#pragma once

#include "platform/TerminationSignals.h"

namespace tessaly::cli {

enum class ExitStatus {
  done = 0,
  failed = 1,  ///< at least one file failed, or the work could not be done
  usage = 2,   ///< the command line itself is wrong
};

/// Of a program that a signal has stopped, as a shell counts it: 130 after Ctrl-C.
[[nodiscard]] constexpr ExitStatus stoppedBy(int signal) {
  return static_cast<ExitStatus>(statusEndedBy(signal));
}

}  // namespace tessaly::cli
