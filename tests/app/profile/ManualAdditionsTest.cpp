// What is added by hand in the profile creation tab, and what is taken away again.
#include "app/support/CalibrationTab.h"
#include "calibration/review/Preselection.h"

#include <gmock/gmock.h>

namespace tessaly::tests {
namespace {

using Kind = CalibrationCandidate::Kind;

TEST_F(CalibrationTab, RefusesAdditionsWithoutAResult) {
  for (const char* title : {"Add Pixel", "Add Full Column", "Add Fixed Spot", "Save Camera Profile"}) {
    button(title).click();
    EXPECT_EQ(panels.lastAlert(), "Run defect detection first.") << title;
  }
  EXPECT_EQ(panels.alerts.size(), 4U);
}

TEST_F(CalibrationTab, AddsAPixelInTheLastCornerAndNoneBeyond) {
  analyze();
  const std::size_t before = tab.candidates().size();
  type(*tab.manualX, "399");
  type(*tab.manualY, "219");
  button("Add Pixel").click();
  ASSERT_EQ(tab.candidates().size(), before + 1);
  const CalibrationCandidate& added = tab.candidates().back();
  EXPECT_EQ(added.x, 399 + 4);
  EXPECT_EQ(added.yStart, 219 + 2);
  EXPECT_EQ(added.reason, "Manually added by user");
  EXPECT_TRUE(isAccepted(static_cast<int>(before)));
  for (const auto& [x, y] : {std::pair{"400", "0"}, {"0", "220"}, {"-1", "0"}, {"1.0", "0"}, {"", ""}, {" 1", "1"}}) {
    type(*tab.manualX, x);
    type(*tab.manualY, y);
    button("Add Pixel").click();
    EXPECT_EQ(panels.lastAlert(), "Enter valid active-area X and Y coordinates.");
  }
  EXPECT_EQ(panels.alerts.size(), 6U);
  EXPECT_EQ(tab.candidates().size(), before + 1);
}

TEST_F(CalibrationTab, AddsAFullColumn) {
  analyze();
  type(*tab.manualX, "+7");
  button("Add Full Column").click();
  const CalibrationCandidate& added = tab.candidates().back();
  EXPECT_EQ(added.x, 7 + 4);
  EXPECT_EQ(added.yStart, 2);
  EXPECT_EQ(added.yEnd, 2 + height - 1);
  type(*tab.manualX, "400");
  button("Add Full Column").click();
  EXPECT_EQ(panels.lastAlert(), "Enter a valid active-area X coordinate.");
}

TEST_F(CalibrationTab, AddsASpotThatTouchesTheEdgeAndNoneBeyond) {
  analyze();
  const auto add = [&](const char* x, const char* y, const char* radius) {
    panels.alerts.clear();
    type(*tab.manualX, x);
    type(*tab.manualY, y);
    type(*tab.spotRadius, radius);
    button("Add Fixed Spot").click();
    return panels.lastAlert();
  };
  const char* const refusal = "Enter valid active-area X and Y coordinates and a radius from 2 to 64.";
  EXPECT_EQ(add("64", "80", "64"), "");
  EXPECT_EQ(tab.candidates().back().reason, "User-confirmed fixed sensor spot");
  EXPECT_EQ(add("63", "80", "64"), refusal);
  EXPECT_EQ(add("100", "80", "65"), refusal);
  EXPECT_EQ(add("100", "80", "1"), refusal);
  EXPECT_EQ(add("100", "80", "2"), "");
  EXPECT_EQ(add("397", "80", "2"), "");
  EXPECT_EQ(add("398", "80", "2"), refusal);
  EXPECT_EQ(add("100", "217", "2"), "");
  EXPECT_EQ(add("100", "218", "2"), refusal);
}

TEST_F(CalibrationTab, SaysWhatWasAdded) {
  analyze();
  type(*tab.manualX, "17");
  type(*tab.manualY, "93");
  type(*tab.spotRadius, "6");
  button("Add Pixel").click();
  EXPECT_EQ(status(), "Added: Pixel (17, 93)");
  button("Add Full Column").click();
  EXPECT_EQ(status(), "Added: Column (x 17)");
  button("Add Fixed Spot").click();
  EXPECT_EQ(status(), "Added: Fixed Spot (17, 93  r 6)");
}

TEST_F(CalibrationTab, IncludesTheRowThatHasThePlaceInsteadOfAddingItTwice) {
  analyze();
  const std::size_t before = tab.candidates().size();
  button("Deselect All").click();
  click(on(columnX, 100));
  button("Add Full Column").click();
  EXPECT_EQ(tab.candidates().size(), before);
  EXPECT_TRUE(isAccepted(rowOf(Kind::line)));
  EXPECT_EQ(tab.table->currentCandidate(), rowOf(Kind::line));
  EXPECT_EQ(status(), "In the list already, now included: Column (x 180)");
  type(*tab.manualX, "17");
  type(*tab.manualY, "93");
  type(*tab.spotRadius, "6");
  for (const char* title : {"Add Pixel", "Add Full Column", "Add Fixed Spot"}) {
    button(title).click();
    button(title).click();
  }
  EXPECT_EQ(tab.candidates().size(), before + 3);
  type(*tab.spotRadius, "7");
  button("Add Fixed Spot").click();
  EXPECT_EQ(tab.candidates().size(), before + 4);
}

TEST_F(CalibrationTab, ShowsTheRowOfAnAdditionThatTheFilterHid) {
  analyze();
  auto* filter = tab.findChild<QComboBox*>();
  filter->setCurrentText("Fixed Spot");
  type(*tab.manualX, "17");
  button("Add Full Column").click();
  EXPECT_EQ(filter->currentText(), "All Kinds");
  EXPECT_EQ(tab.table->currentCandidate(), static_cast<int>(tab.candidates().size()) - 1);
}

class Additions : public CalibrationTab {
 protected:
  Additions() {
    analyze();
    detected = tab.candidates();
    for (const char* x : {"17", "19", "21"}) {
      type(*tab.manualX, x);
      button("Add Full Column").click();
    }
  }

