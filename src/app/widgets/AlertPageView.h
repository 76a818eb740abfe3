// The parts of an alert below one another. Only the details scroll; everything else is always in view.
#pragma once

#include "app/widgets/LocalizedLabel.h"
#include "presentation/AlertPage.h"

#include <QScrollArea>
#include <QWidget>
#include <functional>

namespace tessaly {

class AlertPageView : public QWidget {
  Q_OBJECT

 public:
  explicit AlertPageView(std::function<AlertPage()> page);

  /// As wide as this and as high as its texts need to be, but no higher than `highest`.
  void fit(int width, int highest);

  void announce() { first_->announce(); }

 private:
  [[nodiscard]] LocalizedLabel* addLabel(std::string AlertPage::*part);
  void addDetails();
  [[nodiscard]] int heightOfOthers() const;

  std::function<AlertPage()> page_;
  LocalizedLabel* first_;
  LocalizedLabel* emphasis_;
  LocalizedLabel* details_;
  LocalizedLabel* note_;
  LocalizedLabel* last_;
  QScrollArea* area_;
};

}  // namespace tessaly
