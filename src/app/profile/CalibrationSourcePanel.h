// The top of the profile creation tab: which folder, the analysis and what it says; and the guide, which stands below
// it.
#pragma once

#include "app/profile/CalibrationGuide.h"
#include "app/widgets/Controls.h"

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
  CalibrationGuide* guide;

  /// Locks the panel while an analysis or an inspection runs; one that takes long shows it at the pointer.
  void setBusy(bool busy);

 private:
  void layOut();

  QTimer busyDelay_;
};

}  // namespace tessaly
