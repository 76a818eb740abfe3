// The second opinion in the profile creation tab: it proposes, and never decides.
#include "app/profile/CalibrationSourcePanel.h"
#include "app/profile/CandidatePanel.h"
#include "app/support/CalibrationTab.h"
#include "app/widgets/WindowState.h"
#include "support/FileBytes.h"
#include "tools/BodySession.h"

#include <gmock/gmock.h>

#include <QCheckBox>

namespace tessaly::tests {
namespace {

using Finder = SecondOpinionFinding::Finder;
using testing::HasSubstr;
using testing::StartsWith;

/// Frames of a body with dust, a partial column without a hot pixel at its end, and an obvious column.
const std::filesystem::path& bodyFrames() {
  static const TemporaryFolder folder;
  static const bool isWritten = [] {
    tools::BodyDescription description;
    description.activeWidth = 360;
    description.activeHeight = 300;
    tools::BodyDefects defects;
    defects.dust.push_back({120, 100, 5, 1});
    defects.lines.push_back({250, 140, 299, 1, 6, 0, true, 6});
    defects.lines.push_back({60, 0, 299, 1, 60, 0, false, 60});
    writeSession(tools::SensorBody(description, defects), tools::sessionSeries(tools::SessionKind::usual),
                 folder.path());
    return true;
  }();
  static_cast<void>(isWritten);
  return folder.path();
}

class SecondOpinionTab : public AppTest {
 protected:
  SecondOpinionTab() {
    WindowState::setValue("secondOpinion", false);
    tab.emplace(panels);
    tab->resize(1280, 800);
    tab->show();
  }

  void analyze(bool withOpinion) {
    if (box().isChecked() != withOpinion) box().click();
    tab->setFolder(bodyFrames());
    tab->analyzeButton->click();
    EXPECT_FALSE(box().isEnabled()) << "while the analysis runs";
    ASSERT_TRUE(waitUntil([&] { return !tab->isBusy(); }));
    ASSERT_EQ(panels.lastAlert(), "");
  }

  [[nodiscard]] QCheckBox& box() const { return *tab->findChild<QCheckBox*>(); }
  [[nodiscard]] CalibrationSourcePanel& source() const { return *tab->findChild<CalibrationSourcePanel*>(); }

  [[nodiscard]] QPushButton& button(const char* title) const {
    for (QPushButton* button : tab->findChildren<QPushButton*>())
      if (button->text() == QString::fromUtf8(title)) return *button;
    throw std::invalid_argument(title);
  }

  [[nodiscard]] std::size_t documented() const { return tab->result()->candidates.size(); }

  /// The row of the first finding of a finder.
  [[nodiscard]] int rowOf(Finder finder) const {
    for (const SecondOpinionFinding& finding : tab->result()->secondOpinion->findings) {
      if (finding.finder != finder) continue;
      for (std::size_t row = documented(); row < tab->candidates().size(); ++row)
        if (tab->candidates()[row].id == finding.candidate.id) return static_cast<int>(row);
    }
    throw std::invalid_argument("no such finding");
  }

  [[nodiscard]] bool isAccepted(int row) const {
    return tab->accepted().contains(tab->candidates()[static_cast<std::size_t>(row)].id);
  }

  [[nodiscard]] std::size_t acceptedProposals() const {
    std::size_t count = 0;
    for (std::size_t row = documented(); row < tab->candidates().size(); ++row)
      count += isAccepted(static_cast<int>(row)) ? 1 : 0;
    return count;
  }

  [[nodiscard]] QString cell(int row, int column) const {
    for (int shown = 0; shown < tab->table->model()->rowCount(); ++shown) {
      const QModelIndex index = tab->table->model()->index(shown, column);
      if (static_cast<QSortFilterProxyModel*>(tab->table->model())->mapToSource(index).row() == row)
        return index.data().toString();
    }
    return {};
  }

