// The fast analysis against the plain one of ReferenceCalibration, candidate by candidate, on random small sensors
// full of planted defects. A failure names the seed of the sensor.
#include "calibration/CalibrationEngine.h"
#include "calibration/ReferenceCalibration.h"
#include "dng/DNGReader.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using tests::TemporaryFolder;
using tools::DNGBuilder;

/// Uniform integers that do not depend on the standard library's distributions.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  std::int64_t upTo(std::int64_t last) {
    return static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(last + 1));
  }
  std::int64_t between(std::int64_t first, std::int64_t last) { return first + upTo(last - first); }
  bool oneIn(std::int64_t n) { return upTo(n - 1) == 0; }

 private:
  std::mt19937_64 engine_;
};

struct Exposure {
  std::int64_t iso = 100;
  std::int64_t microseconds = 0;
  std::int64_t level = 0;  ///< mean signal above black
  std::int64_t frames = 3;
};

/// One random camera body: geometry, levels and a map of what each photosite adds to, or takes from, the signal.
struct Sensor {
  std::int64_t width = 0, height = 0, activeX = 0, activeY = 0, activeWidth = 0, activeHeight = 0;
  std::int64_t black = 0, white = 0, noise = 1;
  bool mosaic = true;
  std::string colours = "RGGB";
  std::vector<std::int64_t> gainPermille;  ///< of the signal
  std::vector<std::int64_t> offset;        ///< in raw units
};

void plantPixels(Sensor& s, Random& random) {
  for (std::int64_t i = random.between(0, 60); i > 0; --i) {
    const auto at = static_cast<std::size_t>(random.upTo(s.width * s.height - 1));
    if (random.oneIn(3)) s.gainPermille[at] = random.between(0, 3000);
    if (!random.oneIn(3)) s.offset[at] += random.between(1, 600);
  }
}

// Anywhere, or within the eight columns beside a border of the active area, which are never measured themselves.
std::int64_t columnPlace(const Sensor& s, Random& random) {
  const std::int64_t last = s.activeX + s.activeWidth - 1;
  if (!random.oneIn(3)) return random.between(s.activeX, last);
  return random.oneIn(2) ? s.activeX + random.upTo(7) : last - random.upTo(7);
}

// Faint ones of some levels, strong ones of 0.1 to 5 % of the range, and ones that see 0.3 to 2 times the light.
void plantColumns(Sensor& s, Random& random) {
  const std::int64_t range = s.white - s.black;
  for (std::int64_t i = random.between(0, 5); i > 0; --i) {
    const std::int64_t x = columnPlace(s, random);
    const std::int64_t from = random.oneIn(2) ? 0 : random.between(0, s.height - 1);
    const std::int64_t strong = (random.oneIn(2) ? 1 : -1) * range * random.between(1, 50) / 1000;
    const std::int64_t value = random.oneIn(3) ? random.between(-40, 40) : strong;
    const std::int64_t gain = random.oneIn(2) ? 1000 : random.between(300, 2000);
    for (std::int64_t y = from; y < s.height; ++y) {
      s.offset[static_cast<std::size_t>(y * s.width + x)] += value;
      s.gainPermille[static_cast<std::size_t>(y * s.width + x)] = gain;
    }
    if (from > 0) s.offset[static_cast<std::size_t>(from * s.width + x)] += random.between(200, 900);
  }
}

void plantDust(Sensor& s, Random& random) {
  for (std::int64_t i = random.between(0, 4); i > 0; --i) {
    const std::int64_t cx = random.upTo(s.width - 1), cy = random.upTo(s.height - 1), r = random.between(1, 6);
    const std::int64_t share = random.between(200, 800);
    for (std::int64_t y = std::max<std::int64_t>(cy - r, 0); y <= std::min(cy + r, s.height - 1); ++y) {
      for (std::int64_t x = std::max<std::int64_t>(cx - r, 0); x <= std::min(cx + r, s.width - 1); ++x) {
        if ((x - cx) * (x - cx) + (y - cy) * (y - cy) > r * r) continue;
        s.gainPermille[static_cast<std::size_t>(y * s.width + x)] = share;
      }
    }
  }
}

Sensor makeSensor(Random& random) {
  Sensor s;
  s.activeWidth = random.between(257, 330);
  s.activeHeight = random.oneIn(4) ? random.between(65, 100) : random.between(150, 230);
  s.activeX = random.upTo(9);
  s.activeY = random.upTo(9);
  s.width = s.activeX + s.activeWidth + random.upTo(5);
  s.height = s.activeY + s.activeHeight + random.upTo(5);
  s.black = random.between(0, 300);
  s.white = random.oneIn(3) ? 16383 : random.between(3000, 60000);
  s.noise = random.between(0, 12);
  s.mosaic = !random.oneIn(3);
  const std::string layouts[] = {"RGGB", "BGGR", "GRBG", "GBRG"};
  s.colours = layouts[random.upTo(3)];
  s.gainPermille.assign(static_cast<std::size_t>(s.width * s.height), 1000);
  s.offset.assign(s.gainPermille.size(), 0);
  plantPixels(s, random);
  plantColumns(s, random);
  plantDust(s, random);
  return s;
}

