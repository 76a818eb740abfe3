// samples FILE --output OUT: the raw plane as 16-bit little-endian values.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Interruption.h"
#include "cli/OutputFiles.h"
#include "dng/DNGReader.h"

#include <algorithm>
#include <bit>
#include <span>

namespace tessaly::cli {
namespace {

/// The request to stop is looked for this often on the way to standard output.
constexpr std::size_t sliceBytes = 1 << 20;

struct SamplesOptions {
  std::string file;
  std::string output;
};

void makeLittleEndian(RawSamples& samples) {
  if constexpr (std::endian::native == std::endian::big) {
    for (std::uint16_t& sample : samples)
      sample = static_cast<std::uint16_t>(sample << 8 | sample >> 8);
  }
}

void writeToStandardOutput(std::span<const std::byte> bytes, const Interruption& interruption) {
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(sliceBytes, bytes.size()))) {
    interruption.check();
    Console::write(bytes.first(std::min(sliceBytes, bytes.size())));
  }
}

ExitStatus samples(const SamplesOptions& options, const Context& context) {
  OutputFiles::check({options.output}, {options.file});
  RawPlane plane = DNGReader::readPlane(options.file);
  context.interruption.check();
  makeLittleEndian(plane.samples);
  const auto bytes = std::as_bytes(std::span(plane.samples));
  if (OutputFiles::isStandardOutput(options.output)) {
    writeToStandardOutput(bytes, context.interruption);
  } else {
    OutputFiles::write(options.output, bytes);
  }
  return ExitStatus::done;
}

}  // namespace

void addSamples(Program& program) {
  auto options = std::make_shared<SamplesOptions>();
  Command command = addCommand(program, "samples", "Write the raw samples of a DNG file");
  command.addOperand("FILE", options->file, "A DNG file");
  command
      .addOption("--output", options->output, "OUT",
                 "The file for the samples, unsigned 16-bit little-endian, row after row; - is standard output")
      .require();
  setAction(program, command, options, samples);
}

}  // namespace tessaly::cli
