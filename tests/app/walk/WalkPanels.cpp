#include "app/walk/WalkPanels.h"

#include <QTimer>
#include <utility>

namespace tessaly::tests {

void WalkPanels::chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) {
  const bool isOutput = panel.purpose == "output";
  const bool isCalibration = panel.purpose == "calibration";
  const std::filesystem::path usual = isOutput        ? scene_.copies()
                                      : isCalibration ? scene_.calibration()
                                                      : scene_.photographs();
  answer(window, {usual, usual, usual, scene_.vanished(), isOutput ? usual : scene_.empty()}, std::move(chosen));
}

void WalkPanels::chooseFile(QWidget& window, const FilePanel&, PathHandler chosen) {
  answer(window,
         {scene_.photographs() / "L1.dng", scene_.copies() / "profile.json", scene_.photographs() / "vanished.dng"},
         std::move(chosen));
}

void WalkPanels::chooseNewFile(QWidget& window, const FilePanel&, PathHandler chosen) {
  answer(window, {scene_.copies() / "profile.json"}, std::move(chosen));
}

bool WalkPanels::openFolder(const std::filesystem::path&) {
  return random_() % 2 == 0;
}

// Now and then it is cancelled.
void WalkPanels::answer(QWidget& window, const std::vector<std::filesystem::path>& possible, PathHandler chosen) {
  const std::size_t choice = random_() % (possible.size() + 1);
  if (choice == possible.size()) return;
  QTimer::singleShot(0, &window, [chosen = std::move(chosen), path = possible[choice]] { chosen(path); });
}

}  // namespace tessaly::tests
