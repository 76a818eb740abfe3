// tessaly-comparison: what Tessaly needs against what the system's own tools need for the same, in one run.
#include "comparison/Plot.h"
#include "comparison/Rows.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <stdlib.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <string>
#include <thread>

namespace tessaly::bench {
namespace {

std::string processorModel() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(": ") + 2);
  }
  return "unknown processor";
}

void printTable(const Extent& extent) {
  fmt::print("{}, {} processors.{}\n\n{}", processorModel(), std::thread::hardware_concurrency(),
             extent.isQuick ? " A quick run: few rounds." : "", tableHead());
  const Report report = [](const Comparison& comparison) {
    fmt::print("{}", tableRow(comparison, measure(comparison)));
    std::fflush(stdout);
  };
  for (const auto compare : {compareRepairInMemory, compareRepairOnDisk, compareStart, compareProfiles, compareBatch,
                             compareCalibration, compareDecoding})
    compare(extent, report);
}

void writePlot(const std::string& path, const Extent& extent) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << picture({costAgainstSize(extent), costAgainstDefects(extent)});
  file.close();
  if (!file) throw std::runtime_error("Cannot write " + path);
}

}  // namespace
}  // namespace tessaly::bench

int main(int count, char** arguments) {
  using namespace tessaly::bench;
  CLI::App app("Compares Tessaly with what the system's own tools need for the same.", "tessaly-comparison");
  Extent extent;
  std::string plot;
  app.add_flag("--quick", extent.isQuick, "Few rounds, no large calibrations");
  app.add_option("--plot", plot, "Draw the cost against size and defects instead of the table")->type_name("FILE.svg");
  CLI11_PARSE(app, count, arguments);
  const Material home(folderInMemory());  // nobody's settings and profiles
  ::setenv("TESSALY_HOME", (home / "home").c_str(), 1);
  try {
    plot.empty() ? printTable(extent) : writePlot(plot, extent);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return 0;
}
