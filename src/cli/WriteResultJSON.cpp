#include "cli/WriteResultJSON.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

namespace tessaly::cli {
namespace {

nlohmann::ordered_json toJSON(const RepairReport& report) {
  return {{"changedSamples", report.changedSamples},
          {"pointSamples", report.pointSamples},
          {"lineSamples", report.lineSamples},
          {"spotSamples", report.spotSamples}};
}

}  // namespace

nlohmann::ordered_json toJSON(const DNGWriteResult& result) {
  return {{"destination", displayText(result.destination.native())},
          {"report", toJSON(result.report)},
          {"sourceBytes", result.sourceBytes}};
}

}  // namespace tessaly::cli
