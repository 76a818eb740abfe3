// The walk's answers to the questions for files and folders; alerts are the program's own.
#pragma once

#include "app/walk/WalkScene.h"
#include "app/widgets/Panels.h"

#include <random>

namespace tessaly::tests {

class WalkPanels : public DesktopPanels {
 public:
  WalkPanels(const WalkScene& scene, std::mt19937& random) : scene_(scene), random_(random) {}

  void chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  void chooseFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  void chooseNewFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  bool openFolder(const std::filesystem::path& folder) override;

 private:
  void answer(QWidget& window, const std::vector<std::filesystem::path>& possible, PathHandler chosen);

  const WalkScene& scene_;
  std::mt19937& random_;
};

}  // namespace tessaly::tests
