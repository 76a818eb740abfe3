#include "presentation/ForeignFrames.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tools::DNGBuilder;

class ForeignFramesTest : public testing::Test {
 protected:
  /// A frame of the body with that serial.
  void add(const std::string& name, const char* serial) {
    DNGBuilder().size(64, 48).serial(serial).write(folder / name);
    frames.push_back(folder / name);
  }

  [[nodiscard]] std::vector<std::string> strangers() const {
    std::vector<std::string> names;
    for (const auto& frame : ForeignFrames::smallerSide(frames))
      names.push_back(frame.filename());
    return names;
  }

  TemporaryFolder folder;
  std::vector<std::filesystem::path> frames;
  const DNGError mismatch = DNGError::contextualize(DNGError::profileMismatch("other"), "f2.dng");
};

TEST_F(ForeignFramesTest, AreTheFewerOnesEvenWhenTheyStandFirst) {
  add("f10.dng", "B");
  add("f1.dng", "A");
  add("f2.dng", "B");
  add("f0.dng", "A");
  add("f11.dng", "B");
  EXPECT_THAT(strangers(), ElementsAre("f0.dng", "f1.dng"));
  EXPECT_EQ(ForeignFrames::line(mismatch, frames), "Of another camera or layout than the rest: f0.dng, f1.dng");
}

TEST_F(ForeignFramesTest, AreThoseBesideTheFirstOfTwoEqualSides) {
  add("a.dng", "A");
  add("b.dng", "B");
  EXPECT_THAT(strangers(), ElementsAre("b.dng"));
}

TEST_F(ForeignFramesTest, AreAllBesideTheLargestSide) {
  for (const char* serial : {"A", "B", "C", "B"})
    add("f" + std::to_string(frames.size()) + ".dng", serial);
  writeText(folder / "broken.dng", "");
  frames.push_back(folder / "broken.dng");
  EXPECT_THAT(strangers(), ElementsAre("f0.dng", "f2.dng"));
}

TEST_F(ForeignFramesTest, AreCountedFromTheTwentyFirstOn) {
  for (int number = 1; number <= 25; ++number) {
    add("a" + std::to_string(number) + ".dng", "A");
    add("b" + std::to_string(number) + ".dng", "B");
  }
  EXPECT_THAT(ForeignFrames::line(mismatch, frames), testing::EndsWith("b19.dng, b20.dng and 5 more"));
}

TEST_F(ForeignFramesTest, AreNotLookedForAfterAnotherError) {
  add("a.dng", "A");
  add("b.dng", "B");
  EXPECT_EQ(ForeignFrames::line(DNGError::invalid("Raw dimensions"), frames), "");
  EXPECT_THAT(ForeignFrames::smallerSide({}), IsEmpty());
}

}  // namespace
}  // namespace tessaly::tests
