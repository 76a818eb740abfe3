// The right half of the profile creation tab: the preview, its zoom, and which picture it shows.
#pragma once

#include "app/preview/CalibrationPreviewView.h"
#include "app/widgets/Controls.h"

#include <QSlider>
#include <QWidget>

namespace tessaly {

class PreviewPanel : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewPanel(const CandidateStore& store, QWidget* parent = nullptr);

  QPushButton* inspectButton;
  QPushButton* brightFieldButton;  ///< there only while a photograph is shown
  CalibrationPreviewView* previewView;
  QSlider* zoomSlider;
  QPushButton* fitButton;

  /// Adds what stands below the zoom.
  void addBelow(QWidget& widget);

 private:
  void layOut();
  void showZoom();

  QLabel* percent_;
};

}  // namespace tessaly
