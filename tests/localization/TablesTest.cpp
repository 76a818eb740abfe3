// The tables in the code against the translators' own sheets, where those lie beside the project.
#include "localization/Localization.h"
#include "localization/RejectionMessages.h"
#include "support/FileBytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::Localization {
namespace {

const std::filesystem::path sheets = std::filesystem::path(TESSALY_SOURCE_FOLDER) / ".." / "shared" / "texts";

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts{""};
  for (const char character : text) {
    if (character == separator) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

/// The rows below the heading; "\n" in a cell is a line feed.
std::vector<std::vector<std::string>> rowsOf(const char* sheet) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : split(tests::readText(sheets / sheet), '\n')) {
    if (line.empty()) continue;
    rows.push_back(split(line, '\t'));
    for (std::string& cell : rows.back()) {
      for (std::size_t at = cell.find("\\n"); at != std::string::npos; at = cell.find("\\n"))
        cell.replace(at, 2, "\n");
    }
  }
  rows.erase(rows.begin());
  return rows;
}

TEST(Tables, HoldEveryTextOfTheSheet) {
  if (!std::filesystem::exists(sheets)) GTEST_SKIP() << "no sheets beside the project";
  const auto rows = rowsOf("localization.tsv");
  ASSERT_EQ(rows.size(), entries().size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(entries()[i].english, rows[i].at(1));
    EXPECT_EQ(entries()[i].chinese, rows[i].at(2));
    EXPECT_EQ(entries()[i].french, rows[i].at(3));
  }
}

TEST(Tables, HoldEveryRejectionOfTheSheet) {
  if (!std::filesystem::exists(sheets)) GTEST_SKIP() << "no sheets beside the project";
  const auto rows = rowsOf("rejections.tsv");
  ASSERT_EQ(rows.size(), 18U);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Entry& messages = rejectionMessages(static_cast<RejectionReason>(i));
    EXPECT_EQ(messages.english, rows[i].at(2));
    EXPECT_EQ(messages.chinese, rows[i].at(3));
    EXPECT_EQ(messages.french, rows[i].at(4));
  }
}

TEST(Tables, BeginAndEndAsTheyAlwaysDid) {
  EXPECT_EQ(entries().front().english, "1. Create Camera Profile");
  EXPECT_EQ(entries()[37].french, "Impossible d’ouvrir le dossier de sortie :\n");
  EXPECT_EQ(entries()[47].french, " ; %d taches fixes marquées présélectionnées") << "cells are not trimmed";
  EXPECT_EQ(entries()[82].chinese, "已保存“%@”：%d 个像素、%d 列、%d 个固定斑点。\n\n%@");
  EXPECT_EQ(entries().back().english, "Repairs fixed sensor defects in DNG files. Original files are only ever read.");
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
    EXPECT_TRUE(rejectionMessages(reason).english.starts_with(start)) << start;
}

}  // namespace
}  // namespace tessaly::Localization