  [[nodiscard]] std::vector<std::int64_t> columnsAdded() const {
    std::vector<std::int64_t> columns;
    for (std::size_t row = detected.size(); row < tab.candidates().size(); ++row)
      columns.push_back(tab.candidates()[row].x - 4);
    return columns;
  }

  std::vector<CalibrationCandidate> detected;
};

TEST_F(Additions, CanBeRemovedByDeleteInTableAndPreview) {
  const auto count = static_cast<int>(detected.size());
  tab.table->selectCandidate(count + 1);
  QTest::keyClick(tab.table, Qt::Key_Delete);
  EXPECT_EQ(columnsAdded(), (std::vector<std::int64_t>{17, 21}));
  EXPECT_EQ(status(), "Removed: Column (x 19)");
  tab.table->selectCandidate(count + 1);
  QTest::keyClick(tab.previewView, Qt::Key_Delete);
  EXPECT_EQ(columnsAdded(), std::vector<std::int64_t>{17});
  EXPECT_EQ(tab.table->model()->rowCount(), count + 1);
  EXPECT_EQ(tab.accepted().size(), CandidateSelection::preselected(detected, 0.98).size() + 1);
  tab.previewView->grab();
}

TEST_F(Additions, GoAloneWhenEverythingIsSelected) {
  tab.table->sortByColumn(2, Qt::DescendingOrder);
  tab.table->selectAll();
  QTest::keyClick(tab.table, Qt::Key_Delete);
  EXPECT_EQ(tab.candidates(), detected);
  EXPECT_EQ(status(), "Manual additions removed: 3");
  tab.table->selectAll();
  QTest::keyClick(tab.table, Qt::Key_Delete);
  EXPECT_EQ(tab.candidates(), detected);
  EXPECT_EQ(status(), "Only what was added by hand can be removed. Exclude a detected candidate by its check box.");
  QTest::keyClick(tab.table, Qt::Key_Space);
  tab.previewView->grab();
  tab.table->grab();
}

TEST_F(Additions, CanAllBeRemovedOneAfterAnother) {
  for (int press = 0; press < 5; ++press) {
    tab.table->selectCandidate(static_cast<int>(tab.candidates().size()) - 1);
    QTest::keyClick(tab.table, Qt::Key_Delete);
    tab.previewView->grab();
  }
  EXPECT_EQ(tab.candidates(), detected);
}

}  // namespace
}  // namespace tessaly::tests
