#include "presentation/ReportPlot.h"

#include "presentation/NumberTexts.h"
#include "presentation/ReportPage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tessaly {
namespace {

constexpr double plotWidth = 760;
constexpr double plotHeight = 400;
constexpr double leftMargin = 90;
constexpr double rightMargin = 20;
constexpr double topMargin = 16;
constexpr double bottomMargin = 56;
constexpr double legendLine = 18;
constexpr std::array dashes{"none", "7 3", "2 3", "9 3 2 3", "4 4", "1 2"};

bool isPositive(const PlotPoint& point) {
  return point.x > 0 && point.y > 0;
}

/// Whole decades, first and last.
class DecadeAxis {
 public:
  void add(double value) {
    const double decade = std::log10(value);
    first_ = isEmpty_ ? std::floor(decade) : std::min(first_, std::floor(decade));
    last_ = isEmpty_ ? std::ceil(decade) : std::max(last_, std::ceil(decade));
    isEmpty_ = false;
  }

  [[nodiscard]] bool isEmpty() const { return isEmpty_; }
  [[nodiscard]] int first() const { return static_cast<int>(first_); }
  [[nodiscard]] int last() const { return static_cast<int>(std::max(last_, first_ + 1)); }
  /// 0 at the first decade, 1 at the last.
  [[nodiscard]] double place(double value) const { return (std::log10(value) - first_) / (last() - first()); }

 private:
  double first_ = 0;
  double last_ = 0;
  bool isEmpty_ = true;
};

class Drawing {
 public:
  explicit Drawing(const LogPlot& plot) : plot_(plot) {
    for (const PlotSeries& series : plot.series) {
      for (const PlotPoint& point : series.points) {
        if (!isPositive(point)) continue;
        x_.add(point.x);
        y_.add(point.y);
      }
    }
  }

  std::string svg() {
    if (x_.isEmpty()) return {};
    text_ = fmt::format("<svg viewBox=\"0 0 {0} {1}\" width=\"{0}\" height=\"{1}\" role=\"img\" aria-label=\"{2}\">\n",
                        plotWidth, plotHeight, ReportPage::escaped(plot_.xName + ", " + plot_.yName));
    drawAxes();
    for (std::size_t i = 0; i < plot_.series.size(); ++i)
      drawSeries(i);
    return text_ + "</svg>\n";
  }

 private:
  [[nodiscard]] double across(double value) const {
    return leftMargin + x_.place(value) * (plotWidth - leftMargin - rightMargin);
  }
  [[nodiscard]] double down(double value) const {
    return plotHeight - bottomMargin - y_.place(value) * (plotHeight - topMargin - bottomMargin);
  }

  static std::string tick(int decade) { return NumberTexts::decimal(std::pow(10, decade), std::max(-decade, 0)); }

  void line(double x1, double y1, double x2, double y2) {
    text_ +=
        fmt::format("<line class=\"grid\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", x1, y1, x2, y2);
  }

  void label(double x, double y, std::string_view anchor, std::string_view words) {
    text_ += fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor,
                         ReportPage::escaped(words));
  }

  void drawAxes() {
    const double bottom = plotHeight - bottomMargin;
    const double right = plotWidth - rightMargin;
    for (int decade = x_.first(); decade <= x_.last(); ++decade) {
      const double x = across(std::pow(10, decade));
      line(x, topMargin, x, bottom);
      label(x, bottom + legendLine, "middle", tick(decade));
    }
    for (int decade = y_.first(); decade <= y_.last(); ++decade) {
      const double y = down(std::pow(10, decade));
      line(leftMargin, y, right, y);
      label(leftMargin - 6, y + 4, "end", tick(decade));
    }
    text_ += fmt::format("<rect class=\"frame\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n", leftMargin,
                         topMargin, right - leftMargin, bottom - topMargin);
    label((leftMargin + right) / 2, plotHeight - 12, "middle", plot_.xName);
    text_ += fmt::format("<text transform=\"translate(16 {:.1f}) rotate(-90)\" text-anchor=\"middle\">{}</text>\n",
                         (topMargin + bottom) / 2, ReportPage::escaped(plot_.yName));
  }

  void drawSeries(std::size_t i) {
    const std::string stroke =
        fmt::format("stroke=\"var(--c{})\" stroke-dasharray=\"{}\"", i % dashes.size(), dashes[i % dashes.size()]);
    std::string points;
    for (const PlotPoint& point : plot_.series[i].points)
      if (isPositive(point)) points += fmt::format("{:.1f},{:.1f} ", across(point.x), down(point.y));
    text_ += fmt::format("<polyline class=\"curve\" {} points=\"{}\"/>\n", stroke, points);
    const double y = topMargin + legendLine * (static_cast<double>(i) + 1);
    const double right = plotWidth - rightMargin - 8;
    text_ += fmt::format("<polyline class=\"curve\" {} points=\"{:.1f},{:.1f} {:.1f},{:.1f}\"/>\n", stroke, right - 40,
                         y - 4, right, y - 4);
    label(right - 48, y, "end", plot_.series[i].name);
  }

  const LogPlot& plot_;
  DecadeAxis x_;
  DecadeAxis y_;
  std::string text_;
};

}  // namespace

std::string LogPlot::svg() const {
  return Drawing(*this).svg();
}

}  // namespace tessaly
