// One row of the table: some work against its floor, measured in turn in the same run.
#pragma once

#include "comparison/Processes.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tessaly::bench {

/// Something whose cost can be asked for again and again, and what it leaves behind each time.
struct Work {
  std::function<Cost()> run;
  std::vector<std::filesystem::path> leavings;  ///< removed after each run, which is not measured
};

[[nodiscard]] Work programs(std::vector<Command> commands, std::vector<std::filesystem::path> leavings = {});

/// The same bound to one processor.
[[nodiscard]] Work programsOnOneProcessor(std::vector<Command> commands,
                                          std::vector<std::filesystem::path> leavings = {});

struct Comparison {
  std::string name;
  std::string floorName;
  std::string goal;  ///< as the table shows it; may be empty
  int rounds = 0;
  Work work;
  Work floor;
};

struct Spread {
  double least = 0;
  double median = 0;
};

struct Measured {
  Spread work;                       ///< milliseconds
  Spread floor;                      ///< milliseconds
  Spread ratio;                      ///< of the two least, and of the two medians
  double processorMilliseconds = 0;  ///< of the work, median
  double peakMiB = 0;                ///< of the work, the largest
};

/// Runs floor and work in turn, once without counting it.
[[nodiscard]] Measured measure(const Comparison& comparison);

/// Rows of a table in Markdown.
[[nodiscard]] std::string tableHead();
[[nodiscard]] std::string tableRow(const Comparison& comparison, const Measured& measured);

}  // namespace tessaly::bench
