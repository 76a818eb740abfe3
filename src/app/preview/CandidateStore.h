// The candidates on view and which of them are included: what the table and the preview both show.
//
// User-interface thread only. Rows are positions in candidates(): those of the result, in its order, and behind them
// those that were added by hand, the only ones that can go away between two resets.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <QObject>
#include <optional>
#include <set>
#include <vector>

namespace tessaly {

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

  [[nodiscard]] bool isAddedByHand(int row) const { return row >= detectedCount_; }

  /// The row that has the place of `candidate` already.
  [[nodiscard]] std::optional<int> rowOfSamePlace(const CalibrationCandidate& candidate) const;

  /// Replaces everything by the candidates of a new result.
  void reset(DNGMetadata metadata, std::vector<CalibrationCandidate> candidates, const std::set<UUID>& accepted);

  /// Adds a candidate, included, behind the others.
  void append(CalibrationCandidate candidate);

  /// Takes one away that was added by hand.
  void remove(int row);

  void setAccepted(const std::set<UUID>& accepted);
  void setIncluded(const std::vector<int>& rows, bool included);

 signals:
  void aboutToReset();
  void wasReset();
  void aboutToAppend();
  void appended();
  void aboutToRemove(int row);
  void removed();
  void inclusionChanged();

 private:
  void adopt(const std::set<UUID>& accepted);

  DNGMetadata metadata_;
  std::vector<CalibrationCandidate> candidates_;
  std::vector<char> included_;
  int includedCount_ = 0;
  int detectedCount_ = 0;
};

}  // namespace tessaly
