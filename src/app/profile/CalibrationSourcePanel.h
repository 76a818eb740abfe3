// The top of the profile creation tab: which folder, the analysis and what it says; and the guide, which stands below
// it.
#pragma once

#include "app/profile/CalibrationGuide.h"
#include "app/widgets/Controls.h"

#include <QCheckBox>
#include <QTimer>
#include <QWidget>

namespace tessaly {

class CalibrationSourcePanel : public QWidget {
  Q_OBJECT

 public:
  explicit CalibrationSourcePanel(QWidget* parent = nullptr);

  QPushButton* folderButton;
  LocalizedLabel* folderLabel;
  QProgressBar* progress;
  QPushButton* analyzeButton;
  LocalizedLabel* statusLabel;
  QCheckBox* secondOpinionBox;   ///< whether the next analysis looks closer, and whether what it found is shown
  LocalizedLabel* opinionLabel;  ///< what came of that; there only while it is shown
  QPushButton* reportButton;     ///< usable while there is something to report
  CalibrationGuide* guide;

  /// Locks the panel while an analysis or an inspection runs; one that takes long shows it at the pointer.
  void setBusy(bool busy);

 private:
  void layOut();

  QTimer busyDelay_;
};

}  // namespace tessaly
