#include "profile/CameraProfileJSON.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"
#include "tools/SampleBody.h"
#include "tools/SampleReport.h"
#include "tools/SampleSet.h"
#include "tools/SampleTexture.h"
#include "tools/TruthProfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaly::tools {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int64_t width = 12;
constexpr std::int64_t height = 8;

using Samples = std::vector<std::uint16_t>;

CameraProfile sensor() {
  CameraProfile profile;
  profile.rawWidth = profile.activeWidth = width;
  profile.rawHeight = profile.activeHeight = height;
  profile.spots.emplace();
  return profile;
}

/// A pixel, a column, the lower half of a column, and a spot of five samples.
CameraProfile planted() {
  CameraProfile profile = sensor();
  profile.pixels = {{2, 1, 1.0, "Hot pixel"}};
  profile.lines = {{5, 0, 7, 1, 1.0, "Column"}, {8, 4, 7, 1, 1.0, "Partial column"}};
  profile.spots->push_back({10, 1, 1, 1, 1.0, "Dust"});
  return profile;
}

void set(Samples& samples, std::int64_t x, std::int64_t y, std::uint16_t value) {
  samples.at(static_cast<std::size_t>(y * width + x)) = value;
}

Samples scene() {
  return Samples(static_cast<std::size_t>(width * height), 1000);
}

Samples damaged() {
  Samples samples = scene();
  set(samples, 2, 1, 1300);
  for (std::int64_t y = 0; y < height; ++y)
    set(samples, 5, y, 1010);
  for (std::int64_t y = 4; y < height; ++y)
    set(samples, 8, y, 980);
  set(samples, 10, 1, 900);
  return samples;
}

/// The pixel nearly, the column but for its last row, the partial column not at all, the spot exactly; and one sound
/// sample was changed.
Samples repaired() {
  Samples samples = damaged();
  set(samples, 2, 1, 1003);
  for (std::int64_t y = 0; y + 1 < height; ++y)
    set(samples, 5, y, 998);
  set(samples, 10, 1, 1000);
  set(samples, 0, 0, 1007);
  return samples;
}

class SampleReport : public testing::Test {
 protected:
  void SetUp() override {
    const SampleSetFolders folders(set_.path());
    for (const auto& folder : {folders.photographs, folders.undamaged})
      std::filesystem::create_directories(folder);
    tests::writeText(folders.truth, encodeProfile(planted()));
    write(folders.undamaged / "water.dng", scene());
    write(folders.photographs / "water.dng", damaged());
  }

  static void write(const std::filesystem::path& path, const Samples& samples) {
    DNGBuilder().size(width, static_cast<std::int64_t>(samples.size()) / width).samples(samples).write(path);
  }

  void writeRepaired(const Samples& samples) const { write(repaired_ / "water.dng", samples); }
  [[nodiscard]] std::vector<DistanceReport> report() const { return comparePhotographs(set_.path(), repaired_.path()); }

 private:
  tests::TemporaryFolder set_;
  tests::TemporaryFolder repaired_;
};

/// kind, samples, rebuilt, damaged (mean, largest), repaired (mean, largest)
testing::Matcher<const DistanceReport&> isReport(const std::string& kind, std::int64_t samples, std::int64_t rebuilt,
                                                 SampleDistance before, SampleDistance after) {
  const auto isDistance = [](const SampleDistance& wanted) {
    return testing::AllOf(testing::Field("mean", &SampleDistance::mean, testing::DoubleEq(wanted.mean)),
                          testing::Field("largest", &SampleDistance::largest, wanted.largest));
  };
  return testing::AllOf(testing::Field("photograph", &DistanceReport::photograph, "water.dng"),
                        testing::Field("kind", &DistanceReport::kind, kind),
                        testing::Field("samples", &DistanceReport::samples, samples),
                        testing::Field("rebuilt", &DistanceReport::rebuilt, rebuilt),
                        testing::Field("damaged", &DistanceReport::damaged, isDistance(before)),
                        testing::Field("repaired", &DistanceReport::repaired, isDistance(after)));
}

