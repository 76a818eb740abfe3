// What must hold after any fault.
#pragma once

#include "reliability/faults/FaultedProgram.h"

#include <string>
#include <vector>

namespace tessaly::faults {

/// A command without a fault: what it leaves and says.
struct Reference {
  Tree before;
  Tree after;
  Outcome outcome;
};

/// What is wrong with the files and the words that a run under a fault has left; nothing when all is well:
/// - every photograph has its bytes, and nothing else that was there is lost or half written;
/// - a final name holds a complete copy, result, log or profile, or nothing;
/// - no temporary file is left by a process that lived, unless its removal is what failed;
/// - it ended by itself, with a status that agrees with what is there and with a cause where it failed.
[[nodiscard]] std::vector<std::string> violations(const Reference& reference, const Fault& fault,
                                                  const Outcome& outcome, const Tree& after);

}  // namespace tessaly::faults
