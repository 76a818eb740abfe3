// tessaly-repair-quality: how far repaired samples are from the undamaged ones, by kind of defect and by scene, for the
// documented rules and for simple ones beside them. Root mean square distances in raw units of 14 bits.
//
// Simple rules look at the nearest sound samples of the same colour: linear to the left and right, the others also
// above and below; the membrane is a soap film over the defect. "damaged" is what is there without a repair.
#include "repair/RepairEngine.h"
#include "tools/CoveredSamples.h"
#include "tools/NormalNumbers.h"
#include "tools/SampleBody.h"
#include "tools/TruthProfile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace tessaly;
using namespace tessaly::tools;

using Samples = std::vector<std::uint16_t>;

constexpr std::int64_t step = 2;  // the next sample of the same colour
constexpr std::int64_t margin = 40;
constexpr int membraneRounds = 400;

/// One kind of defect: its places in a profile, and by what the light there is multiplied.
struct DefectScene {
  std::string name;
  std::function<void(CameraProfile&, Sequence&)> plant;
  double transmission;
};

std::int64_t somewhere(Sequence& random, std::int64_t from, std::int64_t length) {
  return from + random.wholeBetween(margin, length - margin - 1);
}

DefectScene pixels() {
  return {"pixel",
          [](CameraProfile& profile, Sequence& random) {
            for (int i = 0; i < 800; ++i) {
              profile.pixels.push_back({somewhere(random, profile.activeX, profile.activeWidth),
                                        somewhere(random, profile.activeY, profile.activeHeight), 1, ""});
            }
          },
          0.7};
}

DefectScene columns(std::int64_t width) {
  return {fmt::format("column, {} wide", width),
          [width](CameraProfile& profile, Sequence& random) {
            for (int i = 0; i < 12; ++i) {
              const std::int64_t x = somewhere(random, profile.activeX, profile.activeWidth);
              profile.lines.push_back({x, profile.activeY, profile.activeY + profile.activeHeight - 1, width, 1, ""});
            }
          },
          0.99};
}

DefectScene spots(std::int64_t radius) {
  return {
      fmt::format("spot, radius {}", radius),
      [radius](CameraProfile& profile, Sequence& random) {
        for (int i = 0; i < 40; ++i) {
          profile.spots->push_back({somewhere(random, profile.activeX, profile.activeWidth),
                                    somewhere(random, profile.activeY, profile.activeHeight), radius, radius, 1, ""});
        }
      },
      0.9};
}

/// The nearest sound samples in the four directions.
struct Neighbour {
  double value = 0;
  double distance = 0;
};

class Plane {
 public:
  Plane(const Samples& samples, const std::vector<bool>& defects, std::int64_t width)
      : samples_(samples), defects_(defects), width_(width) {}

  [[nodiscard]] std::vector<Neighbour> neighbours(std::int64_t x, std::int64_t y, bool alongRow) const {
    std::vector<Neighbour> found;
    found.reserve(4);
    look(x, y, {-step, 0}, found);
    look(x, y, {step, 0}, found);
    if (alongRow) return found;
    look(x, y, {0, -step}, found);
    look(x, y, {0, step}, found);
    return found;
  }

 private:
  struct Direction {
    std::int64_t dx = 0;
    std::int64_t dy = 0;
  };

  void look(std::int64_t x, std::int64_t y, Direction direction, std::vector<Neighbour>& found) const {
    const auto height = static_cast<std::int64_t>(samples_.size()) / width_;
    for (std::int64_t k = 1; k < height + width_; ++k) {
      const std::int64_t column = x + k * direction.dx;
      const std::int64_t row = y + k * direction.dy;
      if (column < 0 || column >= width_ || row < 0 || row >= height) return;
      const auto i = static_cast<std::size_t>(row * width_ + column);
      if (defects_[i]) continue;
      found.push_back({static_cast<double>(samples_[i]), static_cast<double>(k)});
      return;
    }
  }

  const Samples& samples_;
  const std::vector<bool>& defects_;
  std::int64_t width_;
};

using Rule = std::function<double(const std::vector<Neighbour>&)>;

double weighted(const std::vector<Neighbour>& neighbours, double power) {
  double sum = 0;
  double weights = 0;
  for (const Neighbour& neighbour : neighbours) {
    const double weight = std::pow(neighbour.distance, -power);
    sum += weight * neighbour.value;
    weights += weight;
  }
  return weights > 0 ? sum / weights : 0;
}

double medianOf(std::vector<Neighbour> neighbours) {
  if (neighbours.empty()) return 0;
  std::sort(neighbours.begin(), neighbours.end(), [](const auto& a, const auto& b) { return a.value < b.value; });
  return (neighbours[(neighbours.size() - 1) / 2].value + neighbours[neighbours.size() / 2].value) / 2;
}

