// What the preview costs to draw with 40,000 pixels and 100 columns, compared with drawing its picture without any. The
// window follows the hand as long as one drawing takes less than a screen refresh or two (16 ms each).
//
//   fit      the whole sensor in view: every marker is drawn
//   close    a part at 100 %: the index finds the few that are in view
//   zooming  a new zoom for every drawing, so that the reduced picture is made anew
#include "app/preview/CalibrationPreviewView.h"
#include "dng/Floor.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <random>
#include <set>
#include <vector>

namespace {

using namespace tessaly;
using Kind = CalibrationCandidate::Kind;

constexpr std::int64_t width = 11648;
constexpr std::int64_t height = 8736;
constexpr std::int64_t reduction = 8;
constexpr int pixels = 40'000;
constexpr int columns = 100;

DNGMetadata sensor() {
  DNGMetadata metadata;
  metadata.rawWidth = metadata.activeWidth = width;
  metadata.rawHeight = metadata.activeHeight = height;
  return metadata;
}

CalibrationCandidate candidate(Kind kind, std::mt19937& random) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = kind;
  result.x = static_cast<std::int64_t>(random() % width);
  result.yStart = static_cast<std::int64_t>(random() % height);
  result.yEnd = kind == Kind::line ? height - 1 : result.yStart;
  return result;
}

/// A view of a 100-megapixel sensor; every second candidate is included.
class Scene {
 public:
  explicit Scene(bool marked) : view_(store_) {
    std::mt19937 random(1);
    std::vector<CalibrationCandidate> candidates;
    for (int i = 0; marked && i < pixels + columns; ++i)
      candidates.push_back(candidate(i < pixels ? Kind::pixel : Kind::line, random));
    std::set<UUID> accepted;
    for (std::size_t i = 0; i < candidates.size(); i += 2)
      accepted.insert(candidates[i].id);
    RawPreviewImage preview{width / reduction, height / reduction, {}};
    for (std::int64_t i = 0; i < preview.width * preview.height; ++i)
      preview.pixels.push_back(static_cast<std::uint8_t>(random()));
    view_.resize(1600, 1200);
    view_.show();
    store_.reset(sensor(), std::move(candidates), accepted);
    view_.setPreview(preview, sensor());
    QApplication::processEvents();
  }

  void draw(const std::vector<double>& zoomPositions) {
    for (const double position : zoomPositions) {
      view_.setZoomPosition(position);
      view_.viewport()->repaint();
    }
  }

 private:
  CandidateStore store_;
  CalibrationPreviewView view_;
};

void draw(benchmark::State& state, const std::vector<double>& zoomPositions) {
  constexpr std::int64_t shownPixels = 1600 * 1200;
  Scene plain(false);
  Scene marked(true);
  bench::againstFloor(
      state, "xPlain", shownPixels * std::ssize(zoomPositions), [&] { plain.draw(zoomPositions); },
      [&] { marked.draw(zoomPositions); });
}

}  // namespace

BENCHMARK_CAPTURE(draw, fit, std::vector<double>{0})->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, close, std::vector<double>{0.6})->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, zooming, std::vector<double>{0.02, 0.04, 0.06, 0.08, 0.1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
