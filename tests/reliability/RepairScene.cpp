#include "reliability/RepairScene.h"

#include "batch/BatchFolders.h"
#include "batch/RepairLog.h"
#include "dng/DNGReader.h"
#include "platform/AbandonedFiles.h"
#include "profile/CameraProfileJSON.h"
#include "repair/RepairCopy.h"
#include "support/FileBytes.h"
#include "tools/DNGBuilder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaly::tests {

namespace {

// Photographs of the three shapes that are stored differently: 16 bits in one strip, 12 bits packed, tiles.
tools::DNGBuilder photograph(int number, const SceneSize& size, std::mt19937& random) {
  const int bits = number % 3 == 1 ? 12 : 16;
  std::uniform_int_distribution<int> sample(0, (1 << bits) - 1);
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(size.width * size.height));
  for (std::uint16_t& value : samples)
    value = static_cast<std::uint16_t>(sample(random));
  tools::DNGBuilder builder;
  builder.size(size.width, size.height).bits(bits).samples(std::move(samples));
  if (number % 3 == 2) builder.tiles(128, 128);
  return builder;
}

CameraProfile profileFor(const std::filesystem::path& file) {
  const DNGMetadata metadata = DNGReader::readMetadata(file);
  CameraProfile profile = CameraProfile::empty("Body", metadata);
  for (std::int64_t y = 3; y < metadata.rawHeight - 3; y += 5) {
    DefectPixel pixel;
    pixel.x = 3 + (y * 7) % (metadata.rawWidth - 6);
    pixel.y = y;
    profile.pixels.push_back(pixel);
  }
  DefectLine line;
  line.x = metadata.rawWidth / 2;
  line.yEnd = metadata.rawHeight - 1;
  profile.lines.push_back(line);
  return profile;
}

}  // namespace

RepairScene::RepairScene(const std::filesystem::path& folder, const SceneSize& size, unsigned seed)
    : input_(folder / "input"), profileFile_(folder / "profile.json") {
  std::filesystem::create_directories(input_);
  std::mt19937 random(seed);
  for (int number = 0; number < size.files; ++number) {
    const std::filesystem::path file = input_ / fmt::format("L{}.dng", 1000 + number);
    photograph(number, size, random).write(file);
    if (number == 0) profile_ = profileFor(file);
    const std::filesystem::path copy = folder / "expected.dng";
    DNGWriter::repairCopy(file, copy, profile_);
    originals_[file.filename()] = readBytes(file);
    copies_[file.filename()] = readBytes(copy);
    std::filesystem::remove(copy);
    EXPECT_NE(originals_[file.filename()], copies_[file.filename()]) << "the profile repairs nothing";
  }
  writeText(profileFile_, encodeProfile(profile_));
}

void RepairScene::restore() const {
  std::filesystem::remove_all(input_);
  std::filesystem::create_directory(input_);
  for (const auto& [name, bytes] : originals_)
    tools::writeBytes(input_ / name, bytes);
}

void RepairScene::expectOriginalsUntouched() const {
  EXPECT_EQ(namesIn(input_).size(), originals_.size());
  for (const auto& [name, bytes] : originals_)
    EXPECT_TRUE(std::filesystem::exists(input_ / name) && readBytes(input_ / name) == bytes) << name;
}

OutputContents contentsOf(const std::filesystem::path& folder) {
  OutputContents contents;
  for (const std::string& name : namesIn(folder)) {
    const std::filesystem::path path = folder / name;
    if (isTemporaryName(name)) {
      contents.temporaries.push_back(name);
    } else if (name.starts_with("Repair Log-") && name.ends_with(".csv")) {
      contents.logs.push_back(path);
    } else if (name.ends_with(".dng")) {
      contents.copies[name] = readBytes(path);
    } else {
      contents.others.push_back(name);
    }
  }
  return contents;
}

void expectOnlyWholeCopies(const OutputContents& contents, const RepairScene& scene) {
  EXPECT_EQ(contents.others, std::vector<std::string>{});
  for (const auto& [name, bytes] : contents.copies) {
    const auto expected = scene.copies().find(name);
    EXPECT_TRUE(expected != scene.copies().end() && expected->second == bytes) << name << " is no whole copy";
  }
  for (const std::filesystem::path& log : contents.logs)
    expectWholeLog(log, scene.count());
}

void expectWholeLog(const std::filesystem::path& log, std::size_t files) {
  const Names rows = lines(readText(log));
  EXPECT_EQ(rows.size(), files + 1);
  EXPECT_EQ(rows.front(), RepairLog::header);
  for (std::size_t index = 1; index < rows.size(); ++index)
    EXPECT_THAT(rows[index], testing::MatchesRegex(R"re("([^"]|"")*",(Success|Failed|Skipped),[0-9]+,"([^"]|"")*")re"));
}

}  // namespace tessaly::tests