  std::optional<CalibrationViewController> tab;
};

TEST_F(SecondOpinionTab, IsOffAtFirstAndRemembered) {
  EXPECT_FALSE(box().isChecked());
  EXPECT_EQ(box().text(), "Also look for: soft shadows, weak columns, unsteady pixels");
  box().click();
  tab.emplace(panels);
  EXPECT_TRUE(box().isChecked());
  box().click();
  tab.emplace(panels);
  EXPECT_FALSE(box().isChecked());
}

TEST_F(SecondOpinionTab, AddsNothingUnlessItIsAskedFor) {
  analyze(false);
  EXPECT_FALSE(tab->result()->secondOpinion.has_value());
  EXPECT_EQ(tab->candidates().size(), documented());
  EXPECT_FALSE(source().opinionLabel->isVisible());
  EXPECT_FALSE(source().reportButton->isEnabled());
  EXPECT_FALSE(button("Exclude what is not confirmed").isVisible());
}

TEST_F(SecondOpinionTab, ShowsItsRowsExcludedWithABadge) {
  analyze(true);
  EXPECT_GT(tab->candidates().size(), documented());
  EXPECT_EQ(acceptedProposals(), 0U);
  EXPECT_EQ(box().isEnabled(), true);
  EXPECT_THAT(cell(rowOf(Finder::run), CandidateTableModel::reason).toStdString(),
              StartsWith("second opinion · Weak partial column: "));
  EXPECT_THAT(source().opinionLabel->stringValue(), StartsWith("Second opinion: "));
  EXPECT_TRUE(source().opinionLabel->isVisible());
  EXPECT_THAT(tab->statusLabel->stringValue(), HasSubstr(", " + std::to_string(documented()) + " candidates"))
      << "the documented ones";
}

TEST_F(SecondOpinionTab, StartsWithTheSameInclusionAsWithout) {
  analyze(false);
  const std::size_t alone = tab->accepted().size();
  analyze(true);
  EXPECT_EQ(tab->accepted().size(), alone);
}

TEST_F(SecondOpinionTab, IsNotTouchedByTheConfidenceOfPixels) {
  analyze(true);
  type(*tab->confidenceThreshold, "50");
  button("Select Matching Pixels").click();
  EXPECT_EQ(acceptedProposals(), 0U);
  const int run = rowOf(Finder::run);
  tab->table->selectCandidate(run);
  QTest::keyClick(tab->table, Qt::Key_Space);
  ASSERT_TRUE(isAccepted(run));
  type(*tab->confidenceThreshold, "100");
  button("Select Matching Pixels").click();
  EXPECT_TRUE(isAccepted(run)) << "what was chosen by hand stays";
}

TEST_F(SecondOpinionTab, IsPartOfAllOnlyWhileItIsShown) {
  analyze(true);
  const int dust = rowOf(Finder::shadow);
  button("Select All").click();
  EXPECT_TRUE(isAccepted(rowOf(Finder::run)));
  EXPECT_FALSE(isAccepted(dust)) << "too wide for a spot";
  box().click();
  EXPECT_EQ(tab->candidates().size(), documented());
  EXPECT_EQ(tab->accepted().size(), documented()) << "what is hidden is excluded";
  button("Select All").click();
  box().click();
  EXPECT_EQ(acceptedProposals(), 0U);
}

TEST_F(SecondOpinionTab, RefusesAWideShadowAndSaysWhyButTakesASpotByHand) {
  analyze(true);
  const int dust = rowOf(Finder::shadow);
  tab->table->selectCandidate(dust);
  QTest::keyClick(tab->table, Qt::Key_Space);
  EXPECT_FALSE(isAccepted(dust));
  EXPECT_THAT(tab->statusLabel->stringValue(), StartsWith("It can be seen from about f/"));
  EXPECT_THAT(tab->statusLabel->stringValue(), HasSubstr("Clean the sensor."));
  const CalibrationCandidate place = tab->candidates()[static_cast<std::size_t>(dust)];
  type(*tab->manualX, std::to_string(place.x - tab->result()->metadata.activeX).c_str());
  type(*tab->manualY, std::to_string(place.yStart - tab->result()->metadata.activeY).c_str());
  type(*tab->spotRadius, std::to_string(std::max(place.radiusX, place.radiusY)).c_str());
  const std::size_t before = tab->candidates().size();
  button("Add Fixed Spot").click();
  EXPECT_EQ(tab->candidates().size(), before + 1);
  EXPECT_TRUE(isAccepted(static_cast<int>(before)));
}

TEST_F(SecondOpinionTab, AsksForAnotherAnalysisWhereTheResultHasNone) {
  analyze(false);
  EXPECT_FALSE(tab->analyzeButton->isDefault());
  box().click();
  EXPECT_TRUE(tab->analyzeButton->isDefault());
  EXPECT_EQ(tab->candidates().size(), documented());
}

TEST_F(SecondOpinionTab, SavesTheSensorReport) {
  analyze(true);
  const TemporaryFolder folder;
  panels.answer = folder / "report.html";
  source().reportButton->click();
  ASSERT_TRUE(waitUntil([&] { return !panels.opened.empty(); }));
  EXPECT_EQ(panels.asked.back().proposedName, "Sensor Report.html");
  EXPECT_EQ(panels.opened.back(), folder / "report.html");
  EXPECT_THAT(readText(folder / "report.html"), HasSubstr("<h1>Sensor Report</h1>"));
  EXPECT_EQ(tab->statusLabel->stringValue(), "Sensor report saved: report.html");
}

TEST_F(SecondOpinionTab, TellsOfAReportThatCannotBeWritten) {
  analyze(true);
  panels.answer = "/no/such/folder/report.html";
  source().reportButton->click();
  ASSERT_TRUE(waitUntil([&] { return !panels.alerts.empty(); }));
  EXPECT_TRUE(panels.opened.empty());
}

TEST_F(SecondOpinionTab, ForgetsTheReportWithItsFolder) {
  analyze(true);
  tab->setFolder(bodyFrames());
  EXPECT_FALSE(source().reportButton->isEnabled());
  EXPECT_FALSE(source().opinionLabel->isVisible());
}

/// A panel over candidates of which the second opinion confirms the first, denies the second, and cannot judge the
/// third; it proposes one of its own.
class OpinionPanel : public AppTest {
 protected:
  OpinionPanel() {
    std::vector<CalibrationCandidate> documented{pixel(5), pixel(6), pixel(7)};
    std::set<UUID> accepted;
    for (const CalibrationCandidate& candidate : documented)
      accepted.insert(candidate.id);
    store.reset({}, std::move(documented), accepted);
    store.setOpinion({{SecondOpinionFinding{Finder::warm, pixel(8), 9, 20}}, {true, false, std::nullopt}});
    panel.show();
  }

