// Answers the window's questions in a test's place and remembers what was asked and said.
#pragma once

#include "app/widgets/Panels.h"

#include <QPointer>
#include <QTimer>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tests {

class FakePanels : public Panels {
 public:
  std::optional<std::filesystem::path> answer;  ///< to the next question for a path; nothing: cancelled
  std::optional<std::size_t> button;            ///< that answers the next alert; nothing: it stays unanswered
  bool opensFolders = true;

  std::vector<FilePanel> asked;
  std::vector<Alert> alerts;
  std::vector<std::filesystem::path> opened;

  void chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) override {
    reply(window, panel, std::move(chosen));
  }
  void chooseFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override {
    reply(window, panel, std::move(chosen));
  }
  void chooseNewFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override {
    reply(window, panel, std::move(chosen));
  }

  void showAlert(QWidget& window, Alert alert, ButtonHandler answered) override {
    alerts.push_back(std::move(alert));
    lastAnswered_ = answered;
    if (button && answered) QTimer::singleShot(0, &window, [answered, chosen = *button] { answered(chosen); });
  }

  bool openFolder(const std::filesystem::path& folder) override {
    opened.push_back(folder);
    return opensFolders;
  }

  /// Presses a button of the last alert.
  void answerLast(std::size_t pressed) {
    if (lastAnswered_) lastAnswered_(pressed);
  }

  /// What the last alert says now; empty when there was none.
  [[nodiscard]] std::string lastAlert() const { return alerts.empty() ? "" : alerts.back().text(); }

 private:
  ButtonHandler lastAnswered_;

  void reply(QWidget& window, const FilePanel& panel, PathHandler chosen) {
    asked.push_back(panel);
    if (answer) QTimer::singleShot(0, &window, [chosen = std::move(chosen), path = *answer] { chosen(path); });
  }
};

}  // namespace tessaly::tests
