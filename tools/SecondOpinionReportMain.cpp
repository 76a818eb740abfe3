// tessaly-second-opinion-report SEEDS…: what the second opinion finds on simulated bodies with these seeds, added up,
// by kind and strength.
#include "tools/SecondOpinionScore.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

namespace {

using tessaly::tools::SecondOpinionScore;
using tessaly::tools::SecondOpinionTrial;
using tessaly::tools::SessionKind;

const std::map<std::string, SessionKind>& sessions() {
  static const std::map<std::string, SessionKind> kinds{
      {"usual", SessionKind::usual},         {"wide-open", SessionKind::wideOpen},
      {"clipped", SessionKind::clipped},     {"one-setting", SessionKind::oneSetting},
      {"patterned", SessionKind::patterned}, {"two-frames", SessionKind::twoFrames}};
  return kinds;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Scores the second opinion on simulated bodies.", "tessaly-second-opinion-report");
  std::vector<std::uint64_t> seeds;
  SecondOpinionTrial trial;
  std::string session = "usual";
  bool isLinear = false;
  app.add_option("SEEDS", seeds, "One body each")->required();
  app.add_option("--session", session, "usual, wide-open, clipped, one-setting, patterned or two-frames")
      ->check(CLI::IsMember(sessions()));
  app.add_option("--width", trial.description.activeWidth, "Active columns; otherwise 1200");
  app.add_option("--height", trial.description.activeHeight, "Active rows; otherwise 1000");
  app.add_flag("--linear", isLinear, "Bodies without a mosaic");
  app.add_flag("--healthy", trial.isHealthy, "Bodies without defects");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    trial.session = sessions().at(session);
    if (isLinear) trial.description.cfa.clear();
    SecondOpinionScore score;
    for (const std::uint64_t seed : seeds) {
      trial.description.seed = seed;
      score += scoreOf(trial);
    }
    fmt::print("{}", table(score));
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return 0;
}
