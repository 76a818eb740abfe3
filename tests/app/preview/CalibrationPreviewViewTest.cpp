#include "app/preview/CalibrationPreviewView.h"
#include "app/support/AppTest.h"
#include "app/widgets/DropTarget.h"
#include "app/widgets/QtText.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QWheelEvent>
#include <fstream>

namespace tessaly::tests {
namespace {

using Kind = CalibrationCandidate::Kind;

class Preview : public AppTest {
 protected:
  Preview() {
    metadata.rawWidth = metadata.activeWidth = 400;
    metadata.rawHeight = metadata.activeHeight = 300;
    CalibrationCandidate pixel;
    pixel.id = UUID::random();
    pixel.x = 100;
    pixel.yStart = pixel.yEnd = 200;
    CalibrationCandidate line = pixel;
    line.id = UUID::random();
    line.kind = Kind::line;
    line.yStart = 0;
    line.yEnd = 299;
    store.reset(metadata, {line, pixel}, {});
    view.resize(800, 600);
    view.show();
    view.setPreview({400, 300, std::vector<std::uint8_t>(400 * 300, 128)}, metadata);
    QCoreApplication::processEvents();
  }

  [[nodiscard]] QPointF sampleAt(QPointF place) const { return view.navigation().transform().toSample(place); }

  void wheel(QPointF place, int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWheelEvent event(place, view.viewport()->mapToGlobal(place), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view.viewport(), &event);
  }

  void drag(QPoint from, QPoint to) {
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(view.viewport(), (from + to) / 2);
    QTest::mouseMove(view.viewport(), to);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, to);
  }

  DNGMetadata metadata;
  CandidateStore store;
  CalibrationPreviewView view{store};
};

TEST_F(Preview, ShowsTheWholeImageFirst) {
  EXPECT_TRUE(view.navigation().isFit());
  EXPECT_NEAR(view.navigation().zoom(), 2, 0.01);
}

TEST_F(Preview, ZoomsAtTheCursor) {
  const QPointF place(200, 150);
  const QPointF before = sampleAt(place);
  const double zoom = view.navigation().zoom();
  wheel(place, 2);
  EXPECT_DOUBLE_EQ(view.navigation().zoom(), zoom * 1.25 * 1.25);
  EXPECT_NEAR(sampleAt(place).x(), before.x(), 0.5);
  EXPECT_NEAR(sampleAt(place).y(), before.y(), 0.5);
}

TEST_F(Preview, ZoomsBetweenFitAndSixteenPixelsASample) {
  wheel({400, 300}, 100);
  EXPECT_DOUBLE_EQ(view.navigation().zoom(), 16);
  wheel({400, 300}, -100);
  EXPECT_TRUE(view.navigation().isFit());
  QTest::keyClick(&view, Qt::Key_Plus);
  EXPECT_FALSE(view.navigation().isFit());
  QTest::keyClick(&view, Qt::Key_0);
  EXPECT_TRUE(view.navigation().isFit());
}

TEST_F(Preview, ZoomsByKeysAboutTheSelectedCandidateWhileItIsInView) {
  const QPointF pixel(100.5, 200.5);
  const auto place = [&] { return view.navigation().transform().toDevice(pixel); };
  view.setSelection({1}, 1);
  const QPointF before = place();
  for (int press = 0; press < 3; ++press)
    QTest::keyClick(&view, Qt::Key_Plus);
  EXPECT_NEAR(place().x(), before.x(), 1.5);
  EXPECT_NEAR(place().y(), before.y(), 1.5);
  QTest::keyClick(&view, Qt::Key_Minus);
  EXPECT_NEAR(place().x(), before.x(), 1.5);
  drag({100, 100}, {790, 590});
  drag({100, 100}, {790, 590});
  ASSERT_LT(sampleAt({0, 0}).x(), 1);
  for (int press = 0; press < 9; ++press)
    QTest::keyClick(&view, Qt::Key_Right);
  for (int press = 0; press < 9; ++press)
    QTest::keyClick(&view, Qt::Key_Right);
  const QPointF middle(view.viewport()->width() / 2.0, view.viewport()->height() / 2.0);
  ASSERT_LT(place().x(), 0) << "out of view";
  const QPointF there = sampleAt(middle);
  QTest::keyClick(&view, Qt::Key_Plus);
  EXPECT_NEAR(sampleAt(middle).x(), there.x(), 1);
  EXPECT_NEAR(sampleAt(middle).y(), there.y(), 1);
}

TEST_F(Preview, ZoomsByKeysAboutTheMiddleWhenNothingIsSelected) {
  const QPointF middle(view.viewport()->width() / 2.0, view.viewport()->height() / 2.0);
  const QPointF before = sampleAt(middle);
  QTest::keyClick(&view, Qt::Key_Plus);
  EXPECT_NEAR(sampleAt(middle).x(), before.x(), 1);
}

TEST_F(Preview, TellsThatItsGuideWasRemoved) {
  int removed = 0;
  QObject::connect(&view, &CalibrationPreviewView::guideRemoved, [&] { ++removed; });
  QTest::keyClick(&view, Qt::Key_Escape);
  EXPECT_EQ(removed, 0);
  view.setManualGuideX(20);
  QTest::keyClick(&view, Qt::Key_Escape);
  QTest::keyClick(&view, Qt::Key_Escape);
  EXPECT_EQ(removed, 1);
}

TEST_F(Preview, PansByDraggingAndThenDoesNotClick) {
  wheel({400, 300}, 5);
  int clicks = 0;
  QObject::connect(&view, &CalibrationPreviewView::coordinateClicked, [&] { ++clicks; });
  const QPointF before = sampleAt({400, 300});
  drag({400, 300}, {300, 250});
  EXPECT_EQ(clicks, 0);
  EXPECT_NEAR(sampleAt({300, 250}).x(), before.x(), 0.5);
  drag({400, 300}, {402, 301});
  EXPECT_EQ(clicks, 1);
}

TEST_F(Preview, ScrollsSidewaysAndUpByTheWheelWithShiftAndAlt) {
  wheel({400, 300}, 5);
  const QPointF before = sampleAt({0, 0});
  wheel({400, 300}, 1, Qt::ShiftModifier);
  EXPECT_LT(sampleAt({0, 0}).x(), before.x());
  EXPECT_DOUBLE_EQ(sampleAt({0, 0}).y(), before.y());
  wheel({400, 300}, 1, Qt::AltModifier);
  EXPECT_LT(sampleAt({0, 0}).y(), before.y());
}

TEST_F(Preview, KeepsItsCentreWhenItIsResized) {
  wheel({400, 300}, 5);
  const QPointF before = sampleAt(QPointF(view.viewport()->width(), view.viewport()->height()) / 2);
  view.resize(500, 500);
  QCoreApplication::processEvents();
  const QPointF after = sampleAt(QPointF(view.viewport()->width(), view.viewport()->height()) / 2);
  EXPECT_NEAR(after.x(), before.x(), 1);
  EXPECT_NEAR(after.y(), before.y(), 1);
}

TEST_F(Preview, TakesThePixelBeforeTheColumnThatItLiesOn) {
  int clicked = -1;
  QObject::connect(&view, &CalibrationPreviewView::candidateClicked, [&](int row) { clicked = row; });
  QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(201, 401));
  EXPECT_EQ(clicked, 1);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(201, 100));
  EXPECT_EQ(clicked, 0);
}

