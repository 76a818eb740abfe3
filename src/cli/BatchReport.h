// Tells how the files of a batch end, one after the other as they finish: on standard error for people, and on standard
// output where a program wants a line a file or a rehearsal is told.
#pragma once

#include "batch/BatchRecords.h"
#include "cli/ProgressDisplay.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <exception>
#include <mutex>
#include <vector>

namespace tessaly::cli {

enum class Loudness {
  quiet,    ///< only what went wrong
  usual,    ///< a line a file, or a bar on a terminal
  verbose,  ///< also where each copy is and how many of its samples were repaired
};

struct ReportStyle {
  Loudness loudness = Loudness::usual;
  bool isRehearsal = false;  ///< each file is told on standard output, unless it is told as JSON
  bool keepsFiles = false;   ///< for an object about all of them
  bool writesLines = false;  ///< an object a file, in a line of its own
};

/// Called from the batch's workers, several at once.
class BatchReport {
 public:
  BatchReport(std::int64_t total, ReportStyle style);
  ~BatchReport();

  /// A failed file prints its two lines, each other file one; on a terminal the bar moves instead of the latter.
  void finished(const BatchFileOutcome& outcome);

  /// The request to stop has come.
  void stopping();

  /// The batch has ended: no progress is shown any more.
  void end();

  /// The files so far, as objects. Throws what standard output could not take.
  [[nodiscard]] std::vector<nlohmann::ordered_json> files() const;

 private:
  void tell(const BatchFileOutcome& outcome);
  void print(const BatchFileOutcome& outcome);
  [[nodiscard]] bool showsProgress() const;

  std::mutex lock_;  ///< held while printing, so that the lines come in the order of their numbers
  const ReportStyle style_;
  BatchProgress progress_;
  bool isStopping_ = false;
  std::vector<nlohmann::ordered_json> files_;
  std::exception_ptr failure_;  ///< of standard output
  ProgressDisplay display_;
};

}  // namespace tessaly::cli
