#include "localization/Localization.h"
#include "presentation/DuplicateColumns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

CalibrationCandidate line(std::int64_t x, std::int64_t yStart, std::int64_t yEnd, std::int64_t width = 1) {
  CalibrationCandidate candidate;
  candidate.id = UUID::random();
  candidate.kind = CalibrationCandidate::Kind::line;
  candidate.x = x;
  candidate.yStart = yStart;
  candidate.yEnd = yEnd;
  candidate.width = width;
  return candidate;
}

DNGMetadata metadata() {
  DNGMetadata described;
  described.activeY = 4;
  return described;
}

std::map<UUID, std::int64_t> inside(const std::vector<CalibrationCandidate>& candidates) {
  return DuplicateColumns::linesInsideColumns(candidates, metadata());
}

TEST(DuplicateColumns, AreLinesInsideAFullColumn) {
  const auto full = line(10, 4, 75, 2);
  const auto partial = line(11, 40, 75);
  EXPECT_THAT(inside({full, partial}), ElementsAre(Pair(partial.id, 10)));
  EXPECT_THAT(inside({partial, full}), ElementsAre(Pair(partial.id, 10))) << "whatever stands first";
}

TEST(DuplicateColumns, AreNotLinesBesideOrBeyondIt) {
  const auto full = line(10, 4, 75);
  EXPECT_THAT(inside({full, line(11, 40, 75), line(9, 40, 75), line(9, 40, 75, 2)}), IsEmpty());
  EXPECT_THAT(inside({full, line(10, 40, 79)}), IsEmpty()) << "it goes on below";
}

TEST(DuplicateColumns, AreNotMadeByAPartialLine) {
  EXPECT_THAT(inside({line(10, 5, 75), line(10, 40, 75)}), IsEmpty());
}

TEST(DuplicateColumns, AreTheLaterOfTwoEqualOnes) {
  const auto first = line(10, 4, 75);
  const auto second = line(10, 4, 75);
  EXPECT_THAT(inside({first, second}), ElementsAre(Pair(second.id, 10)));
}

TEST(DuplicateColumns, AreNeverPixelsOrSpots) {
  auto spot = line(10, 40, 40);
  spot.kind = CalibrationCandidate::Kind::spot;
  EXPECT_THAT(inside({line(10, 4, 75), spot}), IsEmpty());
}

TEST(DuplicateColumns, AreCountedInAProfile) {
  CameraProfile profile;
  profile.activeY = 4;
  EXPECT_EQ(DuplicateColumns::linesInsideColumns(profile), 0);
  profile.lines = {{10, 40, 75, 1, 0.9, ""}, {10, 4, 75, 1, 0.9, ""}, {30, 40, 75, 1, 0.9, ""}};
  EXPECT_EQ(DuplicateColumns::linesInsideColumns(profile), 1);
}

TEST(DuplicateColumns, AreToldBehindAnotherText) {
  EXPECT_EQ(DuplicateColumns::behind("Done.", " ", 0), "Done.");
  EXPECT_EQ(DuplicateColumns::behind("Done.", " ", 1), "Done. One column lies inside another.");
  EXPECT_EQ(DuplicateColumns::behind("Saved", "\n\n", 1), "Saved\n\nOne column lies inside another.");
  Localization::setLanguageOverride(AppLanguage::chinese);
  EXPECT_EQ(DuplicateColumns::behind("完成。", " ", 1), "完成。有一列位于另一列之内。");
  Localization::setLanguageOverride(std::nullopt);
}

TEST(DuplicateColumns, AreMarkedWithTheActiveColumn) {
  DNGMetadata described;
  described.activeX = 10;
  EXPECT_EQ(DuplicateColumns::mark(50, described), "inside the full column at x 40");
}

TEST(DuplicateColumns, AreToldInASentence) {
  EXPECT_EQ(DuplicateColumns::sentence(0), "");
  EXPECT_EQ(DuplicateColumns::sentence(1), "One column lies inside another.");
  EXPECT_EQ(DuplicateColumns::sentence(12), "12 columns lie inside others.");
}

}  // namespace
}  // namespace tessaly::tests
