#include "tools/SensorBody.h"

#include "tools/NormalNumbers.h"

#include <algorithm>
#include <cmath>

namespace tessaly::tools {
namespace {

constexpr double gray = 1;

enum Key : std::uint64_t { response = 1, columnResponse, dark, noise, columnOffset, photositeOffset, frames };
enum FrameKey : std::uint64_t { light = 1, samples, rows, columns, banding, telegraph, cosmic };

std::uint64_t keyOf(std::uint64_t first, std::uint64_t second) {
  return combinedKey(combinedKey(0x424F4459, first), second);
}

std::uint64_t keyOf(std::uint64_t seed, Key what, std::size_t index) {
  return combinedKey(keyOf(seed, what), index);
}

float single(double value) {
  return static_cast<float>(value);
}

}  // namespace

/// What is the same for all samples of a frame, and what strikes some of them.
struct SensorBody::Shot {
  BodyExposure exposure;
  std::uint64_t key = 0;
  double gain = 0;  ///< raw units an electron
  double brightness = 1;
  double tiltX = 0;
  double tiltY = 0;
  double typicalNoise = 0;  ///< raw units
  double bandPeriod = 1;
  double bandPhase = 0;
  double patternX = 0;
  double patternY = 0;
  std::uint64_t samplesKey = 0;
  std::vector<double> columnNoise;  ///< by raw column
  std::vector<float> transmission;  ///< empty in the dark
  std::vector<float> extra;         ///< electrons
};

SensorBody::SensorBody(BodyDescription description, BodyDefects defects)
    : description_(std::move(description)), defects_(std::move(defects)) {
  makePhotosites();
  plantPixels();
  plantLines();
  plantSpecks();
}

int SensorBody::colourAt(std::int64_t x, std::int64_t y) const {
  if (description_.cfa.empty()) return 1;
  const auto cell = static_cast<std::size_t>((y & 1) * 2 + (x & 1));
  return static_cast<int>(std::string("RGB").find(description_.cfa[cell]));
}

void SensorBody::makePhotosites() {
  const BodyDescription& body = description_;
  const auto count = static_cast<std::size_t>(body.activeWidth * body.activeHeight);
  response_.resize(count);
  darkRate_.resize(count);
  noisiness_.resize(count);
  offset_.resize(count);
  stuckAt_.assign(count, -1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t column = i % static_cast<std::size_t>(body.activeWidth);
    response_[i] = single(1 + body.responseSpread * normal(keyOf(body.seed, Key::response, i)) +
                          body.columnResponseSpread * normal(keyOf(body.seed, Key::columnResponse, column)));
    darkRate_[i] = single(std::exp(-1.5 + normal(keyOf(body.seed, Key::dark, i))));
    noisiness_[i] = single(std::exp(std::abs(0.25 * normal(keyOf(body.seed, Key::noise, i)))));
    offset_[i] = single(body.unit() * (body.photositeOffset * normal(keyOf(body.seed, Key::photositeOffset, i)) +
                                       body.columnOffset * normal(keyOf(body.seed, Key::columnOffset, column))));
  }
}

void SensorBody::plantPixels() {
  using Kind = BodyPixel::Kind;
  for (const BodyPixel& pixel : defects_.pixels) {
    const std::size_t i = activeIndex(pixel.x, pixel.y);
    if (pixel.kind == Kind::hot) darkRate_[i] += single(pixel.strength);
    if (pixel.kind == Kind::offset) offset_[i] += single(pixel.strength * description_.unit());
    if (pixel.kind == Kind::dim) response_[i] *= single(1 - pixel.strength);
    if (pixel.kind == Kind::stuck) stuckAt_[i] = single(pixel.strength);
  }
}

void SensorBody::plantLines() {
  for (const BodyLine& line : defects_.lines) {
    for (std::int64_t y = line.yStart; y <= line.yEnd; ++y) {
      for (std::int64_t x = line.x; x < line.x + line.width; ++x) {
        offset_[activeIndex(x, y)] += single(line.offset * description_.unit());
        response_[activeIndex(x, y)] *= single(1 + line.gain);
      }
    }
  }
}

void SensorBody::plantSpecks() {
  for (const BodySpeck& speck : defects_.specks) {
    const auto reach = static_cast<std::int64_t>(speck.radiusX + 2);
    const auto centreX = static_cast<std::int64_t>(speck.x);
    const auto centreY = static_cast<std::int64_t>(speck.y);
    for (std::int64_t y = centreY - reach; y <= centreY + reach; ++y) {
      for (std::int64_t x = centreX - reach; x <= centreX + reach; ++x) {
        const double across = (static_cast<double>(x) - speck.x) * speck.radiusY / speck.radiusX;
        const double distance = std::hypot(across, static_cast<double>(y) - speck.y);
        const double cover = std::clamp(speck.radiusY + 0.5 - distance, 0.0, 1.0);
        response_[activeIndex(x, y)] *= single(1 - speck.depth * cover);
      }
    }
  }
}

std::vector<float> SensorBody::transmissions(double fNumber) const {
  std::vector<float> result(response_.size(), 1.0F);
  for (const BodyDust& dust : defects_.dust) {
    const auto reach = static_cast<std::int64_t>(dust.shadowRadius(fNumber) + 1);
    const auto centreX = static_cast<std::int64_t>(dust.x);
    const auto centreY = static_cast<std::int64_t>(dust.y);
    const std::int64_t lastY = std::min(centreY + reach, description_.activeHeight - 1);
    const std::int64_t lastX = std::min(centreX + reach, description_.activeWidth - 1);
    for (std::int64_t y = std::max<std::int64_t>(centreY - reach, 0); y <= lastY; ++y) {
      for (std::int64_t x = std::max<std::int64_t>(centreX - reach, 0); x <= lastX; ++x) {
        const double separation = std::hypot(static_cast<double>(x) - dust.x, static_cast<double>(y) - dust.y);
        result[activeIndex(x, y)] *= single(dust.transmission(separation, fNumber));
      }
    }
  }
  return result;
}

SensorBody::Shot SensorBody::shot(const BodyExposure& exposure, std::uint64_t frame) const {
  Shot shot;
  shot.exposure = exposure;
  shot.key = keyOf(keyOf(description_.seed, Key::frames), frame);
  shot.gain = description_.span() / description_.fullWell * static_cast<double>(exposure.iso) / 100;
  shot.typicalNoise = std::hypot(description_.readNoise * shot.gain, description_.converterNoise * description_.unit());
  Sequence random(keyOf(shot.key, FrameKey::light));
  shot.brightness = 1 + 0.01 * random.between(-1, 1);
  shot.tiltX = 0.03 * random.between(-1, 1);
  shot.tiltY = 0.03 * random.between(-1, 1);
  shot.bandPeriod = random.between(120, 560);
  shot.bandPhase = random.between(0, 1);
  shot.patternX = random.between(0, 400);
  shot.patternY = random.between(0, 400);
  shot.samplesKey = keyOf(shot.key, FrameKey::samples);
  for (std::int64_t x = 0; x < description_.width(); ++x) {
    shot.columnNoise.push_back(0.03 * shot.typicalNoise *
                               normal(combinedKey(keyOf(shot.key, FrameKey::columns), static_cast<std::uint64_t>(x))));
  }
  if (exposure.level > 0) shot.transmission = transmissions(exposure.fNumber);
  shot.extra.assign(response_.size(), 0.0F);
  addTelegraph(shot);
  addCosmicRays(shot);
  return shot;
}

void SensorBody::addTelegraph(Shot& shot) const {
  const std::uint64_t key = keyOf(shot.key, FrameKey::telegraph);
  for (const BodyPixel& pixel : defects_.pixels) {
    if (pixel.kind != BodyPixel::Kind::telegraph) continue;
    const std::size_t i = activeIndex(pixel.x, pixel.y);
    if (uniform(combinedKey(key, i)) < pixel.share) shot.extra[i] += single(pixel.strength);
  }
}

void SensorBody::addCosmicRays(Shot& shot) const {
  const std::uint64_t key = keyOf(shot.key, FrameKey::cosmic);
  const int count = poisson(key, 2 + 3 * shot.exposure.time());
  Sequence random(combinedKey(key, 1));
  for (int i = 0; i < count; ++i) {
    std::int64_t x = random.wholeBetween(0, description_.activeWidth - 5);
    std::int64_t y = random.wholeBetween(0, description_.activeHeight - 5);
    const std::int64_t stepX = random.wholeBetween(0, 1);
    for (std::int64_t length = random.wholeBetween(1, 4); length > 0; --length) {
      shot.extra[activeIndex(x, y)] += single(random.between(200, 5000));
      x += stepX;
      y += 1 - stepX;
    }
  }
}

double SensorBody::lightAt(const Shot& shot, std::int64_t x, std::int64_t y) const {
  const BodyExposure& exposure = shot.exposure;
  if (exposure.level <= 0) return 0;
  const int colour = colourAt(x, y);
  const double sensitive = description_.cfa.empty() ? gray : sensitivity[static_cast<std::size_t>(colour)];
  if (exposure.scene) return exposure.scene(x, y, colour) * sensitive;
  const double across = static_cast<double>(x) / static_cast<double>(description_.activeWidth) - 0.5;
  const double down = static_cast<double>(y) / static_cast<double>(description_.activeHeight) - 0.5;
  const double shading = 1 - (0.75 + 0.06 * colour) * (across * across + down * down);
  const double tilt = 1 + shot.tiltX * across + shot.tiltY * down;
  double pattern = 1;
  if (exposure.wallPattern > 0) {
    pattern += exposure.wallPattern * (smoothNoise(7, (static_cast<double>(x) + shot.patternX) / 40,
                                                   (static_cast<double>(y) + shot.patternY) / 40) -
                                       0.5);
  }
  return exposure.level * shot.brightness * sensitive * shading * tilt * pattern;
}

void SensorBody::renderRow(const Shot& shot, std::int64_t rawY, std::uint16_t* row) const {
  const BodyDescription& body = description_;
  const double rowNoise =
      0.12 * shot.typicalNoise *
          normal(combinedKey(keyOf(shot.key, FrameKey::rows), static_cast<std::uint64_t>(rawY))) +
      0.05 * shot.typicalNoise * std::sin(6.283185307 * (static_cast<double>(rawY) / shot.bandPeriod + shot.bandPhase));
  const std::int64_t y = rawY - body.top;
  const bool isActiveRow = y >= 0 && y < body.activeHeight;
  const double converter = body.converterNoise * body.unit();
  const double well = body.fullWell * 100 / static_cast<double>(shot.exposure.iso);
  for (std::int64_t rawX = 0; rawX < body.width(); ++rawX) {
    const std::int64_t x = rawX - body.left;
    const std::size_t i = isActiveRow && x >= 0 && x < body.activeWidth ? activeIndex(x, y) : response_.size();
    const bool isActive = i < response_.size();
    const NormalPair noise(combinedKey(shot.samplesKey, static_cast<std::uint64_t>(rawY * body.width() + rawX)));
    double electrons = isActive ? darkRate_[i] * shot.exposure.time() : 0;
    if (isActive && !shot.transmission.empty())
      electrons += lightAt(shot, x, y) * response_[i] * shot.transmission[i] * well;
    electrons += std::sqrt(std::max(electrons, 0.0)) * noise.first + (isActive ? shot.extra[i] : 0.0F);
    electrons = std::min(electrons, 1.1 * body.fullWell);
    const double amplifier = body.readNoise * shot.gain * (isActive ? noisiness_[i] : 1.0F);
    const double readNoise = std::sqrt(amplifier * amplifier + converter * converter);
    double value = static_cast<double>(body.black) + shot.gain * electrons + readNoise * noise.second + rowNoise +
                   shot.columnNoise[static_cast<std::size_t>(rawX)] + (isActive ? offset_[i] : 0.0F);
    if (isActive && stuckAt_[i] >= 0) value = static_cast<double>(body.black) + stuckAt_[i] * body.span();
    row[rawX] = static_cast<std::uint16_t>(std::clamp(std::round(value), 0.0, static_cast<double>(body.white)));
  }
}

std::vector<std::uint16_t> SensorBody::render(const BodyExposure& exposure, std::uint64_t frame) const {
  const Shot taken = shot(exposure, frame);
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(description_.width() * description_.height()));
  for (std::int64_t y = 0; y < description_.height(); ++y)
    renderRow(taken, y, samples.data() + y * description_.width());
  return samples;
}

DNGBuilder SensorBody::file(const BodyExposure& exposure, std::vector<std::uint16_t> samples) const {
  const BodyDescription& body = description_;
  DNGBuilder builder;
  builder.size(body.width(), body.height()).bits(16).black(body.black).white(body.white);
  builder.activeArea(body.top, body.left, body.top + body.activeHeight, body.left + body.activeWidth);
  builder.make("Tessaly").model(body.model).uniqueModel(body.model).serial(body.serial);
  builder.exif(exposure.iso, exposure.seconds);
  if (exposure.level > 0) builder.fNumber(exposure.fNumber);
  if (body.cfa.empty()) {
    builder.linear();
  } else {
    builder.cfa(body.cfa);
  }
  return std::move(builder.samples(std::move(samples)));
}

}  // namespace tessaly::tools
