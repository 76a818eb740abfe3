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
  QPushButton* saveButton;
};

}  // namespace tessaly
