// The candidates on view and which of them are included: what the table and the preview both show.
//
// User-interface thread only. Rows are positions in candidates(), which only ever grows between two resets.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <QObject>
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

  /// Replaces everything by the candidates of a new result.
  void reset(DNGMetadata metadata, std::vector<CalibrationCandidate> candidates, const std::set<UUID>& accepted);

  /// Adds a candidate, included, behind the others.
  void append(CalibrationCandidate candidate);

  void setAccepted(const std::set<UUID>& accepted);
  void setIncluded(const std::vector<int>& rows, bool included);

 signals:
  void aboutToReset();
  void wasReset();
  void aboutToAppend();
  void appended();
  void inclusionChanged();

 private:
  void adopt(const std::set<UUID>& accepted);

  DNGMetadata metadata_;
  std::vector<CalibrationCandidate> candidates_;
  std::vector<char> included_;
  int includedCount_ = 0;
};

}  // namespace tessaly
