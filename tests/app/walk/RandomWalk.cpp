#include "app/walk/RandomWalk.h"

#include "app/walk/UserInput.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <iostream>
#include <numeric>
#include <utility>

namespace tessaly::tests {
namespace {

constexpr std::chrono::milliseconds longestSilence(2000);

struct Shortcut {
  Qt::Key key;
  Qt::KeyboardModifiers modifiers;
};

constexpr Qt::KeyboardModifiers ctrl = Qt::ControlModifier;

constexpr Shortcut shortcuts[] = {
    {Qt::Key_1, ctrl},      {Qt::Key_2, ctrl},
    {Qt::Key_O, ctrl},      {Qt::Key_O, ctrl | Qt::ShiftModifier},
    {Qt::Key_Return, ctrl}, {Qt::Key_Enter, ctrl},
    {Qt::Key_S, ctrl},      {Qt::Key_Comma, ctrl},
    {Qt::Key_Period, ctrl}, {Qt::Key_W, ctrl},
    {Qt::Key_A, ctrl},      {Qt::Key_C, ctrl},
    {Qt::Key_X, ctrl},      {Qt::Key_V, ctrl},
    {Qt::Key_Z, ctrl},      {Qt::Key_F5, Qt::NoModifier},
    {Qt::Key_Tab, ctrl},    {Qt::Key_F10, Qt::NoModifier},
};

constexpr Qt::Key keys[] = {
    Qt::Key_Tab,    Qt::Key_Tab,       Qt::Key_Backtab, Qt::Key_Return,   Qt::Key_Escape, Qt::Key_Escape, Qt::Key_Space,
    Qt::Key_Up,     Qt::Key_Down,      Qt::Key_Left,    Qt::Key_Right,    Qt::Key_PageUp, Qt::Key_Home,   Qt::Key_End,
    Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Menu,    Qt::Key_PageDown, Qt::Key_Select, Qt::Key_Insert, Qt::Key_Alt,
};

constexpr const char* texts[] = {"n", "p", "+", "-", "0", "5", "98", "160", "My body", "é…", "坏", "1e9"};

bool isShown(const QWidget& widget) {
  return widget.isVisible() && !widget.visibleRegion().isEmpty();
}

QList<QWidget*> controlsOf(const QWidget& window) {
  QList<QWidget*> controls;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget);
    if (isControl && isShown(*widget) && widget->isEnabled()) controls << widget;
  }
  return controls;
}

bool endsProgram(const QAction& action) {
  return action.menuRole() == QAction::QuitRole;
}

}  // namespace

const std::vector<RandomWalk::Habit> RandomWalk::habits{
    {200, "click", &RandomWalk::clickSomewhere},
    {250, "control", &RandomWalk::clickControl},
    {40, "double click", &RandomWalk::doubleClick},
    {60, "drag", &RandomWalk::drag},
    {60, "wheel", &RandomWalk::turnWheel},
    {200, "key", &RandomWalk::pressKey},
    {60, "text", &RandomWalk::typeText},
    {120, "shortcut", &RandomWalk::pressShortcut},
    {40, "menu", &RandomWalk::chooseFromMenu},
    {20, "window", &RandomWalk::showSomethingElse},
    {8, "analysis", &RandomWalk::startAnalysis},
    {12, "batch", &RandomWalk::startBatch},
    {30, "pause", &RandomWalk::pause},
    {3, "leave", &RandomWalk::leave},
};

RandomWalk::RandomWalk(unsigned seed, int steps, bool tells)
    : random_(seed), left_(steps), tells_(tells), watchdog_(longestSilence) {}

std::vector<std::string> RandomWalk::go() {
  scene_.keepProfile();
  while (left_ > 0)
    runProgram();
  std::cout << analyses_ << " analyses and " << batches_ << " batches were started\n";
  return scene_.faults();
}

void RandomWalk::runProgram() {
  application_ = std::make_unique<AppDelegate>(panels_);
  application_->applicationDidFinishLaunching();
  next();
  QApplication::exec();
  watchdog_.beat();
  application_.reset();
  watchdog_.beat();
}

// Before it is taken: a step may wait in an event loop of its own.
void RandomWalk::next() {
  QTimer::singleShot(std::exchange(delay_, 0), application_.get(), [this] { step(); });
}

void RandomWalk::step() {
  watchdog_.beat();
  if (left_ == 0) return finish();
  --left_;
  const Habit& habit = anyHabit();
  if (tells_) std::cerr << left_ << ' ' << habit.name << std::endl;
  next();
  (this->*habit.act)();
}

// Whatever is in front is closed, and a batch that runs is stopped, until the program may end.
void RandomWalk::finish() {
  constexpr int moment = 10;
  delay_ = moment;
  next();
  BatchViewController& batch = application_->windowController->batch();
  if (QWidget* window = isBlocked() ? input::frontWindow() : nullptr) {
    window->close();
  } else if (application_->applicationShouldTerminate()) {
    application_->terminate();
  } else if (batch.stopButton->isEnabled()) {
    batch.cancelBatch();
  }
}

const RandomWalk::Habit& RandomWalk::anyHabit() {
  const int all =
      std::accumulate(habits.begin(), habits.end(), 0, [](int sum, const Habit& habit) { return sum + habit.weight; });
  auto place = static_cast<int>(below(static_cast<std::size_t>(all)));
  auto habit = habits.begin();
  while ((place -= habit->weight) >= 0)
    ++habit;
  return *habit;
}

