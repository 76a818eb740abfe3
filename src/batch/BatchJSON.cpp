#include "batch/BatchJSON.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

namespace tessaly {

nlohmann::ordered_json batchSummaryJSON(const BatchSummary& summary) {
  nlohmann::ordered_json failures = nlohmann::ordered_json::array();
  for (const BatchFailure& failure : summary.failures) {
    failures.push_back({{"filename", failure.filename}, {"message", failure.message}});
  }
  nlohmann::ordered_json json{{"total", summary.total},         {"succeeded", summary.succeeded},
                              {"failed", summary.failed},       {"skipped", summary.skipped},
                              {"cancelled", summary.cancelled}, {"failures", std::move(failures)}};
  if (summary.logURL) json["logURL"] = displayText(summary.logURL->native());
  if (summary.logError) json["logError"] = *summary.logError;
  return json;
}

}  // namespace tessaly
