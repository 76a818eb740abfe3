// A program that repairs one folder and is there to be disturbed: tessaly-batch-runner INPUT OUTPUT PROFILE WORKERS
// skip|numberedCopy. Prints the summary as JSON; ends with 0 when no file failed.
#include "batch/BatchJSON.h"
#include "batch/BatchProcessor.h"
#include "profile/CameraProfileJSON.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <iostream>
#include <string_view>

int main(int count, char** arguments) {
  if (count != 6) return 2;
  const std::string_view workersText = arguments[4];
  int workers = 0;
  std::from_chars(workersText.data(), workersText.data() + workersText.size(), workers);
  tessaly::BatchOptions options;
  options.existingOutputPolicy = tessaly::existingOutputPolicy(arguments[5]).value_or(options.existingOutputPolicy);

  tessaly::BatchProcessor processor;
  const tessaly::BatchSummary summary =
      processor.processFolder(arguments[1], {.outputFolder = arguments[2],
                                             .profile = tessaly::readProfile(arguments[3]),
                                             .workers = workers,
                                             .options = options});
  std::cout << tessaly::batchSummaryJSON(summary).dump() << '\n';
  return summary.failed == 0 ? 0 : 1;
}
