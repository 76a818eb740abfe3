// Curves over two logarithmic axes as a drawing for a report page (SVG, with the page's colours).
//
// Stateless; safe from any thread.
#pragma once

#include <string>
#include <vector>

namespace tessaly {

struct PlotPoint {
  double x = 0;
  double y = 0;
};

struct PlotSeries {
  std::string name;
  std::vector<PlotPoint> points;  ///< from left to right; what is not positive is left out
};

struct LogPlot {
  std::string xName;
  std::string yName;
  std::vector<PlotSeries> series;

  /// Axes run over whole decades that hold all points. Empty without a point.
  [[nodiscard]] std::string svg() const;
};

}  // namespace tessaly
