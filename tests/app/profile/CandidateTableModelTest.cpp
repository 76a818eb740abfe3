#include "app/profile/CandidateTable.h"
#include "app/profile/CandidateTableModel.h"
#include "app/support/AppTest.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>

namespace tessaly::tests {
namespace {

using Kind = CalibrationCandidate::Kind;

CalibrationCandidate candidate(Kind kind, std::int64_t x, std::int64_t y, double confidence) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = kind;
  result.x = x;
  result.yStart = y;
  result.yEnd = kind == Kind::line ? 101 : y;
  result.radiusX = result.radiusY = kind == Kind::spot ? 6 : 0;
  result.confidence = confidence;
  result.reason = "Manually added by user";
  return result;
}

class Table : public AppTest {
 protected:
  Table() {
    metadata.rawWidth = 210;
    metadata.rawHeight = 102;
    metadata.activeX = 10;
    metadata.activeY = 2;
    metadata.activeWidth = 200;
    metadata.activeHeight = 100;
    reset();
    table.resize(600, 400);
    table.show();
  }

  void reset() {
    std::vector<CalibrationCandidate> candidates{
        candidate(Kind::line, 50, 2, 0.91), candidate(Kind::line, 60, 42, 0.99), candidate(Kind::spot, 90, 32, 0.85),
        candidate(Kind::pixel, 30, 12, 0.98)};
    const std::set<UUID> accepted{candidates[1].id, candidates[3].id};
    store.reset(metadata, std::move(candidates), accepted);
  }

  [[nodiscard]] QStringList column(int column) const {
    QStringList result;
    for (int row = 0; row < order.rowCount(); ++row)
      result << order.index(row, column).data().toString();
    return result;
  }

  void clickHeader(int section) {
    QHeaderView& header = *table.horizontalHeader();
    const QPoint place(header.sectionViewportPosition(section) + 20, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  }

  DNGMetadata metadata;
  CandidateStore store;
  CandidateTableModel model{store};
  CandidateOrder order{model};
  CandidateTable table{store, order};
};

TEST_F(Table, IsAWellBehavedModel) {
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  const QAbstractItemModelTester filtered(&order, QAbstractItemModelTester::FailureReportingMode::Fatal);
  store.append(candidate(Kind::pixel, 40, 20, 1));
  store.setIncluded({0, 1}, true);
  order.setKind(CandidateTexts::Kind::pixel);
  store.append(candidate(Kind::spot, 40, 20, 1));
  model.refreshLanguage();
  order.setKind(std::nullopt);
  reset();
  EXPECT_EQ(model.rowCount(), 4);
}

TEST_F(Table, ShowsActiveCoordinates) {
  EXPECT_EQ(column(CandidateTableModel::kind), QStringList({"Column", "Partial Column", "Fixed Spot", "Pixel"}));
  EXPECT_EQ(column(CandidateTableModel::position), QStringList({"x 40", "x 50, y 40–99", "80, 30  r 6", "20, 10"}));
  EXPECT_EQ(column(CandidateTableModel::confidence), QStringList({"91 %", "99 %", "85 %", "98 %"}));
}

TEST_F(Table, SortsByConfidenceDownwardsFirstAndReturnsToTheOrderOfTheResult) {
  clickHeader(CandidateTableModel::confidence);
  EXPECT_EQ(column(CandidateTableModel::confidence), QStringList({"99 %", "98 %", "91 %", "85 %"}));
  clickHeader(CandidateTableModel::confidence);
  EXPECT_EQ(column(CandidateTableModel::confidence), QStringList({"85 %", "91 %", "98 %", "99 %"}));
  clickHeader(CandidateTableModel::confidence);
  EXPECT_EQ(column(CandidateTableModel::kind), QStringList({"Column", "Partial Column", "Fixed Spot", "Pixel"}));
}

TEST_F(Table, FiltersByKind) {
  order.setKind(CandidateTexts::Kind::partialColumn);
  EXPECT_EQ(column(CandidateTableModel::position), QStringList({"x 50, y 40–99"}));
  EXPECT_EQ(store.count(), 4);
}

TEST_F(Table, TogglesByItsCheckBoxAndKeepsARowWhereItWas) {
  clickHeader(CandidateTableModel::include);
  const QStringList before = column(CandidateTableModel::position);
  const QRect box = table.visualRect(order.index(0, CandidateTableModel::include));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(box.left() + 16, box.center().y()));
  EXPECT_EQ(store.includedCount(), 1);
  EXPECT_EQ(column(CandidateTableModel::position), before);
}

TEST_F(Table, TogglesAllSelectedRowsByOneCheckBox) {
  table.selectAll();
  const QRect box = table.visualRect(order.index(0, CandidateTableModel::include));
  const QPoint place(box.left() + 16, box.center().y());
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  EXPECT_EQ(store.includedCount(), 4);
  EXPECT_EQ(table.selectedCandidates().size(), 4U);
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  EXPECT_EQ(store.includedCount(), 0);
}

TEST_F(Table, HasRowsThatAreHighEnoughToBeClicked) {
  EXPECT_GE(table.rowHeight(0), 28);
}

TEST_F(Table, MarksALineInsideAFullColumn) {
  std::vector<CalibrationCandidate> candidates{candidate(Kind::line, 50, 2, 0.9), candidate(Kind::line, 50, 42, 0.9)};
  store.reset(metadata, std::move(candidates), {});
  EXPECT_EQ(column(CandidateTableModel::reason),
            QStringList({"Manually added by user", "inside the full column at x 40 · Manually added by user"}));
  store.append(candidate(Kind::line, 50, 50, 1));
  EXPECT_EQ(column(CandidateTableModel::reason).last(), "inside the full column at x 40 · Manually added by user");
}

}  // namespace
}  // namespace tessaly::tests
