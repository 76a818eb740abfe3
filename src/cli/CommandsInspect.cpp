// inspect FILE: the metadata as JSON.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "dng/DNGReader.h"
#include "dng/metadata/DNGMetadataJSON.h"

#include <nlohmann/json.hpp>

namespace tessaly::cli {
namespace {

struct InspectOptions {
  std::string file;
  bool json = false;
};

ExitStatus inspect(const InspectOptions& options, const Context&) {
  const DNGMetadata metadata = DNGReader::readMetadata(options.file);
  Console::write(toJSON(metadata).dump(2) + "\n");
  if (const auto reason = DNGReader::supportReason(metadata)) Console::note("Warning: " + *reason);
  return ExitStatus::done;
}

}  // namespace

void addInspect(Program& program) {
  auto options = std::make_shared<InspectOptions>();
  Command command = addCommand(program, "inspect", "Print what is known about a DNG file, as JSON");
  command.addOperand("FILE", options->file, "A DNG file; only its metadata is read");
  command.addFlag("--json", options->json, "One JSON object, as without it");
  setAction(program, command, options, inspect);
}

}  // namespace tessaly::cli
