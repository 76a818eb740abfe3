// tessaly-sample-report SAMPLE_SET [--repaired FOLDER] [--profile FILE]: how far repaired photographs are from the
// undamaged scene, and which planted defects a profile holds.
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
  std::string sampleSet, repaired, profile;
  app.add_option("SAMPLE_SET", sampleSet, "A folder that tessaly-sample-set has written")->required();
  app.add_option("--repaired", repaired, "A folder with repaired copies of its photographs");
  app.add_option("--profile", profile, "A profile file, compared with the true one");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    using namespace tessaly;
    const CameraProfile truth = readProfile(tools::SampleSetFolders(sampleSet).truth);
    if (!profile.empty()) fmt::print("{}", tools::table(tools::compareProfiles(truth, readProfile(profile))));
    if (!repaired.empty()) fmt::print("{}", tools::table(tools::comparePhotographs(sampleSet, repaired)));
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return 0;
}