TEST_F(SampleReport, GivesDistancesByKindOfDefect) {
  writeRepaired(repaired());
  EXPECT_THAT(report(), ElementsAre(isReport("pixel", 1, 1, {300, 300}, {3, 3}),                   //
                                    isReport("column", 8, 7, {10, 10}, {(7 * 2 + 10) / 8.0, 10}),  //
                                    isReport("partial column", 4, 0, {20, 20}, {20, 20}),          //
                                    isReport("spot", 5, 1, {100 / 5.0, 100}, {0, 0}),              //
                                    isReport("elsewhere", 12 * 8 - 18, 1, {0, 0}, {7 / 78.0, 7})));
}

TEST_F(SampleReport, ShowsOneLineAKindOfDefect) {
  writeRepaired(repaired());
  EXPECT_THAT(table(report()), HasSubstr("\nwater.dng               column                  8        7"
                                         "        10.0,     10         3.0,     10        0.00,   0.00"));
}

TEST_F(SampleReport, LeavesOutPhotographsThatWereNotRepaired) {
  EXPECT_THAT(report(), testing::IsEmpty());
}

TEST_F(SampleReport, RefusesAPhotographOfAnotherSize) {
  writeRepaired(Samples(static_cast<std::size_t>(width * (height - 1)), 1000));
  EXPECT_THROW((void)report(), std::runtime_error);
}

/// planted, found, false, second
testing::Matcher<const KindReport&> isCount(const std::string& kind, std::int64_t planted, std::int64_t found,
                                            std::int64_t wrong, std::int64_t second) {
  return testing::AllOf(
      testing::Field("kind", &KindReport::kind, kind), testing::Field("planted", &KindReport::planted, planted),
      testing::Field("found", &KindReport::found, found), testing::Field("wrong", &KindReport::wrong, wrong),
      testing::Field("second", &KindReport::second, second));
}

TEST(SampleProfileReport, CountsByStrengthAndSaysWhatIsNotCovered) {
  CameraProfile truth = planted();
  truth.pixels = {
      {2, 1, 1.0, "Hot pixel, 420 e/s"}, {3, 3, 1.0, "Hot pixel, 299 e/s"}, {0, 7, 1.0, "Hot pixel, 100 e/s"}};
  CameraProfile found = sensor();
  found.pixels = {{3, 3, 1.0, ""}};
  found.lines = {{5, 2, 7, 1, 1.0, ""}};
  const std::vector<StrengthReport> reports = compareStrengths(truth, found);
  EXPECT_EQ(table(reports),
            "kind              strength              planted    found   missed     samples   not covered\n"
            "Column                                        1        1        0           8             2\n"
            "Dust                                          1        0        1           5             5\n"
            "Hot pixel         100 … 300 e/s               2        1        1           2             1\n"
            "Hot pixel         300 … 1000 e/s              1        0        1           1             1\n"
            "Partial column                                1        0        1           4             4\n");
}

TEST(SampleTexture, TellsAStripeFromNoise) {
  constexpr std::size_t rows = 70;
  const std::vector<std::uint16_t> scene(2 * rows, 100);
  std::vector<std::uint16_t> noisy = scene;
  std::vector<std::uint16_t> shifted = scene;
  const std::vector<bool> everywhere(2 * rows, true);
  for (std::size_t y = 0; y < rows; ++y) {
    noisy[2 * y] = y % 2 == 0 ? 110 : 90;
    shifted[2 * y] = 110;
  }
  EXPECT_EQ(remainingStripe(noisy, scene, everywhere, 2), 0);
  EXPECT_EQ(remainingStripe(shifted, scene, everywhere, 2), 5) << "the mean over both columns";
  EXPECT_EQ(remainingStripe(shifted, scene, std::vector<bool>(2 * rows, false), 2), 0);
}

