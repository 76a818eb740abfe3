// What the user reads while a batch runs and when it has ended, in the interface's language; shared by window and
// command line. Pure functions apart from reading the language; safe from any thread.
#pragma once

#include "batch/BatchRecords.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tessaly {

namespace BatchTexts {

/// The status line while files are being repaired: "12/40  Success 11  Failed 1  Skipped 0  L1000123.DNG".
[[nodiscard]] std::string progressLine(const BatchProgress& progress);

/// The status line of a batch that has ended: "Complete: 38 succeeded, 1 failed, 1 skipped", " (Cancelled)" behind it
/// after a stop request.
[[nodiscard]] std::string statusLine(const BatchSummary& summary);

/// The text of the final alert, with the first five failures.
[[nodiscard]] std::string alertText(const BatchSummary& summary);

/// Whether the final alert is a warning: a file failed or the log could not be written.
[[nodiscard]] bool isWarning(const BatchSummary& summary);

/// Whether there is something to look at: a file was repaired or skipped and the output folder exists.
[[nodiscard]] bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder);

}  // namespace BatchTexts

/// What the status line and the progress bar of a running batch show. Snapshots may come in any order: one that comes
/// late never moves the display back, and after a stop request the status no longer changes. For one thread.
class BatchProgressDisplay {
 public:
  /// Whether the display has changed.
  bool show(const BatchProgress& progress);
  void stopRequested() { stopping_ = true; }

  [[nodiscard]] std::string status() const;
  [[nodiscard]] std::int64_t barValue() const;
  [[nodiscard]] std::int64_t barMaximum() const;  ///< at least 1

 private:
  std::optional<BatchProgress> latest_;
  bool stopping_ = false;
};

}  // namespace tessaly