// ---- Where

bool RandomWalk::isBlocked() const {
  return QApplication::activePopupWidget() || QApplication::activeModalWidget();
}

// The one in front; now and then any other, which may be behind an alert.
QWidget* RandomWalk::anyWindow() {
  constexpr std::size_t rarely = 12;
  QWidget* front = input::frontWindow();
  if (front && below(rarely) != 0) return front;
  QList<QWidget*> windows;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible()) windows << window;
  return windows.isEmpty() ? nullptr : oneOf(windows);
}

QWidget* RandomWalk::anyWidget() {
  QWidget* window = anyWindow();
  if (!window) return nullptr;
  QList<QWidget*> widgets{window};
  for (QWidget* widget : window->findChildren<QWidget*>())
    if (widget->window() == window && isShown(*widget)) widgets << widget;
  return oneOf(widgets);
}

QPoint RandomWalk::anyPlace(const QWidget& widget) {
  const QRect area = widget.visibleRegion().boundingRect();
  if (area.isEmpty()) return widget.rect().center();
  const auto x = static_cast<int>(below(static_cast<std::size_t>(area.width())));
  const auto y = static_cast<int>(below(static_cast<std::size_t>(area.height())));
  return area.topLeft() + QPoint(x, y);
}

Qt::KeyboardModifiers RandomWalk::anyModifiers() {
  constexpr Qt::KeyboardModifiers modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                 Qt::ShiftModifier};
  return oneOf(modifiers);
}

// ---- What

void RandomWalk::clickSomewhere() {
  constexpr Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                         Qt::MiddleButton};
  if (QWidget* widget = anyWidget()) input::click(*widget, anyPlace(*widget), oneOf(buttons), anyModifiers());
}

void RandomWalk::clickControl() {
  QWidget* window = anyWindow();
  if (!window) return;
  const QList<QWidget*> controls = controlsOf(*window);
  if (controls.isEmpty()) return;
  QWidget& control = *oneOf(controls);
  input::click(control, control.visibleRegion().boundingRect().center());
}

void RandomWalk::doubleClick() {
  const QPointer<QWidget> widget = anyWidget();
  if (!widget) return;
  const QPoint place = anyPlace(*widget);
  input::click(*widget, place);
  if (widget) input::clickAgain(*widget, place);
}

void RandomWalk::drag() {
  const QPointer<QWidget> widget = anyWidget();
  if (!widget) return;
  constexpr Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::MiddleButton};
  const Qt::MouseButton button = oneOf(buttons);
  constexpr int moves = 4;
  input::press(*widget, anyPlace(*widget), button);
  for (int move = 0; move < moves && widget; ++move)
    input::move(*widget, anyPlace(*widget), button);
  if (widget) input::release(*widget, anyPlace(*widget), button);
}

void RandomWalk::turnWheel() {
  if (QWidget* widget = anyWidget()) input::turnWheel(*widget, anyPlace(*widget), below(2) == 0, anyModifiers());
}

void RandomWalk::pressKey() {
  const Qt::Key key = oneOf(keys);
  input::key(key, anyModifiers(), key == Qt::Key_Space ? QStringLiteral(" ") : QString());
}

void RandomWalk::typeText() {
  for (const QChar character : QString::fromUtf8(oneOf(texts)))
    input::key(character.toUpper().unicode(), Qt::NoModifier, character);
}

void RandomWalk::pressShortcut() {
  const Shortcut& shortcut = oneOf(shortcuts);
  input::key(shortcut.key, shortcut.modifiers);
}

void RandomWalk::chooseFromMenu() {
  if (isBlocked()) return;
  QList<QAction*> items;
  for (const QMenu* menu : application_->menuBar().findChildren<QMenu*>())
    for (QAction* action : menu->actions())
      if (action->isEnabled() && !action->isSeparator() && !endsProgram(*action)) items << action;
  if (!items.isEmpty()) oneOf(items)->trigger();
}

void RandomWalk::showSomethingElse() {
  MainWindowController& window = *application_->windowController;
  constexpr int smallest = 300;
  constexpr std::size_t range = 1300;
  switch (below(4)) {
    case 0:
      return window.resize(smallest + static_cast<int>(below(range)), smallest + static_cast<int>(below(range)));
    case 1:
      return window.showMaximized();
    case 2:
      return window.showNormal();
    default:
      return window.comeForward();
  }
}

void RandomWalk::startAnalysis() {
  CalibrationViewController& tab = application_->windowController->calibration();
  if (isBlocked() || tab.isBusy()) return;
  tab.setFolder(scene_.calibration());
  tab.analyze();
  ++analyses_;
}

void RandomWalk::startBatch() {
  BatchViewController& tab = application_->windowController->batch();
  if (isBlocked() || tab.isProcessing()) return;
  scene_.removeCopies();
  scene_.keepProfile();
  tab.reloadProfiles();
  tab.setInput(scene_.photographs());
  tab.startBatch();
  ++batches_;
}

void RandomWalk::pause() {
  constexpr int longest = 60;
  delay_ = static_cast<int>(below(longest));
}

void RandomWalk::leave() {
  if (!isBlocked()) input::key(Qt::Key_Q, ctrl);
}

}  // namespace tessaly::tests