struct Trial {
  Samples sound;
  Samples damaged;
  std::vector<bool> defects;
  std::vector<std::size_t> places;
  std::int64_t width = 0;
};

double rms(const Trial& trial, const std::function<double(std::size_t)>& rebuilt) {
  double sum = 0;
  for (const std::size_t place : trial.places) {
    const double difference = std::round(rebuilt(place)) - static_cast<double>(trial.sound[place]);
    sum += difference * difference;
  }
  return std::sqrt(sum / static_cast<double>(trial.places.size()));
}

double rmsOfRule(const Trial& trial, bool alongRow, const Rule& rule) {
  const Plane plane(trial.damaged, trial.defects, trial.width);
  return rms(trial, [&](std::size_t place) {
    const auto i = static_cast<std::int64_t>(place);
    return rule(plane.neighbours(i % trial.width, i / trial.width, alongRow));
  });
}

/// A soap film over each defect: every sample becomes the mean of its four neighbours, until it rests.
double rmsOfMembrane(const Trial& trial) {
  std::vector<double> film(trial.damaged.begin(), trial.damaged.end());
  const Plane plane(trial.damaged, trial.defects, trial.width);
  for (const std::size_t place : trial.places) {
    const auto i = static_cast<std::int64_t>(place);
    film[place] = weighted(plane.neighbours(i % trial.width, i / trial.width, false), 1);
  }
  constexpr auto column = static_cast<std::size_t>(step);
  const auto row = column * static_cast<std::size_t>(trial.width);
  for (int round = 0; round < membraneRounds; ++round) {
    for (const std::size_t place : trial.places) {
      if (place < row || place + row >= film.size()) continue;
      film[place] = (film[place - column] + film[place + column] + film[place - row] + film[place + row]) / 4;
    }
  }
  return rms(trial, [&](std::size_t place) { return film[place]; });
}

void printRow(const std::string& kind, const std::string& scene, const Trial& trial, const Samples& repaired) {
  const auto value = [](const Samples& samples) {
    return [&samples](std::size_t place) { return static_cast<double>(samples[place]); };
  };
  fmt::print("{:<16}{:<14}{:>9.1f}{:>12.1f}{:>9.1f}{:>11.1f}{:>9.1f}{:>10.1f}{:>10.1f}\n", kind, scene,
             rms(trial, value(trial.damaged)), rms(trial, value(repaired)),
             rmsOfRule(trial, true, [](const auto& around) { return weighted(around, 1); }),
             rmsOfRule(trial, false, medianOf),
             rmsOfRule(trial, false, [](const auto& around) { return weighted(around, 0); }),
             rmsOfRule(trial, false, [](const auto& around) { return weighted(around, 1); }), rmsOfMembrane(trial));
}

void measure(const DefectScene& kind, const SampleFrame& photograph, const SensorBody& body) {
  const BodyDescription& sensor = body.description();
  CameraProfile profile = truthProfile(body, photographFNumber);
  Sequence random(7);
  kind.plant(profile, random);
  Trial trial;
  trial.width = sensor.width();
  trial.sound = body.render(photograph.exposure, photograph.number);
  trial.damaged = trial.sound;
  const CoveredSamples covered(profile);
  trial.defects = covered.mask();
  for (std::size_t i = 0; i < trial.defects.size(); ++i) {
    if (!trial.defects[i]) continue;
    trial.places.push_back(i);
    const double light = static_cast<double>(trial.sound[i]) - static_cast<double>(sensor.black);
    trial.damaged[i] =
        static_cast<std::uint16_t>(std::lround(static_cast<double>(sensor.black) + kind.transmission * light));
  }
  Samples repaired = trial.damaged;
  RepairEngine::repair(repaired, metadataOf(sensor), profile);
  printRow(kind.name, photograph.name, trial, repaired);
}

}  // namespace

int main() {
  const BodyDescription description = sampleBody(1);
  const SensorBody body(description, {});
  fmt::print("{:<16}{:<14}{:>9}{:>12}{:>9}{:>11}{:>9}{:>10}{:>10}\n", "kind", "scene", "damaged", "documented",
             "linear", "median of 4", "average", "weighted", "membrane");
  const std::array<DefectScene, 7> kinds{pixels(), columns(1), columns(2), spots(2), spots(4), spots(8), spots(16)};
  for (const DefectScene& kind : kinds) {
    for (SampleFrame& photograph : samplePhotographs(description)) {
      photograph.exposure.iso = 100;
      photograph.exposure.seconds = {1, 125};
      measure(kind, photograph, body);
    }
  }
  return 0;
}
