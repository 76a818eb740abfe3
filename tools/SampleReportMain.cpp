// tessaly-sample-report SAMPLE_SET [--repaired FOLDER] [--profile FILE] [--findings FILE]: how far repaired photographs
// are from the undamaged scene, and which planted defects a profile or the second opinion of a result holds.
#include "profile/CameraProfileJSON.h"
#include "tools/SampleReport.h"
#include "tools/SampleSet.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <string>

int main(int argc, char** argv) {
  CLI::App app("Measures what was made of a sample set.", "tessaly-sample-report");
  std::string sampleSet;
  std::string repaired;
  std::string profile;
  std::string findings;
  app.add_option("SAMPLE_SET", sampleSet, "A folder that tessaly-sample-set has written")->required();
  app.add_option("--repaired", repaired, "A folder with repaired copies of its photographs");
  app.add_option("--profile", profile, "A profile file, compared with the true one");
  app.add_option("--findings", findings, "A result of calibrate --second-opinion, compared with the true profile");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    using namespace tessaly;
    const CameraProfile truth = readProfile(tools::SampleSetFolders(sampleSet).truth);
    const auto compare = [&truth](const CameraProfile& found) {
      fmt::print("{}\n{}", tools::table(tools::compareProfiles(truth, found)),
                 tools::table(tools::compareStrengths(truth, found)));
    };
    if (!profile.empty()) compare(readProfile(profile));
    if (!findings.empty()) compare(tools::findingsProfile(truth, findings));
    if (!repaired.empty()) fmt::print("{}", tools::table(tools::comparePhotographs(sampleSet, repaired)));
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return 0;
}
