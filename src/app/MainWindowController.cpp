#include "app/MainWindowController.h"

#include "app/widgets/AlertSheet.h"
#include "app/widgets/Controls.h"
#include "app/widgets/Icons.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WindowState.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>

namespace tessaly {
namespace {

constexpr const char* placeKey = "place";
constexpr const char* maximizedKey = "maximized";
constexpr const char* tabKey = "tab";

constexpr QSize usualSize(1280, 820);
constexpr QSize smallestSize(1080, 700);
constexpr double mostOfScreen = 0.9;

QSize scaled(QSize size) {
  return {Metrics::scaled(size.width()), Metrics::scaled(size.height())};
}

QList<QRect> availableScreens() {
  QList<QRect> areas;
  areas << QGuiApplication::primaryScreen()->availableGeometry();
  for (const QScreen* screen : QGuiApplication::screens())
    if (screen != QGuiApplication::primaryScreen()) areas << screen->availableGeometry();
  return areas;
}

}  // namespace

MainWindowController::MainWindowController(Panels& panels)
    : tabs_(new QTabWidget),
      calibration_(new CalibrationViewController(panels)),
      batch_(new BatchViewController(panels)),
      settingsButton_(new QToolButton) {
  setWindowTitle(localized("Tessaly"));
  tabs_->setDocumentMode(true);
  addTab(*calibration_, "1. Create Camera Profile");
  addTab(*batch_, "2. Batch Repair DNG");
  tabs_->widget(0)->setObjectName(QStringLiteral("calibration"));
  makeSettingsButton();
  setCentralWidget(tabs_);
  connect(calibration_, &CalibrationViewController::profileSaved, batch_, &BatchViewController::chooseProfile);
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_1, [this] { showTab(0); });
  Controls::addShortcut(*this, Qt::CTRL | Qt::Key_2, [this] { showTab(1); });
  setSmallestSize();
  refreshLanguage();
}

// Where the screen is smaller than a tab needs to be, the tab scrolls.
void MainWindowController::addTab(QWidget& tab, const char* title) {
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(&tab);
  tabs_->addTab(area, localized(title));
}

void MainWindowController::makeSettingsButton() {
  settingsButton_->setText(localized("Settings"));
  settingsButton_->setToolTip(localized("Settings"));
  settingsButton_->setAccessibleName(localized("Settings"));
  settingsButton_->setIcon(tintedIcon("gear"));
  settingsButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  settingsButton_->setAutoRaise(true);
  settingsButton_->setFocusPolicy(Qt::StrongFocus);
  tabs_->setCornerWidget(settingsButton_, Qt::TopRightCorner);
  connect(settingsButton_, &QToolButton::clicked, this, &MainWindowController::settingsRequested);
}

// The sizes grow with the font, as far as the screen goes.
void MainWindowController::setSmallestSize() {
  setMinimumSize(scaled(smallestSize).boundedTo(availableScreens().constFirst().size() * mostOfScreen));
}

void MainWindowController::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  setSmallestSize();
  for (LocalizedLabel* label : findChildren<LocalizedLabel*>())
    label->followFont();
}

// Alerts are windows of their own; they follow too.
void MainWindowController::refreshLanguage() {
  localizeView(*this);
  for (AlertSheet* sheet : findChildren<AlertSheet*>(Qt::FindDirectChildrenOnly))
    localizeView(*sheet);
}

void MainWindowController::showWindow() {
  restoreState();
  show();
  raise();
  activateWindow();
  showTab(tabs_->currentIndex());
}

// The focus goes into the tab: its keys work from there.
void MainWindowController::showTab(int index) {
  tabs_->setCurrentIndex(index);
  (index == 0 ? static_cast<QWidget*>(calibration_) : batch_)->setFocus();
}

void MainWindowController::comeForward() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void MainWindowController::showRunningBatch() {
  tabs_->setCurrentIndex(1);
  comeForward();
  batch_->stopButton->setFocus();
}

void MainWindowController::closeEvent(QCloseEvent* event) {
  if (isProcessing()) {
    event->ignore();
    return showRunningBatch();
  }
  saveState();
  event->accept();
  emit closed();
}

void MainWindowController::restoreState() {
  const QList<QRect> screens = availableScreens();
  const QSize usual = scaled(usualSize).boundedTo(screens.constFirst().size() * mostOfScreen);
  setGeometry(placedWindow(WindowState::value(placeKey).toRect(), usual, screens));
  if (WindowState::value(maximizedKey, false).toBool()) setWindowState(Qt::WindowMaximized);
  tabs_->setCurrentIndex(WindowState::value(tabKey, 0).toInt());
}

void MainWindowController::saveState() const {
  WindowState::setValue(placeKey, isMaximized() ? normalGeometry() : geometry());
  WindowState::setValue(maximizedKey, isMaximized());
  WindowState::setValue(tabKey, tabs_->currentIndex());
  calibration_->saveState();
}

}  // namespace tessaly
