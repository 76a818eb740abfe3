// repair-file SOURCE DESTINATION --profile PROFILE: the repaired copy of one file under a name of the caller's choice.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/ProfileArgument.h"
#include "cli/WriteResultJSON.h"
#include "repair/RepairCopy.h"

#include <nlohmann/json.hpp>

namespace tessaly::cli {
namespace {

struct RepairFileOptions {
  std::string source;
  std::string destination;
  std::string profile;
};

ExitStatus repairFile(const RepairFileOptions& options, const Context&) {
  const CameraProfile profile = loadProfile(options.profile).profile;
  const DNGWriteResult result = DNGWriter::repairCopy(options.source, options.destination, profile);
  Console::write(toJSON(result).dump(2) + "\n");
  return ExitStatus::done;
}

}  // namespace

void addRepairFile(Program& program) {
  auto options = std::make_shared<RepairFileOptions>();
  Command command = addCommand(program, "repair-file", "Write the repaired copy of one DNG file");
  command.addOperand("SOURCE", options->source, "The DNG file; it is only read");
  command.addOperand("DESTINATION", options->destination, "The copy; nothing may stand there yet");
  command.addOption("--profile", options->profile, "PROFILE", "A profile file, or a stored profile's id or name")
      .require();
  setAction(program, command, options, repairFile);
}

}  // namespace tessaly::cli
