// Which samples a profile's defects cover, and by which rule each is rebuilt, in the rows that are at hand while an
// image streams by from top to bottom. What a DefectMap holds for a plane this holds for a few rows of it.
//
// Used by one thread; the profile must outlive it.
#pragma once

#include "dng/samples/SliceLayout.h"
#include "profile/CameraProfile.h"
#include "repair/RepairEngine.h"
#include "repair/SampleMask.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaly {

class DefectRows {
 public:
  /// `profile` must have been validated for the image. `reach`: how many rows around a slice are asked for; `mostRows`:
  /// the most rows of a slice.
  DefectRows(const CameraProfile& profile, const DNGMetadata& metadata, std::int64_t reach, std::int64_t mostRows);

  /// Moves on to the slice below and the rows within reach of it.
  void moveTo(const SliceRows& slice);

  /// Whether any defect covers a sample of the rows at hand.
  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const { return all_.contains(x, slot(y)); }

  [[nodiscard]] bool isOnLine(std::int64_t x, std::int64_t y) const { return lines_.contains(x, slot(y)); }
  [[nodiscard]] bool isOnSpot(std::int64_t x, std::int64_t y) const { return spots_.contains(x, slot(y)); }

  /// Calls visit(x, y) for every covered sample of the rows, by row, then column.
  template <typename Visit>
  void forEach(const SliceRows& rows, Visit visit) const {
    for (std::int64_t y = rows.first; y < rows.last; ++y)
      all_.forEachInRow(slot(y), [&](std::int64_t x) { visit(x, y); });
  }

  /// The counts of the rows so far, those within reach below the slice too.
  [[nodiscard]] const RepairReport& report() const { return report_; }

 private:
  struct Place {
    std::uint32_t row = 0;
    std::uint32_t column = 0;

    auto operator<=>(const Place&) const = default;
  };

  /// A spot that the row at hand cuts, and how far it goes to both sides of its centre there.
  struct CutSpot {
    const DefectSpot* spot = nullptr;
    std::int64_t reach = 0;
  };

  [[nodiscard]] std::int64_t slot(std::int64_t y) const { return y & slotMask_; }
  void addRow(std::int64_t y);
  void addLines(std::int64_t y);
  void addSpots(std::int64_t y);
  void addPoints(std::int64_t y);
  void count(std::int64_t slot);

  std::int64_t rawHeight_;
  std::int64_t reach_;
  std::int64_t slotMask_;  // rows take turns in a number of slots that is a power of two
  SampleMask lines_;
  SampleMask spots_;
  SampleMask points_;
  SampleMask all_;
  std::vector<Place> pixels_;                   // sorted
  std::vector<const DefectLine*> sortedLines_;  // by first row
  std::vector<const DefectSpot*> sortedSpots_;  // by first row
  std::size_t nextPixel_ = 0;
  std::size_t nextLine_ = 0;
  std::size_t nextSpot_ = 0;
  std::vector<const DefectLine*> cutLines_;  // that the row at hand cuts
  std::vector<CutSpot> cutSpots_;
  std::int64_t nextRow_ = 0;
  RepairReport report_;
};

}  // namespace tessaly