std::vector<Exposure> makeExposures(const Sensor& s, Random& random) {
  std::vector<Exposure> exposures;
  for (std::int64_t i = random.between(1, 3); i > 0; --i) {
    exposures.push_back({100 * i, 1000 * i, random.between((s.white - s.black) / 8, (s.white - s.black) / 2),
                         random.between(i == 1 ? 3 : 1, 4)});
  }
  for (std::int64_t i = random.between(0, 2); i > 0; --i) {
    exposures.push_back({800 * i, 20000 * i, 0, random.between(1, 4)});
  }
  return exposures;
}

std::vector<std::uint16_t> exposeFrame(const Sensor& s, const Exposure& exposure, Random& random) {
  std::vector<std::uint16_t> samples(s.offset.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::int64_t signal = exposure.level * s.gainPermille[i] / 1000 + s.offset[i];
    const std::int64_t value = s.black + signal + random.between(-s.noise, s.noise);
    samples[i] = static_cast<std::uint16_t>(std::clamp<std::int64_t>(value, 0, 65535));
  }
  return samples;
}

std::vector<std::filesystem::path> writeFrames(const std::filesystem::path& folder, Random& random) {
  const Sensor s = makeSensor(random);
  std::vector<std::filesystem::path> paths;
  for (const Exposure& exposure : makeExposures(s, random)) {
    for (std::int64_t i = 0; i < exposure.frames; ++i) {
      DNGBuilder builder;
      builder.size(s.width, s.height).bits(16).samples(exposeFrame(s, exposure, random)).black(s.black).white(s.white);
      builder.activeArea(s.activeY, s.activeX, s.activeY + s.activeHeight, s.activeX + s.activeWidth);
      builder.exif(exposure.iso, std::pair(exposure.microseconds, std::int64_t{1000000}));
      s.mosaic ? builder.cfa(s.colours) : builder.linear();
      // Two-digit numbers, so that plain and natural order agree.
      paths.push_back(folder / ("frame-" + std::to_string(10 + paths.size()) + ".dng"));
      builder.write(paths.back());
    }
  }
  return paths;
}

std::vector<reference::Frame> readFrames(const std::vector<std::filesystem::path>& paths) {
  std::vector<reference::Frame> frames;
  for (const auto& path : paths) {
    RawPlane plane = DNGReader::readPlane(path);
    frames.push_back({plane.metadata, {plane.samples.begin(), plane.samples.end()}});
  }
  return frames;
}

std::string describe(const CalibrationCandidate& c) {
  const char* kinds[] = {"pixel", "line", "spot"};
  return std::string(kinds[static_cast<int>(c.kind)]) + " x " + std::to_string(c.x) + " y " + std::to_string(c.yStart) +
         " to " + std::to_string(c.yEnd) + " confidence " + std::to_string(c.confidence) + " " + c.reason;
}

void expectSameCandidates(const CalibrationResult& fast, const CalibrationResult& plain) {
  ASSERT_EQ(fast.candidates.size(), plain.candidates.size());
  for (std::size_t i = 0; i < plain.candidates.size(); ++i) {
    CalibrationCandidate candidate = fast.candidates[i];
    candidate.id = plain.candidates[i].id;
    EXPECT_EQ(candidate, plain.candidates[i]) << describe(candidate) << "\n" << describe(plain.candidates[i]);
  }
}

class ReferenceComparison : public testing::TestWithParam<int> {};

TEST_P(ReferenceComparison, FastAndPlainAnalysisAgreeExactly) {
  for (int i = 0; i < 20; ++i) {
    const auto seed = static_cast<std::uint32_t>(GetParam() * 1000 + i);
    SCOPED_TRACE("seed " + std::to_string(seed));
    TemporaryFolder folder;
    Random random(seed);
    const auto paths = writeFrames(folder.path(), random);
    const auto frames = readFrames(paths);
    const CalibrationResult plain = reference::analyze(frames);
    const CalibrationResult fast = CalibrationEngine::analyze(paths, [](const CalibrationProgress&) {});
    EXPECT_EQ(fast.brightFrameCount, plain.brightFrameCount);
    EXPECT_EQ(fast.darkFrameCount, plain.darkFrameCount);
    EXPECT_EQ(fast.lineEvidenceFrameCount, plain.lineEvidenceFrameCount);
    EXPECT_EQ(fast.lineExposureGroupCount, plain.lineExposureGroupCount);
    EXPECT_EQ(fast.preview, plain.preview);
    EXPECT_EQ(CalibrationEngine::makeInspectionPreview(paths.front()).second,
              reference::inspectionPreview(frames.front()));
    expectSameCandidates(fast, plain);
  }
}

INSTANTIATE_TEST_SUITE_P(Sensors, ReferenceComparison, testing::Range(0, 10));

}  // namespace
}  // namespace tessaly
