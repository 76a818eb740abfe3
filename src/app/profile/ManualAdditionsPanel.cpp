#include "app/profile/ManualAdditionsPanel.h"

#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WrapLayout.h"

#include <QBoxLayout>

namespace tessaly {
namespace {

constexpr int coordinateDigits = 6;
constexpr int radiusDigits = 3;

/// A caption and its field, kept together where the row wraps.
QWidget* captioned(const char* title, QLineEdit& field) {
  auto* pair = new QWidget;
  auto* line = new QHBoxLayout(pair);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(Metrics::grid / 2);
  line->addWidget(Controls::caption(title, field));
  line->addWidget(&field);
  return pair;
}

QString number(std::int64_t value) {
  return QString::number(static_cast<qlonglong>(value));
}

}  // namespace

ManualAdditionsPanel::ManualAdditionsPanel(QWidget* parent)
    : QWidget(parent),
      manualX(Controls::field("Column X", coordinateDigits)),
      manualY(Controls::field("Row Y", coordinateDigits)),
      spotRadius(Controls::field("Radius", radiusDigits,
                                 "Pixel radius, not a percentage. Larger areas reconstruct more samples.")),
      addPixelButton(Controls::button("Add Pixel")),
      addColumnButton(Controls::button("Add Full Column")),
      addSpotButton(Controls::button("Add Fixed Spot")) {
  auto* heading = new LocalizedLabel("Manual Additions");
  makeHeading(*heading);
  auto* note = new LocalizedLabel("Coordinates start at zero in the active image. Click a marker to fill them.");
  makeNote(*note);
  auto* row = new WrapLayout;
  row->addWidget(captioned("Column X", *manualX));
  row->addWidget(captioned("Row Y", *manualY));
  row->addWidget(captioned("Radius", *spotRadius));
  for (QPushButton* button : {addPixelButton, addColumnButton, addSpotButton})
    row->addWidget(button);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Metrics::grid);
  column->addWidget(heading);
  column->addLayout(row);
  column->addWidget(note);
}

// Rows that wrap need more height where there is less width; what lies around must not cover them.
void ManualAdditionsPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  setMinimumHeight(layout()->minimumHeightForWidth(width()));
}

void ManualAdditionsPanel::fill(const CandidateSelection::ManualFields& fields) {
  setX(fields.x);
  manualY->setText(fields.y ? number(*fields.y) : QString());
  if (fields.radius) spotRadius->setText(number(*fields.radius));
}

void ManualAdditionsPanel::setX(std::int64_t x) {
  manualX->setText(number(x));
}

void ManualAdditionsPanel::clear() {
  for (QLineEdit* field : {manualX, manualY, spotRadius})
    field->clear();
}

std::string ManualAdditionsPanel::x() const {
  return fromQt(manualX->text());
}
std::string ManualAdditionsPanel::y() const {
  return fromQt(manualY->text());
}
std::string ManualAdditionsPanel::radius() const {
  return fromQt(spotRadius->text());
}

}  // namespace tessaly
