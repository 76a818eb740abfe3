// A user who tries whatever there is: clicks, keys, shortcuts, the wheel, menus, while analyses and batches run.
//
// User-interface thread only. The same seed takes the same decisions; what they meet depends on what is running.
#pragma once

#include "app/AppDelegate.h"
#include "app/walk/WalkPanels.h"
#include "app/walk/WalkScene.h"
#include "app/walk/Watchdog.h"

#include <QPoint>
#include <QWidget>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tessaly::tests {

class RandomWalk {
 public:
  RandomWalk(unsigned seed, int steps, bool tells);

  /// Takes the steps, starting the program anew when one of them ends it; what was found, one line each.
  [[nodiscard]] std::vector<std::string> go();

 private:
  struct Habit {
    int weight;
    const char* name;
    void (RandomWalk::*act)();
  };
  static const std::vector<Habit> habits;

  void runProgram();
  void next();
  void step();
  void finish();
  [[nodiscard]] const Habit& anyHabit();

  void clickSomewhere();
  void clickControl();
  void doubleClick();
  void drag();
  void turnWheel();
  void pressKey();
  void typeText();
  void pressShortcut();
  void chooseFromMenu();
  void showSomethingElse();
  void startAnalysis();
  void startBatch();
  void pause();
  void leave();

  [[nodiscard]] unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  template <typename Items>
  [[nodiscard]] auto& oneOf(Items& items) {
    return items[below(static_cast<std::size_t>(std::size(items)))];
  }
  [[nodiscard]] bool isBlocked() const;
  [[nodiscard]] QWidget* anyWindow();
  [[nodiscard]] QWidget* anyWidget();
  [[nodiscard]] QPoint anyPlace(const QWidget& widget);
  [[nodiscard]] Qt::KeyboardModifiers anyModifiers();

  std::mt19937 random_;
  int left_;
  bool tells_;
  int delay_ = 0;  ///< before the next step, in milliseconds
  int analyses_ = 0;
  int batches_ = 0;
  WalkScene scene_;
  WalkPanels panels_{scene_, random_};
  std::unique_ptr<AppDelegate> application_;
  Watchdog watchdog_;
};

}  // namespace tessaly::tests