TEST(SampleTexture, ComparesTheGrainWithThatOfTheScene) {
  std::vector<std::uint16_t> scene(20);
  std::vector<std::uint16_t> smooth(20, 10);
  std::vector<std::uint16_t> rough(20);
  for (std::size_t i = 0; i < scene.size(); ++i) {
    scene[i] = static_cast<std::uint16_t>(i / 2 % 2 == 0 ? 4 : 8);
    rough[i] = static_cast<std::uint16_t>(i / 2 % 2 == 0 ? 4 : 12);
  }
  const std::vector<bool> everywhere(20, true);
  EXPECT_EQ(relativeGrain(rough, scene, everywhere, 1), 2);
  EXPECT_EQ(relativeGrain(smooth, scene, everywhere, 1), 0);
  EXPECT_EQ(relativeGrain(rough, smooth, everywhere, 1), std::nullopt);
}

TEST(TruthProfile, NamesKindAndStrength) {
  const PlantedReason reason("Hot pixel, 1.2e+03 e/s");
  EXPECT_EQ(reason.kind, "Hot pixel");
  EXPECT_EQ(reason.strength, 1200);
  EXPECT_EQ(reason.unit, "e/s");
  EXPECT_FALSE(PlantedReason("Dust").strength.has_value());
}

TEST(SampleBody, HasTheFilesItAlwaysHad) {
  const std::vector<SampleFrame> frames = sampleCalibration();
  ASSERT_EQ(frames.size(), 36U);
  EXPECT_EQ(frames.front().name, "bright-30th-1");
  EXPECT_EQ(frames.back().name, "dark-two-seconds-3");
  const BodyDescription description = sampleBody(2);
  EXPECT_EQ(samplePhotographs(description).front().name, "evening-sky");
  const CameraProfile truth = truthProfile(SensorBody(description, sampleDefects(description)), photographFNumber);
  EXPECT_THAT(truth.pixels.front().reason, HasSubstr("pixel, "));
  EXPECT_FALSE(truth.spots->empty());
}

TEST(SampleProfileReport, FindsWhatWasPlanted) {
  EXPECT_THAT(compareProfiles(planted(), planted()),
              ElementsAre(isCount("pixel", 1, 1, 0, 0), isCount("column", 1, 1, 0, 0),
                          isCount("partial column", 1, 1, 0, 0), isCount("spot", 1, 1, 0, 0)));
}

TEST(SampleProfileReport, CountsWhatIsMissedAndWhatIsFalse) {
  CameraProfile found = sensor();
  found.pixels = {{5, 3, 1.0, ""}, {0, 0, 1.0, ""}};
  found.lines = {{6, 0, 7, 1, 1.0, ""}};
  EXPECT_THAT(compareProfiles(planted(), found),
              ElementsAre(isCount("pixel", 1, 0, 1, 0), isCount("column", 1, 0, 1, 0),
                          isCount("partial column", 1, 0, 0, 0), isCount("spot", 1, 0, 0, 0)));
}

TEST(SampleProfileReport, ShowsASecondLineOverOneColumn) {
  CameraProfile found = planted();
  found.lines.push_back({5, 6, 7, 1, 1.0, ""});
  const std::vector<KindReport> report = compareProfiles(planted(), found);
  EXPECT_THAT(report, ElementsAre(isCount("pixel", 1, 1, 0, 0), isCount("column", 1, 1, 0, 1),
                                  isCount("partial column", 1, 1, 0, 0), isCount("spot", 1, 1, 0, 0)));
  EXPECT_THAT(table(report), HasSubstr("    false   second\n"));
  EXPECT_THAT(table(report), HasSubstr("\ncolumn                  1        1        0        0        1\n"));
}

TEST(SampleProfileReport, CountsOneLineOverTwoColumnsAsNoSecond) {
  CameraProfile truth = sensor();
  truth.lines = {{5, 0, 7, 1, 1.0, ""}, {6, 0, 7, 1, 1.0, ""}};
  CameraProfile found = sensor();
  found.lines = {{5, 0, 7, 2, 1.0, ""}};
  EXPECT_THAT(compareProfiles(truth, found)[1], isCount("column", 2, 2, 0, 0));
}

}  // namespace
}  // namespace tessaly::tools
