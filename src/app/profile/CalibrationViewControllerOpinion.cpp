// The second opinion in the profile creation tab: its rows, what is said of them, and the sensor report.
#include "app/profile/CalibrationSourcePanel.h"
#include "app/profile/CalibrationViewController.h"
#include "app/profile/CandidatePanel.h"
#include "app/profile/SavePanel.h"
#include "localization/Localization.h"
#include "platform/AtomicFile.h"
#include "platform/Text.h"
#include "presentation/SecondOpinionTexts.h"
#include "presentation/SensorReport.h"

namespace tessaly {
namespace {

const FilePanel reportPanel{
    .title = "Save the Sensor Report",
    .purpose = "report",
    .filterName = "Web pages",
    .globs = {"*.html"},
    .proposedName = "Sensor Report.html",
};

}  // namespace

// What is hidden is excluded too, so that nothing is saved that is not on view.
void CalibrationViewController::showOpinion() {
  const bool isShown = result_ && result_->secondOpinion && source_->secondOpinionBox->isChecked();
  source_->opinionLabel->setVisible(isShown);
  source_->reportButton->setEnabled(result_ && result_->secondOpinion);
  if (isShown) {
    candidatePanel_->model().setFNumber(SecondOpinionTexts::fNumberOf(*result_->secondOpinion));
    source_->opinionLabel->setComposed([this] { return result_ ? SecondOpinionTexts::summary(*result_) : ""; });
  }
  store_.showOpinion(isShown);
  const bool isMissing = result_ && !result_->secondOpinion && source_->secondOpinionBox->isChecked();
  Controls::setMainAction(*analyzeButton, !result_ || isMissing);
  Controls::setMainAction(*save_->saveButton, result_ && !isMissing);
}

void CalibrationViewController::inclusionRefused(int row) {
  const SecondOpinionFinding finding = *store_.proposal(row);
  const std::optional<double> fNumber = SecondOpinionTexts::fNumberOf(*result_->secondOpinion);
  setStatus([finding, fNumber] { return SecondOpinionTexts::advice(finding, fNumber); });
}

void CalibrationViewController::saveReport() {
  if (!result_ || !result_->secondOpinion) return;
  panels_.chooseNewFile(*this, reportPanel, [this](const std::filesystem::path& file) { writeReport(file); });
}

void CalibrationViewController::writeReport(const std::filesystem::path& file) {
  if (!result_ || !result_->secondOpinion) return;
  try {
    replaceFileAtomically(file, SensorReport::page(*result_));
    setStatus([name = displayName(file)] { return LF("Sensor report saved: %@", {name}); });
    panels_.openFolder(file);
  } catch (const std::exception&) {
    panels_.showAlert(*this, failureAlert(std::current_exception(), displayName(file)));
  }
}

}  // namespace tessaly
