// The candidates on view and which of them are included: what the table and the preview both show.
//
// User-interface thread only. Rows are positions in candidates(): the documented ones of the result, in its order,
// while the second opinion is shown its proposals behind them, and last those that were added by hand. Only the latter
// can go away one by one.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <QObject>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace tessaly {

/// What the second opinion adds: rows of its own, and a word about the documented ones.
struct OpinionRows {
  std::vector<SecondOpinionFinding> proposals;
  std::vector<std::optional<bool>> confirmed;  ///< by documented row
};

class CandidateStore : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  [[nodiscard]] const std::vector<CalibrationCandidate>& candidates() const { return candidates_; }
  [[nodiscard]] const DNGMetadata& metadata() const { return metadata_; }
  [[nodiscard]] int count() const { return static_cast<int>(candidates_.size()); }
  [[nodiscard]] const CalibrationCandidate& at(int row) const { return candidates_[static_cast<std::size_t>(row)]; }

  [[nodiscard]] bool isIncluded(int row) const { return included_[static_cast<std::size_t>(row)] != 0; }
  [[nodiscard]] int includedCount() const { return includedCount_; }

  /// The ids of the included candidates.
  [[nodiscard]] std::set<UUID> accepted() const;

  [[nodiscard]] bool isAddedByHand(int row) const { return row >= documentedCount_ + shownProposals(); }
  [[nodiscard]] bool isProposed(int row) const { return row >= documentedCount_ && !isAddedByHand(row); }

  /// What the second opinion found at a row that is proposed; null for other rows.
  [[nodiscard]] const SecondOpinionFinding* proposal(int row) const;

  /// Whether the second opinion confirms a documented row; nothing where it says nothing or is not shown.
  [[nodiscard]] std::optional<bool> confirmed(int row) const;

  /// Whether a row can be included at all.
  [[nodiscard]] bool isIncludable(int row) const;
  [[nodiscard]] std::vector<int> includableRows() const;

  /// The included rows that the second opinion denies.
  [[nodiscard]] std::vector<int> includedUnconfirmed() const;

  [[nodiscard]] bool isOpinionShown() const { return isOpinionShown_; }

  /// The row that has the place of `candidate` already and can be included.
  [[nodiscard]] std::optional<int> rowOfSamePlace(const CalibrationCandidate& candidate) const;

  /// Takes a second opinion over; it is shown only after showOpinion. Forgotten at the next reset.
  void setOpinion(OpinionRows opinion) { opinion_ = std::move(opinion); }

  /// Shows its rows, excluded, or takes them away again.
  void showOpinion(bool shown);

  /// Replaces everything by the candidates of a new result.
  void reset(DNGMetadata metadata, std::vector<CalibrationCandidate> candidates, const std::set<UUID>& accepted);

  /// Adds a candidate, included, behind the others.
  void append(CalibrationCandidate candidate);

  /// Takes one away that was added by hand.
  void remove(int row);

  void setAccepted(const std::set<UUID>& accepted);

  /// Includes the pixels of at least this confidence and excludes those below it; proposals stay as they are.
  void includeMatchingPixels(double confidence);

  /// Rows that cannot be included stay excluded; the first of them is told.
  void setIncluded(const std::vector<int>& rows, bool included);

 signals:
  void aboutToReset();
  void wasReset();
  void aboutToAppend();
  void appended();
  void aboutToRemove(int row);
  void removed();
  void inclusionChanged();
  void inclusionRefused(int row);

 private:
  [[nodiscard]] int shownProposals() const { return isOpinionShown_ ? static_cast<int>(opinion_.proposals.size()) : 0; }
  void adopt(const std::set<UUID>& accepted);

  DNGMetadata metadata_;
  std::vector<CalibrationCandidate> candidates_;
  std::vector<char> included_;
  int includedCount_ = 0;
  int documentedCount_ = 0;
  OpinionRows opinion_;
  bool isOpinionShown_ = false;
};

}  // namespace tessaly