TEST_F(Preview, ClampsAClickToTheImage) {
  view.resize(1200, 600);
  QCoreApplication::processEvents();
  std::pair<qint64, qint64> clicked;
  QObject::connect(&view, &CalibrationPreviewView::coordinateClicked, [&](qint64 x, qint64 y) { clicked = {x, y}; });
  QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(1199, 599));
  EXPECT_EQ(clicked, std::pair(qint64{399}, qint64{299}));
}

TEST_F(Preview, DrawsIncludedGreenAndExcludedRed) {
  const auto has = [&](bool wantsGreen) {
    const QImage image = view.viewport()->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, y);
        if ((wantsGreen ? color.green() : color.red()) >
            std::max(color.blue(), wantsGreen ? color.red() : color.green()) + 60)
          return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(has(false));
  EXPECT_FALSE(has(true));
  store.setIncluded({0, 1}, true);
  EXPECT_TRUE(has(true));
  EXPECT_FALSE(has(false));
}

TEST_F(Preview, AGuideRunsThroughTheMiddleOfItsColumn) {
  view.setManualGuideX(300);
  const QImage image = view.viewport()->grab().toImage();
  const int x = static_cast<int>(view.navigation().transform().toDevice(QPointF(300.5, 0)).x());
  const QColor color = image.pixelColor(x, 300);
  EXPECT_GT(color.blue(), 200);
  EXPECT_LT(color.red(), 60);
}

TEST_F(Preview, SaysWhichCandidateIsSelected) {
  view.setSelection({1}, 1);
  EXPECT_EQ(view.currentDescription(), "Pixel, 100, 200");
}

TEST_F(Preview, ForgetsTheSelectionWithItsCandidates) {
  view.setSelection({1}, 1);
  store.reset(metadata, {}, {});
  EXPECT_EQ(view.currentDescription(), "");
  view.viewport()->grab();
}

TEST_F(AppTest, ADropTargetTakesWhatItAcceptsAndRefusesTheRest) {
  const TemporaryFolder folder;
  std::ofstream(folder / "photo.DNG") << "x";
  QWidget target;
  std::filesystem::path dropped;
  const DropTarget drop(target, isDNGFile, [&](const std::filesystem::path& path) { dropped = path; });
  const auto offer = [&](const std::vector<std::filesystem::path>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const auto& path : paths)
      urls << fileUrl(path);
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(offer({folder.path()}));
  EXPECT_FALSE(offer({folder / "photo.DNG", folder / "photo.DNG"}));
  EXPECT_FALSE(offer({folder / "missing.dng"}));
  EXPECT_TRUE(dropped.empty());
  EXPECT_TRUE(offer({folder / "photo.DNG"}));
  EXPECT_EQ(dropped, folder / "photo.DNG");
}

}  // namespace
}  // namespace tessaly::tests
