#include "app/profile/CalibrationGuide.h"

#include "app/widgets/Controls.h"
#include "app/widgets/Icons.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WindowState.h"

#include <QBoxLayout>

namespace tessaly {
namespace {

constexpr const char* stateKey = "guideOpen";

constexpr const char* steps[] = {
    "1. Use one camera body with full-size uncompressed DNG, and keep its calibration frames alone in one folder.",
    "2. Bright frames: defocus on an evenly lit white surface without clipping. Take at least three frames at each of "
    "two or more exposure settings, six or more in all.",
    "3. Dark frames: fit the lens cap and take at least three frames at each of two or more exposure settings.",
    "4. About thirty frames in all work well. Move the camera slightly between bright frames so that marks on the "
    "surface do not repeat.",
    "5. What shows most: flats at the lowest ISO and f/16 at three exposures, dark frames at two settings, six frames "
    "of "
    "each.",
};

}  // namespace

CalibrationGuide::CalibrationGuide(QWidget* parent) : QWidget(parent), disclosure_(new QToolButton) {
  disclosure_->setText(localized("Calibration Guide"));
  disclosure_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  disclosure_->setAutoRaise(true);
  disclosure_->setCheckable(true);
  disclosure_->setFocusPolicy(Qt::StrongFocus);
  connect(disclosure_, &QToolButton::clicked, this, [this](bool open) {
    WindowState::setValue(stateKey, open);
    setOpen(open);
  });
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Metrics::groupSpacing, Metrics::grid, Metrics::groupSpacing, Metrics::grid);
  column->setSpacing(Metrics::grid / 2);
  for (const char* step : steps) {
    auto* label = new LocalizedLabel(step);
    label->setWordWrap(true);
    column->addWidget(label);
  }
  hide();  // until its place in a window is known
}

void CalibrationGuide::setProfilesExist(bool exist) {
  setOpen(WindowState::value(stateKey, !exist).toBool());
}

void CalibrationGuide::setOpen(bool open) {
  disclosure_->setChecked(open);
  disclosure_->setIcon(tintedIcon(open ? "open" : "closed"));
  setVisible(open);
}

}  // namespace tessaly
