#include "app/walk/WalkScene.h"

#include "dng/DNGReader.h"
#include "platform/AbandonedFiles.h"
#include "store/ProfileStore.h"
#include "support/FileBytes.h"
#include "tools/DNGBuilder.h"

#include <stdlib.h>

#include <cstdint>
#include <random>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t width = 320;
constexpr std::int64_t height = 160;
constexpr std::int64_t badColumn = 180;
constexpr std::int64_t badPixelX = 50;
constexpr std::int64_t badPixelY = 40;

tools::DNGBuilder frame(std::mt19937& random, int milliseconds) {
  constexpr unsigned level = 8000;
  constexpr unsigned noise = 8;
  std::vector<std::uint16_t> samples;
  for (std::int64_t y = 0; y < height; ++y) {
    for (std::int64_t x = 0; x < width; ++x) {
      const unsigned excess = x == badColumn ? 40 : 0;
      const bool isStuck = x == badPixelX && y == badPixelY;
      samples.push_back(static_cast<std::uint16_t>(isStuck ? 16000 : level + random() % noise + excess));
    }
  }
  tools::DNGBuilder file;
  file.size(width, height).white(16163).serial("S1").linear();
  file.exif(100, std::pair<std::int64_t, std::int64_t>(milliseconds, 1000)).samples(std::move(samples));
  return file;
}

bool isInside(const fs::path& file, const fs::path& folder) {
  return file.native().starts_with(folder.native() + "/");
}

}  // namespace

WalkScene::WalkScene() {
  for (const fs::path& folder : {calibration(), photographs(), empty(), copies()})
    fs::create_directory(folder);
  ::setenv("TESSALY_HOME", (root_ / "home").c_str(), 1);
  addFrames();
  addPhotographs();
  for (const auto& entry : fs::recursive_directory_iterator(root_.path()))
    if (entry.is_regular_file()) originals_[entry.path()] = readBytes(entry.path());
}

void WalkScene::addFrames() const {
  std::mt19937 random(1);
  for (int number = 1; number <= 6; ++number)
    frame(random, number <= 3 ? 8 : 100).write(calibration() / ("frame-" + std::to_string(number) + ".dng"));
}

void WalkScene::addPhotographs() const {
  std::mt19937 random(2);
  for (int number = 1; number <= 12; ++number)
    frame(random, 4).write(photographs() / ("L" + std::to_string(number) + ".dng"));
}

void WalkScene::keepProfile() const {
  CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(photographs() / "L1.dng"));
  profile.pixels.push_back({badPixelX, badPixelY, 1, "Manually added by user"});
  ProfileStore::save(profile);
}

void WalkScene::removeCopies() const {
  fs::remove_all(photographs() / "Tessaly Results");
  fs::remove_all(vanished());
  fs::remove_all(copies());
  fs::create_directory(copies());
}

std::vector<std::string> WalkScene::faults() const {
  std::vector<std::string> faults;
  for (const auto& [file, bytes] : originals_)
    if (!fs::exists(file) || readBytes(file) != bytes) faults.push_back(file.native() + " was changed");
  for (const auto& entry : fs::recursive_directory_iterator(root_.path())) {
    if (!entry.is_regular_file() || originals_.contains(entry.path())) continue;
    if (const std::string fault = faultOf(entry.path()); !fault.empty()) faults.push_back(fault);
  }
  return faults;
}

// Settings are the home's own business; elsewhere, also in a folder that a batch has made again, only copies, logs and
// exported profiles are made.
std::string WalkScene::faultOf(const fs::path& file) const {
  const std::string name = file.filename();
  if (isTemporaryName(name) || name.ends_with(".partial")) return file.native() + " was left";
  if (isInside(file, root_ / "home")) return {};
  const bool isForCopies = isInside(file, copies()) || isInside(file, photographs()) || isInside(file, vanished());
  const bool isCopy = name.ends_with(".dng") && isForCopies;
  const bool isOther = name.ends_with(".csv") || name.ends_with(".json");
  const bool isBesideOriginals = file.parent_path() == photographs() || file.parent_path() == calibration();
  return (isCopy || isOther) && !isBesideOriginals ? "" : file.native() + " has no business there";
}

}  // namespace tessaly::tests
