// The tables in themselves: complete, in their order, and the same in all languages where they must be.
#include "localization/Localization.h"
#include "localization/RejectionMessages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tessaly::Localization {
namespace {

// A row with a text too few or too many does not compile.
static_assert(std::is_constructible_v<Entry, const char*, const char*, const char*>);
static_assert(!std::is_constructible_v<Entry, const char*, const char*>);
static_assert(!std::is_constructible_v<Entry, const char*, const char*, const char*, const char*>);

/// Every row that the user can read: both tables and the reasons of a refusal.
std::vector<Entry> allRows() {
  std::vector<Entry> rows(entries().begin(), entries().end());
  rows.insert(rows.end(), additions().begin(), additions().end());
  for (int reason = 0; reason <= static_cast<int>(RejectionReason::calibrationSize); ++reason)
    rows.push_back(rejectionMessages(static_cast<RejectionReason>(reason)));
  return rows;
}

TEST(Tables, AreComplete) {
  ASSERT_EQ(entries().size(), 194U);
  for (const Entry& row : allRows())
    EXPECT_EQ(std::ranges::count(row.texts, ""), 0) << row.english();
}

TEST(Tables, BreakTheirLinesAtTheSamePlacesInEveryLanguage) {
  for (const Entry& row : allRows()) {
    for (const std::string_view text : row.texts)
      EXPECT_EQ(std::ranges::count(text, '\n'), std::ranges::count(row.english(), '\n')) << text;
  }
}

TEST(Tables, BeginAndEndAsTheyAlwaysDid) {
  EXPECT_EQ(entries().front().english(), "1. Create Camera Profile");
  EXPECT_EQ(entries()[37].in(AppLanguage::french), "Impossible d’ouvrir le dossier de sortie :\n");
  EXPECT_EQ(entries()[47].in(AppLanguage::french), " ; %d taches fixes marquées présélectionnées")
      << "cells are not trimmed";
  EXPECT_EQ(entries()[82].in(AppLanguage::chinese), "已保存“%@”：%d 个像素、%d 列、%d 个固定斑点。\n\n%@");
  EXPECT_EQ(entries().back().english(),
            "Repairs fixed sensor defects in DNG files. Original files are only ever read.");
}

TEST(Tables, GiveEachReasonItsOwnMessage) {
  const std::pair<RejectionReason, const char*> rows[] = {
      {RejectionReason::losslessJPEG, "This DNG uses lossless JPEG compression,"},
      {RejectionReason::lossyJPEG, "This DNG uses lossy JPEG compression,"},
      {RejectionReason::jpegXL, "This DNG uses JPEG XL compression,"},
      {RejectionReason::proprietaryRAW, "This camera RAW format"},
      {RejectionReason::nonBayer, "This DNG uses a sensor colour pattern"},
      {RejectionReason::linear, "This DNG contains demosaiced"},
      {RejectionReason::damaged, "This DNG appears incomplete"},
      {RejectionReason::unreadable, "Tessaly couldn't open this file."},
      {RejectionReason::mismatch, "This file doesn't match the camera profile"},
      {RejectionReason::unsupported, "This DNG uses an image layout or feature"},
      {RejectionReason::container, "This file uses a TIFF or DNG version"},
      {RejectionReason::bitDepth, "This DNG uses an unsupported RAW bit depth."},
      {RejectionReason::fractionalCrop, "This DNG defines its crop"},
      {RejectionReason::fillOrder, "This DNG uses an unsupported order"},
      {RejectionReason::sampleRange, "This DNG's brightness range"},
      {RejectionReason::numericType, "This DNG stores image information in a number format"},
      {RejectionReason::calibrationFrames, "There aren't enough usable calibration frames."},
      {RejectionReason::calibrationSize, "This image is too small for calibration."},
  };
  for (const auto& [reason, start] : rows)
    EXPECT_TRUE(rejectionMessages(reason).english().starts_with(start)) << start;
}

}  // namespace
}  // namespace tessaly::Localization
