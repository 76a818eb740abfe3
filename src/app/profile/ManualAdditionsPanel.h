// The fields and buttons that add a defect by hand.
#pragma once

#include "app/widgets/Controls.h"
#include "calibration/review/ManualAdditions.h"

#include <QWidget>

namespace tessaly {

class ManualAdditionsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ManualAdditionsPanel(QWidget* parent = nullptr);

  QLineEdit* manualX;
  QLineEdit* manualY;
  QLineEdit* spotRadius;
  QPushButton* addPixelButton;
  QPushButton* addColumnButton;
  QPushButton* addSpotButton;

  /// Fills in a place; a row that it does not have is emptied, a radius that it does not have stays.
  void fill(const CandidateSelection::ManualFields& fields);
  void setX(std::int64_t x);
  void clear();

  [[nodiscard]] std::string x() const;
  [[nodiscard]] std::string y() const;
  [[nodiscard]] std::string radius() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;
};

}  // namespace tessaly
