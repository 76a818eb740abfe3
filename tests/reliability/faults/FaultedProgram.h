// One run of the command line under a fault.
#pragma once

#include "reliability/faults/FaultPlan.h"
#include "reliability/faults/FaultScene.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tessaly::faults {

/// What is done to the program, and where.
struct Fault {
  Kind kind = Kind::none;
  int error = 0;
  std::int64_t at = 0;
};

struct Outcome {
  int status = 0;  ///< 128 + its number for a signal
  bool hung = false;
  std::int64_t calls = 0;
  std::int64_t allocations = 0;
  int hits = 0;
  std::string call;  ///< that was hit first
  std::string output;
  std::string errors;
};

class FaultedProgram {
 public:
  /// `folder` holds what belongs to the runs of one thread: their files in "work", the plan, what was printed.
  FaultedProgram(std::filesystem::path program, std::filesystem::path injector, std::filesystem::path folder);

  [[nodiscard]] std::filesystem::path work() const { return folder_ / "work"; }

  /// Runs it in work(). One that takes more than ten seconds of the processor, or two minutes in all, has hung.
  [[nodiscard]] Outcome run(const Command& command, const Fault& fault) const;

 private:
  std::filesystem::path program_;
  std::filesystem::path injector_;
  std::filesystem::path folder_;
};

}  // namespace tessaly::faults
