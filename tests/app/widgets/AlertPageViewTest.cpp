#include "app/support/AppTest.h"
#include "app/support/FontSize.h"
#include "app/widgets/AlertSheet.h"

#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace tessaly::tests {
namespace {

class AlertPages : public AppTest {
 protected:
  AlertPages() { window.show(); }

  void show(const AlertPage& page) {
    Alert alert;
    alert.page = [page] { return page; };
    AlertSheet::show(window, std::move(alert), {});
    sheet = window.findChild<AlertSheet*>();
    QCoreApplication::processEvents();
  }

  [[nodiscard]] LocalizedLabel& label(const std::string& text) const {
    for (LocalizedLabel* label : sheet->findChildren<LocalizedLabel*>())
      if (label->stringValue() == text) return *label;
    throw std::invalid_argument(text);
  }

  [[nodiscard]] QScrollArea& area() const { return *sheet->findChild<QScrollArea*>(); }

  static std::string lines(int count) {
    std::string text;
    for (int line = 0; line < count; ++line)
      text += "IMG_0001.DNG: Some reason why this file could not be repaired.\n";
    return text;
  }

  QWidget window;
  AlertSheet* sheet = nullptr;
};

TEST_F(AlertPages, SetTheCountsInBold) {
  show({"Processing complete", "2 succeeded, 1 failed, 0 skipped", "a.dng: broken", "For help", "Log: none"});
  EXPECT_TRUE(label("2 succeeded, 1 failed, 0 skipped").font().bold());
  EXPECT_FALSE(label("Processing complete").font().bold());
}

TEST_F(AlertPages, KeepTheLastLineInViewHoweverLongTheDetailsAre) {
  show({"Processing complete", "0 succeeded, 200 failed, 0 skipped", lines(200), "For help", "Log: /out/log.csv"});
  EXPECT_GT(area().verticalScrollBar()->maximum(), 0);
  for (const char* text : {"Processing complete", "For help", "Log: /out/log.csv"}) {
    const LocalizedLabel& part = label(text);
    EXPECT_FALSE(area().isAncestorOf(&part)) << text;
    EXPECT_TRUE(sheet->rect().contains(QRect(part.mapTo(sheet, QPoint()), part.size()))) << text;
  }
  EXPECT_LE(sheet->height(), sheet->screen()->availableGeometry().height() * 8 / 10);
}

TEST_F(AlertPages, HaveNothingEmptyBelow) {
  for (const int count : {0, 1, 4}) {
    show({"Processing complete", "1 succeeded, 0 failed, 0 skipped", lines(count), "", "Log: /out/log.csv"});
    EXPECT_EQ(area().verticalScrollBar()->maximum(), 0);
    const LocalizedLabel& last = label("Log: /out/log.csv");
    const auto* button = sheet->findChild<QPushButton*>();
    const int gap = button->mapTo(sheet, QPoint()).y() - last.mapTo(sheet, QPoint(0, last.height())).y();
    EXPECT_LE(gap, 24) << count;
    sheet->findChild<QPushButton*>()->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(AlertPages, LeaveOutWhatIsEmpty) {
  show({"Processing complete", "1 succeeded, 0 failed, 0 skipped", "", "", "Log: none"});
  EXPECT_FALSE(area().isVisible());
}

}  // namespace
}  // namespace tessaly::tests
