#include "cli/BatchResultJSON.h"

#include "batch/BatchJSON.h"
#include "batch/RepairLog.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <string_view>
#include <utility>

namespace tessaly::cli {
namespace {

std::string_view statusWord(BatchFileOutcome::Status status, bool isRehearsal) {
  if (isRehearsal && status == BatchFileOutcome::Status::success) return "Fits";
  if (isRehearsal && status == BatchFileOutcome::Status::failed) return "Refused";
  return RepairLog::word(status);
}

}  // namespace

nlohmann::ordered_json toJSON(const BatchFileOutcome& outcome, bool isRehearsal) {
  nlohmann::ordered_json json{{"source", displayText(outcome.source.native())}};
  if (!outcome.output.empty()) json["output"] = displayText(outcome.output.native());
  json["status"] = statusWord(outcome.status, isRehearsal);
  json["repairedSamples"] = outcome.repairedSamples;
  json["details"] = outcome.details;
  for (const BatchOmission& each : outcome.lacking)
    json["lacking"].push_back({{"filename", each.filename}, {"cause", each.cause}});
  return json;
}

nlohmann::ordered_json toJSON(const BatchSummary& summary, std::vector<nlohmann::ordered_json> files) {
  nlohmann::ordered_json json = batchSummaryJSON(summary);
  json["files"] = std::move(files);
  return json;
}

}  // namespace tessaly::cli
