// Reading raw planes in this process: ours and LibRaw's against copying a plane in memory.
#include "comparison/Rows.h"
#include "dng/DNGReader.h"

#include <fmt/format.h>
#include <libraw/libraw.h>

#include <chrono>
#include <cstring>
#include <ctime>
#include <stdexcept>

namespace tessaly::bench {
namespace {

double processorTime() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_nsec) / 1e6;
}

template <typename Action>
Work here(Action action) {
  return {[action] {
            const auto start = std::chrono::steady_clock::now();
            const double processorStart = processorTime();
            action();
            const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
            return Cost{elapsed.count(), processorTime() - processorStart, 0};
          },
          {}};
}

void unpackWithLibRaw(const Path& path) {
  LibRaw library;
  if (library.open_file(path.c_str()) != LIBRAW_SUCCESS || library.unpack() != LIBRAW_SUCCESS)
    throw std::runtime_error("LibRaw does not read the photograph");
}

}  // namespace

void compareDecoding(const Extent& extent, const Report& report) {
  for (const int bits : {16, 12, 14}) {
    const Material material(folderInMemory());
    const Path path = material.photograph("source.dng", {6000, 4000, bits});
    const DNGMetadata metadata = DNGReader::readMetadata(path);
    RawSamples plane = DNGReader::readRaw(path, metadata);
    RawSamples copy = plane;
    const Work copying = here([&] { std::memcpy(copy.data(), plane.data(), plane.size() * sizeof plane[0]); });
    const std::string name = fmt::format(", {} bits", bits);
    report({"read into a plane that is kept" + name, "copying the plane", "", extent.rounds(15),
            here([&] { DNGReader::readRaw(path, metadata, plane); }), copying});
    report({"read into a new plane" + name, "copying the plane", "", extent.rounds(15),
            here([&] { static_cast<void>(DNGReader::readPlane(path)); }), copying});
    report({"LibRaw: open and unpack" + name, "copying the plane", "", extent.rounds(5),
            here([&] { unpackWithLibRaw(path); }), copying});
  }
}

}  // namespace tessaly::bench
