// Scrolls its content vertically where there is no room for it, and is no higher than it where there is.
#pragma once

#include <QScrollArea>

namespace tessaly {

class FittingScrollArea : public QScrollArea {
  Q_OBJECT

 public:
  explicit FittingScrollArea(QWidget& content);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
};

}  // namespace tessaly
