// The profile creation tab on the frames of a small sensor with one bad pixel and one bad column.
#pragma once

#include "app/preview/CalibrationPreviewView.h"
#include "app/profile/CalibrationViewController.h"
#include "app/profile/CandidateTable.h"
#include "app/support/AppTest.h"
#include "calibration/FrameFolder.h"

#include <QComboBox>
#include <QPushButton>

namespace tessaly::tests {

class CalibrationTab : public AppTest {
 protected:
  static constexpr std::int64_t width = 400;
  static constexpr std::int64_t height = 220;
  static constexpr std::int64_t pixelX = 50;
  static constexpr std::int64_t pixelY = 40;
  static constexpr std::int64_t columnX = 180;

  CalibrationTab() : frames(width, height) {
    for (std::uint32_t frame = 0; frame < 6; ++frame) {
      const FrameExposure exposure{100, std::pair<std::int64_t, std::int64_t>(1, frame < 3 ? 125 : 10)};
      const std::string name = (frame < 3 ? "a-" : "b-") + std::to_string(frame % 3 + 1) + ".dng";
      frames.add(name, FrameFolder::brightLevel, exposure,
                 [frame](const FrameFolder::Sample& sample) { damage(sample, frame); });
    }
    tab.resize(1280, 800);
    tab.show();
  }

  /// Noise, without which no column stands out, and the defects.
  static void damage(const FrameFolder::Sample& sample, std::uint32_t noise) {
    for (std::int64_t y = 0; y < height; ++y) {
      for (std::int64_t x = 0; x < width; ++x) {
        noise = noise * 1664525U + 1013904223U;
        sample(x, y) = static_cast<std::uint16_t>(sample(x, y) + (noise >> 29U));
      }
      sample(columnX, y) = static_cast<std::uint16_t>(sample(columnX, y) + 40);
    }
    sample(pixelX, pixelY) = 16000;
  }

  [[nodiscard]] std::filesystem::path folder() const { return frames.path("a-1.dng").parent_path(); }

  void analyze() {
    tab.setFolder(folder());
    tab.analyzeButton->click();
    ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
    ASSERT_EQ(panels.lastAlert(), "");
    ASSERT_TRUE(tab.result().has_value());
  }

  [[nodiscard]] std::string status() const { return tab.statusLabel->stringValue(); }

  /// What stands beside the profile's name; empty when nothing does.
  [[nodiscard]] std::string camera() const {
    const QWidget& line = *tab.profileName->parentWidget();
    std::string shown;
    for (const LocalizedLabel* label : line.findChildren<LocalizedLabel*>())
      if (label->isVisibleTo(&tab) && label->sourceText().empty()) shown = label->stringValue();
    return shown;
  }

  [[nodiscard]] QPushButton& button(const char* title) const {
    for (QPushButton* button : tab.findChildren<QPushButton*>())
      if (button->text() == QString::fromUtf8(title)) return *button;
    throw std::invalid_argument(title);
  }

  [[nodiscard]] int rowOf(CalibrationCandidate::Kind kind) const {
    for (std::size_t row = 0; row < tab.candidates().size(); ++row)
      if (tab.candidates()[row].kind == kind) return static_cast<int>(row);
    throw std::invalid_argument("no such candidate");
  }

  [[nodiscard]] bool isAccepted(int row) const {
    return tab.accepted().contains(tab.candidates()[static_cast<std::size_t>(row)].id);
  }

  /// Where an active sample is on the preview.
  [[nodiscard]] QPoint on(double x, double y) const {
    return (tab.previewView->navigation().transform().toDevice(QPointF(x + 0.5, y + 0.5)) /
            tab.previewView->viewport()->devicePixelRatioF())
        .toPoint();
  }

  void click(QPoint place) { QTest::mouseClick(tab.previewView->viewport(), Qt::LeftButton, Qt::NoModifier, place); }

  FrameFolder frames;
  CalibrationViewController tab{panels};
};

}  // namespace tessaly::tests
