#include "calibration/second/SecondOpinion.h"

#include "calibration/ActiveSamples.h"
#include "calibration/second/Confirmation.h"
#include "calibration/second/GroupSums.h"
#include "calibration/second/LineVotes.h"
#include "calibration/second/NoiseFigures.h"
#include "calibration/second/RowKernels.h"
#include "dng/DNGReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaly::second {
namespace {

constexpr std::int64_t blockSide = 64;  // within a phase of a mosaic

std::int64_t sideOfBlocks(const PlaneShape& shape) {
  return shape.step == 2 ? blockSide : 2 * blockSide;
}

/// One byte a sample where a shadow lies.
class ShadowMask {
 public:
  ShadowMask(const PlaneShape& shape, const std::vector<Shadow>& shadows)
      : width_(shape.width), mask_(shape.count(), 0) {
    for (const Shadow& shadow : shadows)
      cover(shape, shadow);
  }

  [[nodiscard]] const std::uint8_t* row(std::int64_t y) const { return mask_.data() + y * width_; }

 private:
  void cover(const PlaneShape& shape, const Shadow& shadow) {
    const auto top = static_cast<std::int64_t>(shadow.y - shadow.radiusY);
    const auto left = static_cast<std::int64_t>(shadow.x - shadow.radiusX);
    for (std::int64_t y = top; y <= static_cast<std::int64_t>(shadow.y + shadow.radiusY) + 1; ++y) {
      for (std::int64_t x = left; x <= static_cast<std::int64_t>(shadow.x + shadow.radiusX) + 1; ++x) {
        if (shape.contains(x, y) && shadow.contains(static_cast<double>(x), static_cast<double>(y)))
          mask_[static_cast<std::size_t>(y * width_ + x)] = 1;
      }
    }
  }

  std::int64_t width_;
  std::vector<std::uint8_t> mask_;
};

/// One second opinion, step by step.
class Opinion {
 public:
  Opinion(const DNGMetadata& reference, RawSamples& samples, int threads, const Step& step)
      : metadata_(reference),
        shape_(reference),
        grid_(shape_, sideOfBlocks(shape_)),
        samples_(samples),
        threads_(threads),
        step_(step),
        stack_(metadata_, grid_, threads) {}

  SecondOpinion run(std::vector<ExposureGroup> groups, std::span<const CalibrationCandidate> documented) {
    for (ExposureGroup& group : groups)
      models_.push_back(GroupModel{std::move(group), {}, {}, {}, 0, 0, 0});
    search();
    vote();
    SecondOpinion opinion;
    opinion.findings = findings(found_, metadata_);
    opinion.settings = std::move(settings_);
    opinion.confirmed =
        confirmations(documented, found_, opinion.findings, metadata_,
                      [this](auto kind, std::int64_t x, std::int64_t y) { return decides(kind, x, y); });
    return opinion;
  }

 private:
  // Dark groups come first; what they alone need is gone before the bright ones are measured.
  void search() {
    UnsteadySums darkNoise;
    UnsteadySums lightNoise;
    {
      MeanPlane darkness(grid_, threads_);
      Plane warmth;
      for (GroupModel& model : models_) {
        if (!model.group.isDark) continue;
        measure(model);
        addWarmth(model, stack_.median(), shape_, threads_, warmth);
        darkness.add(model, stack_.median());
        darkNoise.add(model, stack_, grid_, threads_);
      }
      pause();
      found_.warm = warmPlaces(warmth, shape_, threads_);
      pause();
      if (!darkness.isEmpty()) found_.darkLines = findLines(darkness.values(), shape_, nullptr, threads_);
    }
    MeanPlane light(grid_, threads_);
    for (GroupModel& model : models_) {
      if (model.group.isDark) continue;
      measure(model);
      light.add(model, stack_.median());
      lightNoise.add(model, stack_, grid_, threads_);
    }
    stack_.release();
    pause();
    found_.unsteady = unsteadyPlaces(darkNoise, lightNoise, shape_, threads_);
    darkNoise = {};
    lightNoise = {};
    if (!light.isEmpty()) searchLight(light);
  }

  void searchLight(const MeanPlane& light) {
    const CountedColumns known = [&](std::int64_t y) { return light.known(y); };
    pause();
    found_.dim = dimPlaces(light.values(), shape_, known, threads_);
    pause();
    const std::vector<FoundColumn> lines = findLines(light.values(), shape_, nullptr, threads_);
    pause();
    const Plane cleaned = cleanedLight(light, shape_, lines, threads_);
    found_.shadows = findShadows(cleaned, shape_, known, threads_);
    measureEllipses(found_.shadows, cleaned, shape_);
    pause();
    const ShadowMask mask(shape_, found_.shadows);
    found_.brightLines = findLines(
        light.values(), shape_, [&](std::int64_t y) { return mask.row(y); }, threads_);
  }

  void measure(GroupModel& model) {
    const Places everything = Places::everything(shape_);
    stack_.begin(model.group.isDark, model.group.urls.size(), everything);
    for (const std::filesystem::path& url : model.group.urls) {
      step_(url);
      DNGReader::readRaw(url, metadata_, samples_);
      model.levels.push_back(stack_.levelsOf(samples_));
      stack_.add(samples_, model.levels.back());
    }
    pause();
    stack_.reduce();
    model.voting = stack_.votingBlocks(model.levels);
    measureNoise(model);
  }

