// A picture of what a repair costs, against the size of the image and against the number of defects.
#pragma once

#include "comparison/Rows.h"

#include <string>
#include <vector>

namespace tessaly::bench {

struct Point {
  double x = 0;
  double y = 0;
};

struct Curve {
  std::string name;
  std::vector<Point> points;
};

struct Chart {
  std::string title;
  std::string xName;
  std::string yName;
  std::vector<Curve> curves;
};

/// The charts below each other as SVG, both axes logarithmic, a line for each power of ten.
[[nodiscard]] std::string picture(const std::vector<Chart>& charts);

/// Repair and `cp` + `cmp` of 1 to 250 megapixels, in memory, 16 bits and 2,000 pixels.
[[nodiscard]] Chart costAgainstSize(const Extent& extent);

/// Repair of 24 megapixels with 100 to a million pixels.
[[nodiscard]] Chart costAgainstDefects(const Extent& extent);

}  // namespace tessaly::bench
