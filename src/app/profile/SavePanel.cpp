#include "app/profile/SavePanel.h"

#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"

#include <QBoxLayout>

namespace tessaly {

SavePanel::SavePanel(QWidget* parent)
    : QWidget(parent),
      profileName(new QLineEdit),
      cameraLabel(Controls::pathLabel()),
      saveButton(Controls::button("Save Camera Profile")) {
  profileName->setAccessibleName(localized("Profile Name"));
  profileName->setAcceptDrops(false);
  cameraLabel->hide();
  auto* title = Controls::caption("Profile Name", *profileName);
  makeHeading(*title);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(Metrics::grid);
  line->addWidget(title);
  line->addWidget(profileName, 2);
  line->addWidget(cameraLabel, 1);
  line->addSpacing(Metrics::grid);
  line->addWidget(saveButton);
  connect(profileName, &QLineEdit::returnPressed, saveButton, &QPushButton::click);
}

}  // namespace tessaly
