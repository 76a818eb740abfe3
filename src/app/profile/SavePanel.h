// The bottom of the profile creation tab: the profile's name and the button that saves it.
#pragma once

#include "app/widgets/Controls.h"

#include <QWidget>

namespace tessaly {

class SavePanel : public QWidget {
  Q_OBJECT

 public:
  explicit SavePanel(QWidget* parent = nullptr);

  QLineEdit* profileName;
  LocalizedLabel* cameraLabel;  ///< whose profile it will be; there only while that is known
  QPushButton* saveButton;
};

}  // namespace tessaly
