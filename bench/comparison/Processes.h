// Whole programs, measured from outside: time by the clock on the wall, processor time, and the memory of the largest.
#pragma once

#include <string>
#include <vector>

namespace tessaly::bench {

using Command = std::vector<std::string>;

struct Cost {
  double milliseconds = 0;
  double processorMilliseconds = 0;
  double peakMiB = 0;  ///< 0: not known
};

/// Runs the commands one after the other, without a shell and without what they print, on one processor when
/// `isBound`. Throws std::runtime_error when one fails.
[[nodiscard]] Cost costOf(const std::vector<Command>& commands, bool isBound);

/// Whether the shell would find a program of this name.
[[nodiscard]] bool isInstalled(const std::string& program);

}  // namespace tessaly::bench
