#include "calibration/review/PartialColumn.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using tests::candidate;
using tests::sensor;
using Kind = CalibrationCandidate::Kind;

TEST(PartialColumn, StartsBelowTheFirstActiveRow) {
  const DNGMetadata metadata = sensor();
  CalibrationCandidate column = candidate(Kind::line);
  EXPECT_TRUE(isPartialColumn(column, metadata));
  column.yStart = 21;
  EXPECT_TRUE(isPartialColumn(column, metadata));
  column.yStart = 20;
  EXPECT_FALSE(isPartialColumn(column, metadata));
  EXPECT_FALSE(isPartialColumn(candidate(Kind::pixel), metadata));
}

}  // namespace
}  // namespace tessaly
