// A row of widgets that goes on in a second line where the first is too short for them.
#pragma once

#include "app/widgets/Metrics.h"

#include <QLayout>
#include <QList>
#include <memory>
#include <vector>

namespace tessaly {

class WrapLayout : public QLayout {
  Q_OBJECT

 public:
  explicit WrapLayout(QWidget* parent = nullptr);
  ~WrapLayout() override;

  /// Gives the last item all that is left of its line.
  void setLastStretches() { lastStretches_ = true; }

  void addItem(QLayoutItem* item) override;
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;

 private:
  struct Line;
  [[nodiscard]] std::vector<Line> lines(int width) const;

  QList<QLayoutItem*> items_;
  bool lastStretches_ = false;
};

}  // namespace tessaly
