#include "comparison/Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace tessaly::bench {
namespace {

Work work(std::vector<Command> commands, std::vector<std::filesystem::path> leavings, bool isBound) {
  return {[commands = std::move(commands), isBound] { return costOf(commands, isBound); }, std::move(leavings)};
}

Cost costOf(const Work& work) {
  const Cost cost = work.run();
  for (const std::filesystem::path& path : work.leavings)
    std::filesystem::remove_all(path);
  return cost;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::vector<double> each(const std::vector<Cost>& costs, double Cost::*part) {
  std::vector<double> values;
  values.reserve(costs.size());
  for (const Cost& cost : costs)
    values.push_back(cost.*part);
  return values;
}

Spread spreadOf(const std::vector<Cost>& costs) {
  const std::vector<double> times = each(costs, &Cost::milliseconds);
  return {*std::min_element(times.begin(), times.end()), median(times)};
}

std::string shown(double milliseconds) {
  return fmt::format("{:.{}f}", milliseconds, milliseconds < 10 ? 2 : milliseconds < 100 ? 1 : 0);
}

std::string shown(const Spread& spread) {
  return shown(spread.least) + " / " + shown(spread.median);
}

}  // namespace

Work programs(std::vector<Command> commands, std::vector<std::filesystem::path> leavings) {
  return work(std::move(commands), std::move(leavings), false);
}

Work programsOnOneProcessor(std::vector<Command> commands, std::vector<std::filesystem::path> leavings) {
  return work(std::move(commands), std::move(leavings), true);
}

Measured measure(const Comparison& comparison) {
  std::vector<Cost> works;
  std::vector<Cost> floors;
  for (int round = 0; round <= comparison.rounds; ++round) {
    const Cost floor = costOf(comparison.floor);
    const Cost cost = costOf(comparison.work);
    if (round == 0) continue;  // everything is read for the first time
    floors.push_back(floor);
    works.push_back(cost);
  }
  Measured measured{spreadOf(works), spreadOf(floors), {}, 0, 0};
  measured.ratio = {measured.work.least / measured.floor.least, measured.work.median / measured.floor.median};
  measured.processorMilliseconds = median(each(works, &Cost::processorMilliseconds));
  const std::vector<double> peaks = each(works, &Cost::peakMiB);
  measured.peakMiB = *std::max_element(peaks.begin(), peaks.end());
  return measured;
}

std::string tableHead() {
  return "| work | floor | ratio, min / median | goal | ms, min / median | floor's ms | processor ms | peak MiB |\n"
         "|---|---|---|---|---|---|---|---|\n";
}

std::string tableRow(const Comparison& comparison, const Measured& measured) {
  return fmt::format("| {} | {} | {:.2f} / {:.2f} | {} | {} | {} | {} | {} |\n", comparison.name, comparison.floorName,
                     measured.ratio.least, measured.ratio.median, comparison.goal, shown(measured.work),
                     shown(measured.floor), shown(measured.processorMilliseconds),
                     measured.peakMiB > 0 ? fmt::format("{:.1f}", measured.peakMiB) : "");
}

}  // namespace tessaly::bench
