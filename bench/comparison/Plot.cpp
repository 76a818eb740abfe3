#include "comparison/Plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaly::bench {
namespace {

constexpr double plotWidth = 560;
constexpr double plotHeight = 300;
constexpr double margin = 70;
constexpr double chartHeight = plotHeight + 2 * margin;

/// The powers of ten around all values of one axis.
struct Decades {
  double first = 0;
  double last = 1;

  [[nodiscard]] double share(double value) const { return (std::log10(value) - first) / (last - first); }
};

Decades decadesOf(const Chart& chart, double Point::*axis) {
  double least = 1e300;
  double most = 1e-300;
  for (const Curve& curve : chart.curves) {
    for (const Point& point : curve.points) {
      least = std::min(least, point.*axis);
      most = std::max(most, point.*axis);
    }
  }
  const double first = std::floor(std::log10(least));
  return {first, std::max(std::ceil(std::log10(most)), first + 1)};
}

class ChartDrawing {
 public:
  ChartDrawing(const Chart& chart, double top)
      : chart_(chart), top_(top + margin), x_(decadesOf(chart, &Point::x)), y_(decadesOf(chart, &Point::y)) {}

  [[nodiscard]] std::string drawn() const {
    std::string svg = text(margin + plotWidth / 2, top_ - 24, "middle", chart_.title);
    svg += grid();
    for (std::size_t i = 0; i < chart_.curves.size(); ++i)
      svg += curve(i);
    svg += text(margin + plotWidth / 2, top_ + plotHeight + 42, "middle", chart_.xName);
    return svg + text(margin - 8, top_ - 14, "end", chart_.yName);
  }

 private:
  static std::string text(double x, double y, const char* anchor, const std::string& words) {
    return fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor, words);
  }

  static std::string line(const Point& from, const Point& to) {
    return fmt::format("<path d=\"M{:.1f} {:.1f}L{:.1f} {:.1f}\" stroke=\"#ccc\"/>\n", from.x, from.y, to.x, to.y);
  }

  [[nodiscard]] Point placeOf(const Point& value) const {
    return {margin + x_.share(value.x) * plotWidth, top_ + (1 - y_.share(value.y)) * plotHeight};
  }

  [[nodiscard]] std::string grid() const {
    std::string svg;
    for (double power = x_.first; power <= x_.last; ++power) {
      const double x = placeOf({std::pow(10, power), 1}).x;
      svg += line({x, top_}, {x, top_ + plotHeight});
      svg += text(x, top_ + plotHeight + 18, "middle", fmt::format("{:.10g}", std::pow(10, power)));
    }
    for (double power = y_.first; power <= y_.last; ++power) {
      const double y = placeOf({1, std::pow(10, power)}).y;
      svg += line({margin, y}, {margin + plotWidth, y});
      svg += text(margin - 8, y + 4, "end", fmt::format("{:.10g}", std::pow(10, power)));
    }
    return svg;
  }

  [[nodiscard]] std::string curve(std::size_t index) const {
    static constexpr std::array colours{"#2b6cb8", "#b8562b"};
    const Curve& curve = chart_.curves[index];
    const char* colour = colours[index % colours.size()];
    std::string path;
    std::string dots;
    for (const Point& point : curve.points) {
      const Point place = placeOf(point);
      path += fmt::format("{}{:.1f} {:.1f}", path.empty() ? "M" : "L", place.x, place.y);
      dots += fmt::format("<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\" fill=\"{}\"/>\n", place.x, place.y, colour);
    }
    const double row = top_ + 18 + 18 * static_cast<double>(index);
    return fmt::format("<path d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"2\"/>\n{}", path, colour, dots) +
           fmt::format("<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"4\" fill=\"{}\"/>\n", margin + 16, row - 4, colour) +
           text(margin + 28, row, "start", curve.name);
  }

  const Chart& chart_;
  double top_;
  Decades x_;
  Decades y_;
};

}  // namespace

std::string picture(const std::vector<Chart>& charts) {
  const double height = chartHeight * static_cast<double>(charts.size());
  std::string svg = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0:g} {1:g}\" width=\"{0:g}\" height=\"{1:g}\" "
      "font-family=\"sans-serif\" font-size=\"13\">\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n",
      plotWidth + 2 * margin, height);
  for (std::size_t i = 0; i < charts.size(); ++i)
    svg += ChartDrawing(charts[i], chartHeight * static_cast<double>(i)).drawn();
  return svg + "</svg>\n";
}

Chart costAgainstSize(const Extent& extent) {
  Curve repairing{"repair, 2,000 pixels", {}};
  Curve copying{"cp + cmp", {}};
  for (const double megapixels : {1.0, 3.0, 10.0, 24.0, 50.0, 100.0, 250.0}) {
    if (extent.isQuick && megapixels > 50) continue;
    const Material material(folderInMemory());
    const Path source = material.photograph("source.dng", imageOf(megapixels, 16));
    const Path copy = material / "copy.dng";
    const Measured measured =
        measure({"", "", "", extent.rounds(5),
                 programs({repair(source, copy, material.profile("p.json", source, 2000))}, {copy}),
                 programs(copyAndCompare(source, copy), {copy})});
    repairing.points.push_back({megapixels, measured.work.least});
    copying.points.push_back({megapixels, measured.floor.least});
  }
  return {"What a repair costs against the size of the image", "megapixels of 16 bits", "ms", {repairing, copying}};
}

Chart costAgainstDefects(const Extent& extent) {
  const Material material(folderInMemory());
  const Path source = material.photograph("source.dng", {6000, 4000, 16});
  const Path copy = material / "copy.dng";
  Curve repairing{"repair, 24 megapixels", {}};
  Curve copying{"cp + cmp", {}};
  for (const std::int64_t pixels : {100, 1'000, 10'000, 100'000, 1'000'000}) {
    if (extent.isQuick && pixels > 100'000) continue;
    const Path profile = material.profile("p.json", source, pixels);
    const Measured measured = measure({"", "", "", extent.rounds(5), programs({repair(source, copy, profile)}, {copy}),
                                       programs(copyAndCompare(source, copy), {copy})});
    repairing.points.push_back({static_cast<double>(pixels), measured.work.least});
    copying.points.push_back({static_cast<double>(pixels), measured.floor.least});
  }
  return {"What a repair costs against the number of defects", "pixels in the profile", "ms", {repairing, copying}};
}

}  // namespace tessaly::bench