  static CalibrationCandidate pixel(std::int64_t x) {
    CalibrationCandidate candidate;
    candidate.id = UUID::random();
    candidate.x = x;
    candidate.reason = "Abnormal pixel repeated in dark frames";
    return candidate;
  }

  [[nodiscard]] std::string reason(int row) { return panel.model().reasonText(row).toStdString(); }

  CandidateStore store;
  CandidatePanel panel{store};
};

TEST_F(OpinionPanel, SaysWhatIsConfirmedWhileItIsShown) {
  EXPECT_EQ(reason(1), "Abnormal pixel repeated in dark frames");
  store.showOpinion(true);
  EXPECT_THAT(reason(0), StartsWith("confirmed · "));
  EXPECT_THAT(reason(1), StartsWith("not confirmed · "));
  EXPECT_THAT(reason(2), StartsWith("Abnormal pixel"));
  EXPECT_THAT(reason(3), StartsWith("second opinion · "));
  const QModelIndex denied = panel.model().index(1, CandidateTableModel::reason);
  EXPECT_THAT(denied.data(Qt::ToolTipRole).toString().toStdString(), HasSubstr("finds no such defect here"));
  EXPECT_TRUE(panel.model().index(3, CandidateTableModel::kind).data(Qt::DecorationRole).isValid());
  EXPECT_FALSE(panel.model().index(0, CandidateTableModel::kind).data(Qt::DecorationRole).isValid());
}

TEST_F(OpinionPanel, ExcludesWhatIsNotConfirmed) {
  EXPECT_FALSE(panel.excludeUnconfirmedButton->isVisible());
  store.showOpinion(true);
  ASSERT_TRUE(panel.excludeUnconfirmedButton->isVisible());
  int excluded = 0;
  QObject::connect(&panel, &CandidatePanel::unconfirmedExcluded, [&](int count) { excluded = count; });
  panel.excludeUnconfirmedButton->click();
  EXPECT_EQ(excluded, 1);
  EXPECT_TRUE(store.isIncluded(0));
  EXPECT_FALSE(store.isIncluded(1));
  EXPECT_TRUE(store.isIncluded(2));
  EXPECT_FALSE(store.isIncluded(3));
}

TEST_F(OpinionPanel, KeepsWhatWasAddedByHandBehindItsRows) {
  CalibrationCandidate added = pixel(30);
  const UUID id = added.id;
  store.append(std::move(added));
  store.showOpinion(true);
  ASSERT_EQ(store.count(), 5);
  EXPECT_TRUE(store.isProposed(3));
  EXPECT_TRUE(store.isAddedByHand(4) && store.isIncluded(4));
  store.showOpinion(false);
  ASSERT_EQ(store.count(), 4);
  EXPECT_EQ(store.at(3).id, id);
  EXPECT_TRUE(store.isIncluded(3));
}

}  // namespace
}  // namespace tessaly::tests