  void measureNoise(GroupModel& model) {
    const Plane& roots = stack_.trimmedRoots();  // 0 … 32767: unsigned as they are
    model.noise = blockMedians({reinterpret_cast<const std::uint16_t*>(roots.data()), shape_.width}, grid_, threads_);
    const Histogram departures = histogramOfDepartures(stack_.median(), shape_, votingIn(model), threads_);
    model.departureSigma = departures.spread().sigma;
    std::vector<float> voting;
    for (std::int64_t row = 0; row < grid_.rows(); ++row)
      addVoting(model, row, voting);
    const double root = static_cast<double>(medianOf(voting)) / rootQuanta;
    model.noiseSigma = std::pow(std::max(root, 0.0), 1.5);
    const auto frames = static_cast<double>(model.group.urls.size());
    model.weight = voting.empty() ? 0 : frames / std::max(model.noiseSigma * model.noiseSigma, 1.0);
    if (!model.group.isFirstPart) return;
    const double unitsPerRaw = unitsOfRange / static_cast<double>(signalRange(metadata_));
    settings_.push_back(settingFigures(model, stack_, grid_, departures, unitsPerRaw));
  }

  void addVoting(const GroupModel& model, std::int64_t row, std::vector<float>& values) const {
    const auto& voting = model.voting[static_cast<std::size_t>(row)];
    for (std::int64_t column = 0; column < grid_.columns(); ++column) {
      if (std::find(voting.begin(), voting.end(), grid_.blockColumns(column)) == voting.end()) continue;
      for (std::size_t i = static_cast<std::size_t>(row * grid_.columns() + column); i < grid_.values();
           i += grid_.blocks())
        values.push_back(model.noise[i]);
    }
  }

  [[nodiscard]] CountedColumns votingIn(const GroupModel& model) const {
    return [this, &model](std::int64_t y) { return model.votingColumns(grid_, y); };
  }

  void vote() {
    const Places places = foundPlaces();
    PointVotes points(grid_, found_.dim, found_.warm, found_.unsteady);
    LineVotes darkLines(found_.darkLines);
    LineVotes brightLines(found_.brightLines);
    ShadowVotes shadows(found_.shadows);
    for (GroupModel& model : models_) {
      measureAgain(model, places);
      points.add(model, stack_);
      (model.group.isDark ? darkLines : brightLines).add(model, stack_.median(), grid_);
      if (!model.group.isDark) shadows.add(model, stack_.median(), grid_);
    }
    points.finish();
    darkLines.finish();
    brightLines.finish();
    shadows.finish();
  }

  [[nodiscard]] Places foundPlaces() const {
    Places places(shape_);
    const auto addSquare = [&](std::int64_t x, std::int64_t y, std::int64_t reach) {
      places.add(x - reach, y - reach, x + reach, y + reach);
    };
    for (const PointPlaces* points : {&found_.dim, &found_.warm, &found_.unsteady}) {
      for (const PointPlace& point : *points)
        addSquare(point.x, point.y, 2 * shape_.step);  // as far as a mirror at the border reaches
    }
    for (const std::vector<FoundColumn>* lines : {&found_.darkLines, &found_.brightLines}) {
      for (const FoundColumn& line : *lines)
        places.add(line.x - lineReach * shape_.step, line.firstRow, line.x + lineReach * shape_.step, line.lastRow);
    }
    for (const Shadow& shadow : found_.shadows)
      addSquare(std::llround(shadow.x), std::llround(shadow.y), static_cast<std::int64_t>(2.2 * shadow.radius) + 2);
    places.join();
    return places;
  }

  void measureAgain(const GroupModel& model, const Places& places) {
    std::vector<SampleRun> runs;
    const WantedSamples wanted = [&](std::int64_t row) {
      runs.clear();
      const std::int64_t y = row - metadata_.activeY;
      if (y < 0 || y >= shape_.height) return std::span<const SampleRun>();
      for (const ColumnRange& range : places.row(y))
        runs.push_back({row, metadata_.activeX + range.first, range.last - range.first});
      return std::span<const SampleRun>(runs);
    };
    stack_.begin(model.group.isDark, model.group.urls.size(), places);
    for (std::size_t frame = 0; frame < model.group.urls.size(); ++frame) {
      step_(model.group.urls[frame]);
      DNGReader::readRaw(model.group.urls[frame], metadata_, wanted, samples_);
      stack_.add(samples_, model.levels[frame]);
    }
    stack_.reduce();
  }

  [[nodiscard]] bool decides(CalibrationCandidate::Kind kind, std::int64_t x, std::int64_t y) const {
    return std::any_of(models_.begin(), models_.end(), [&](const GroupModel& model) {
      if (model.group.isDark) return kind != CalibrationCandidate::Kind::spot;
      return model.votesAt(grid_, x, y);
    });
  }

  void pause() const { step_({}); }

  const DNGMetadata& metadata_;
  PlaneShape shape_;
  BlockGrid grid_;
  RawSamples& samples_;
  int threads_;
  const Step& step_;
  GroupStack stack_;
  std::vector<GroupModel> models_;
  std::vector<SettingFigures> settings_;
  Found found_;
};

}  // namespace

// NOLINTNEXTLINE(readability-function-size): what one analysis has at hand, each by itself
SecondOpinion secondOpinion(std::span<const CalibrationGroup> groups, const DNGMetadata& reference,
                            std::span<const CalibrationCandidate> documented, RawSamples& samples, int threads,
                            const Step& step) {
  return Opinion(reference, samples, threads, step).run(exposureGroups(groups), documented);
}

std::int64_t frameReadings(std::span<const CalibrationGroup> groups) {
  std::int64_t frames = 0;
  for (const CalibrationGroup& group : groups)
    if (group.isMeasured()) frames += static_cast<std::int64_t>(group.urls.size());
  return 2 * frames;
}

}  // namespace tessaly::second
