// The table of candidates: check boxes, sorting by header, and the keys of the tab.
//
// Rows in its signals are positions in the candidate store, whatever the table's order and filter are.
#pragma once

#include "app/profile/CandidateTableModel.h"

#include <QStyledItemDelegate>
#include <QTableView>
#include <set>
#include <vector>

namespace tessaly {

class CandidateTable : public QTableView {
  Q_OBJECT

 public:
  CandidateTable(CandidateStore& store, CandidateOrder& order, QWidget* parent = nullptr);

  [[nodiscard]] std::set<int> selectedCandidates() const;
  [[nodiscard]] std::optional<int> currentCandidate() const;

  /// Selects one candidate and scrolls to it; one that the filter hides is not selected.
  void selectCandidate(int row);

  /// Goes `rows` further in the table's order.
  void step(int rows);

  /// Includes the selected candidates, or excludes them when the current one is included.
  void toggleSelected();

 signals:
  void candidateSelectionChanged();
  void centreRequested(int row);
  void removeRequested();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] int candidateAt(const QModelIndex& index) const;
  [[nodiscard]] bool isCheckBox(const QModelIndex& index, QPoint position) const;
  void toggleFrom(const QModelIndex& index);
  void setRowHeight();
  void setUpHeader();
  void fitReason();

  CandidateStore& store_;
  CandidateOrder& order_;
};

/// Draws the check box with the dot that repeats the preview's marker.
class InclusionDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  [[nodiscard]] static QRect checkBox(const QStyleOptionViewItem& option);
};

}  // namespace tessaly
