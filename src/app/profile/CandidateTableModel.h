// The candidates as table rows, in the result's order; filtering and sorting happen in CandidateOrder above it.
#pragma once

#include "app/preview/CandidateStore.h"
#include "app/widgets/FollowsLanguage.h"
#include "presentation/CandidateTexts.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QSortFilterProxyModel>
#include <array>
#include <map>
#include <optional>

namespace tessaly {

/// What a column of the table is.
struct CandidateColumn {
  const char* title;
  int width;  ///< in a window that was never changed; the last column takes what is left
  bool isNumber = false;
};

/// The one list of columns, in the order of CandidateTableModel::Column.
inline constexpr std::array candidateColumns{
    CandidateColumn{"Include", 56},          CandidateColumn{"Kind", 96},  CandidateColumn{"Position", 128},
    CandidateColumn{"Confidence", 84, true}, CandidateColumn{"Reason", 0},
};

class CandidateTableModel : public QAbstractTableModel, public FollowsLanguage {
  Q_OBJECT

 public:
  enum Column { include, kind, position, confidence, reason };

  explicit CandidateTableModel(CandidateStore& store, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  [[nodiscard]] const CandidateStore& store() const { return store_; }

  /// The reason of a candidate behind the marks that it bears: proposed, confirmed or not by the second opinion, inside
  /// a full column.
  [[nodiscard]] QString reasonText(int row) const;

  /// What the second opinion's mark means, and what to do about it; empty for a row without one.
  [[nodiscard]] QString opinionText(int row) const;

  /// The f-number of the flats, which decides how deep shadows of dust are.
  void setFNumber(std::optional<double> fNumber) { fNumber_ = fNumber; }

  void refreshLanguage() override;

 private:
  [[nodiscard]] QVariant text(const QModelIndex& index) const;
  [[nodiscard]] QVariant toolTip(const QModelIndex& index) const;
  void findDuplicates();

  CandidateStore& store_;
  std::optional<double> fNumber_;
  std::map<UUID, std::int64_t> insideColumns_;  ///< lines that say a column again, and which one
  mutable QHash<QString, QString> reasons_;     ///< translated; thousands of candidates share a few
};

/// Sorts and filters what the table shows; the candidates keep their order.
class CandidateOrder : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  explicit CandidateOrder(CandidateTableModel& model, QObject* parent = nullptr);

  /// Shows one kind only; nothing: all of them.
  void setKind(std::optional<CandidateTexts::Kind> kind);
  [[nodiscard]] bool shows(int row) const { return filterAcceptsRow(row, {}); }

 protected:
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
  [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  CandidateTableModel& model_;
  std::optional<CandidateTexts::Kind> kind_;
};

}  // namespace tessaly
