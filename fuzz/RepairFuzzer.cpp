// Any bytes that can be read, with defects that their end describes: the repair that streams by and the one of a plane
// in memory give the same bytes and counts or the same refusal, however small the slices are. The source never changes.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/DNGWriter.h"
#include "fuzz/FuzzFile.h"
#include "repair/RepairCopy.h"
#include "repair/RepairEngine.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace tessaly;

struct Outcome {
  std::string failure;
  RepairReport report;
  std::vector<std::byte> bytes;

  bool operator==(const Outcome&) const = default;
};

/// The innermost error's text, or what the repair has made. The copy is removed again.
template <typename Repair>
Outcome outcome(Repair repair) {
  const std::filesystem::path copy = fuzz::folder() / "copy.dng";
  Outcome made;
  try {
    made.report = repair(copy);
    made.bytes = tests::readBytes(copy);
    std::filesystem::remove(copy);
  } catch (const DNGError& error) {
    made.failure = error.innermost().what();
    fuzz::require(!std::filesystem::exists(copy));
  }
  return made;
}

/// Numbers below a limit, from the last byte of the input backwards; zeros when it has ended.
class Draws {
 public:
  explicit Draws(std::span<const std::uint8_t> data) : rest_(data) {}

  std::int64_t below(std::int64_t limit) {
    const std::int64_t high = next();
    return limit > 0 ? (high << 8 | next()) % limit : 0;
  }

 private:
  std::int64_t next() {
    if (rest_.empty()) return 0;
    const std::uint8_t last = rest_.back();
    rest_ = rest_.first(rest_.size() - 1);
    return last;
  }

  std::span<const std::uint8_t> rest_;
};

CameraProfile someDefects(const DNGMetadata& metadata, Draws& draws) {
  CameraProfile profile = CameraProfile::empty("Body", metadata);
  const std::int64_t width = metadata.rawWidth, height = metadata.rawHeight;
  for (std::int64_t i = draws.below(6); i > 0; --i)
    profile.pixels.push_back({draws.below(width), draws.below(height), 1.0, ""});
  for (std::int64_t i = draws.below(3); i > 0; --i) {
    const std::int64_t x = draws.below(width), first = draws.below(height);
    profile.lines.push_back({x, first, first + draws.below(height - first), 1 + draws.below(width - x), 1.0, ""});
  }
  for (std::int64_t i = draws.below(3); i > 0 && width > 2 && height > 2; --i) {
    const std::int64_t x = 1 + draws.below(width - 2), y = 1 + draws.below(height - 2);
    const std::int64_t across = std::min(x, width - 1 - x), down = std::min(y, height - 1 - y);
    profile.spots->push_back({x, y, 1 + draws.below(across), 1 + draws.below(down), 1.0, ""});
  }
  return profile;
}

RepairReport repairPlane(const std::filesystem::path& source, const std::filesystem::path& copy,
                         const CameraProfile& profile) {
  RawPlane plane = DNGReader::readPlane(source);
  const RepairReport report = RepairEngine::repair(plane.samples, plane.metadata, profile);
  DNGWriter::writeCopy(source, copy, plane.samples, false, std::nullopt);
  return report;
}

void compareRoads(const std::filesystem::path& source, std::span<const std::uint8_t> data) {
  const DNGMetadata metadata = DNGReader::readMetadata(source);
  if (metadata.pixelCount() > fuzz::maximumSamples) return;
  Draws draws(data);
  RepairWorkspace workspace;
  workspace.sliceBytes = 1 + draws.below(400);
  const CameraProfile profile = someDefects(metadata, draws);
  const Outcome plane = outcome([&](const auto& copy) { return repairPlane(source, copy, profile); });
  for (const Verification verification : {Verification::afterwards, Verification::behindTheWriter}) {
    workspace.verification = verification;
    fuzz::require(outcome([&](const auto& copy) {
                    return DNGWriter::repairCopy(source, copy, profile, workspace).report;
                  }) == plane);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path source = fuzz::writeInput(data, size);
  try {
    compareRoads(source, {data, size});
  } catch (const DNGError&) {
    // Refused by the reader.
  }
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  const std::vector<std::byte> after = tests::readBytes(source);
  fuzz::require(std::equal(after.begin(), after.end(), bytes, bytes + size));
  return 0;
}
