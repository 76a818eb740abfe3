// tessaly-sample-set FOLDER: writes a simulated camera's calibration frames and photographs.
#include "tools/SampleSet.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
  CLI::App app("Writes calibration frames and photographs of a simulated camera with known defects.",
               "tessaly-sample-set");
  std::string folder;
  std::uint64_t seed = 1;
  app.add_option("FOLDER", folder, "A new or empty folder, or an earlier sample set")->required();
  app.add_option("--seed", seed, "Another number gives another camera body")->capture_default_str();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    tessaly::tools::writeSampleSet(folder, seed);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return 0;
}
