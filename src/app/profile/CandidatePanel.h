// The left half of the profile creation tab: the table of candidates, its filter, and what includes many of them at
// once.
#pragma once

#include "app/profile/CandidateTable.h"
#include "app/widgets/Controls.h"

#include <QWidget>

namespace tessaly {

class CandidatePanel : public QWidget, public FollowsLanguage {
  Q_OBJECT

 public:
  explicit CandidatePanel(CandidateStore& store, QWidget* parent = nullptr);

  CandidateTable* table;
  QComboBox* kindFilter;
  QLineEdit* confidenceThreshold;
  QPushButton* matchingButton;
  QPushButton* selectAllButton;
  QPushButton* deselectAllButton;
  QPushButton* excludeUnconfirmedButton;  ///< there while the second opinion is shown

  [[nodiscard]] const CandidateOrder& order() const { return *order_; }
  [[nodiscard]] CandidateTableModel& model() { return *model_; }

  /// Selects a candidate, if need be by showing all kinds again.
  void select(int row);

  void refreshLanguage() override;

  /// Keeps the widths of the table's columns between launches.
  void saveState() const;

 signals:
  /// "Select Matching Pixels", by its button or by Return in the field.
  void matchingRequested();
  void unconfirmedExcluded(int count);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void layOut();
  void connectControls();
  void includeAll(bool included);
  void excludeUnconfirmed();
  void showCount();
  void restoreColumns();

  CandidateStore& store_;
  CandidateTableModel* model_;
  CandidateOrder* order_;
  LocalizedLabel* heading_;
  LocalizedLabel* count_;
};

}  // namespace tessaly
