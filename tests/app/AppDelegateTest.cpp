#include "app/AppDelegate.h"
#include "app/support/AppTest.h"
#include "app/support/Gate.h"
#include "calibration/FrameFolder.h"
#include "dng/DNGReader.h"

#include <signal.h>

#include <QApplication>
#include <QMenu>

namespace tessaly::tests {
namespace {

QStringList titles(const QMenu& menu) {
  QStringList result;
  for (const QAction* action : menu.actions())
    result << (action->isSeparator() ? QStringLiteral("-") : action->text());
  return result;
}

class Application : public AppTest {
 protected:
  Application() {
    photographs.addSeries("p", 12, FrameFolder::brightLevel, {100, std::pair{1, 125}});
    CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(photographs.path("p-1.dng")));
    profile.pixels.push_back({60, 30, 1, "Manually added by user"});
    ProfileStore::save(profile);
    delegate.applicationDidFinishLaunching();
  }

  void startBatch() {
    delegate.windowController->batch().setInput(photographs.path("p-1.dng").parent_path());
    delegate.windowController->batch().startBatch();
    ASSERT_TRUE(delegate.windowController->isProcessing());
  }

  void finishBatch() {
    ASSERT_TRUE(waitUntil([&] { return !delegate.windowController->isProcessing(); }));
  }

  [[nodiscard]] QMenu& menu(int index) { return *delegate.menuBar().actions()[index]->menu(); }

  FrameFolder photographs;
  AppDelegate delegate{panels};
};

TEST_F(Application, OpensItsWindowWithTwoTabs) {
  MainWindowController& window = *delegate.windowController;
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.windowTitle(), "Tessaly");
  EXPECT_EQ(window.tabs().count(), 2);
  EXPECT_EQ(window.tabs().tabText(0), "1. Create Camera Profile");
  EXPECT_EQ(window.tabs().tabText(1), "2. Batch Repair DNG");
  EXPECT_EQ(window.tabs().widget(0)->objectName(), "calibration");
  EXPECT_EQ(window.settingsButton().toolTip(), "Settings");
  EXPECT_EQ(window.settingsButton().accessibleName(), "Settings");
}

TEST_F(Application, HasTwoMenus) {
  ASSERT_EQ(delegate.menuBar().actions().size(), 2);
  EXPECT_EQ(menu(0).title(), "Tessaly");
  EXPECT_EQ(titles(menu(0)), QStringList({"About Tessaly", "-", "Settings", "-", "Quit Tessaly"}));
  EXPECT_EQ(menu(1).title(), "Edit");
  EXPECT_EQ(titles(menu(1)), QStringList({"Cut", "Copy", "Paste", "Select All"}));
}

TEST_F(Application, HasNoMoreMenusAfterManyChanges) {
  for (int change = 0; change < 10; ++change)
    AppPreferences::shared().notify();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(delegate.menuBar().findChildren<QMenu*>().size(), 2);
}

TEST_F(Application, FollowsTheLanguageEverywhereAtOnce) {
  delegate.windowController->settingsButton().click();
  ASSERT_TRUE(delegate.settingsController);
  delegate.settingsController->language->setCurrentIndex(3);
  EXPECT_EQ(menu(1).title(), "Édition");
  EXPECT_EQ(delegate.windowController->tabs().tabText(1), "2. Réparer des DNG par lot");
  EXPECT_EQ(delegate.settingsController->windowTitle(), "Réglages");
  delegate.settingsController->language->setCurrentIndex(2);
  EXPECT_EQ(delegate.windowController->tabs().tabText(0), "1. 创建相机配置文件");
  delegate.settingsController->language->setCurrentIndex(1);
  EXPECT_EQ(delegate.windowController->tabs().tabText(0), "1. Create Camera Profile");
}

TEST_F(Application, LetsQtSpeakTheSameLanguage) {
  const auto copy = [] { return QCoreApplication::translate("QWidgetTextControl", "&Copy"); };
  speak(AppLanguage::french);
  EXPECT_EQ(copy().toStdString(), "Cop&ier");
  speak(AppLanguage::english);
  EXPECT_EQ(copy(), "&Copy");
}

TEST_F(Application, KeepsOneSettingsWindow) {
  delegate.showSettings();
  const SettingsWindowController* first = delegate.settingsController.get();
  delegate.settingsController->close();
  delegate.showSettings();
  EXPECT_EQ(delegate.settingsController.get(), first);
  EXPECT_TRUE(first->isVisible());
  delegate.windowController->close();
  EXPECT_FALSE(first->isVisible());
}

TEST_F(Application, KeepsTheSettingsClosedDuringABatch) {
  startBatch();
  delegate.showSettings();
  EXPECT_EQ(panels.lastAlert(), "Settings are unavailable during a batch repair.");
  EXPECT_EQ(panels.alerts.back().buttons, std::vector<std::string>{"OK"});
  EXPECT_FALSE(delegate.settingsController);
  finishBatch();
  delegate.showSettings();
  EXPECT_TRUE(delegate.settingsController);
}

TEST_F(Application, LocksTheOpenSettingsWhileABatchRuns) {
  delegate.showSettings();
  const SettingsWindowController& settings = *delegate.settingsController;
  startBatch();
  EXPECT_FALSE(settings.language->isEnabled());
  EXPECT_FALSE(settings.resetButton->isEnabled());
  EXPECT_FALSE(settings.importButton->isEnabled());
  EXPECT_TRUE(settings.doneButton->isEnabled());
  EXPECT_EQ(settings.lockLabel->stringValue(), "Settings are unavailable during a batch repair.");
  finishBatch();
  EXPECT_TRUE(settings.language->isEnabled());
  EXPECT_TRUE(settings.resetButton->isEnabled());
  EXPECT_EQ(settings.lockLabel->stringValue(), "");
}

TEST_F(Application, RefusesToEndDuringABatchAndShowsWhereToStopIt) {
  Gate gate;
  startBatch();
  EXPECT_FALSE(delegate.applicationShouldTerminate());
  delegate.terminate();
  EXPECT_TRUE(delegate.windowController->isVisible());
  EXPECT_EQ(delegate.windowController->tabs().currentIndex(), 1);
  EXPECT_FALSE(delegate.windowController->close());
  EXPECT_TRUE(waitUntil([&] { return delegate.windowController->batch().stopButton->hasFocus(); }));
  EXPECT_TRUE(panels.alerts.empty());
  gate.open();
  finishBatch();
  EXPECT_TRUE(delegate.applicationShouldTerminate());
  EXPECT_TRUE(delegate.windowController->close());
}

TEST_F(Application, StopsItsBatchAndEndsWithItAfterASignal) {
  Gate gate;
  startBatch();
  delegate.endBySignal(SIGTERM);
  QCoreApplication::processEvents();
  EXPECT_TRUE(delegate.windowController->isVisible()) << "files in progress finish";
  EXPECT_FALSE(delegate.windowController->batch().stopButton->isEnabled());
  gate.open();
  finishBatch();
  EXPECT_FALSE(delegate.windowController->isVisible());
}

TEST_F(Application, EndsAtOnceAfterASignalWithoutABatch) {
  delegate.endBySignal(SIGHUP);
  EXPECT_FALSE(delegate.windowController->isVisible());
}

TEST_F(Application, FindsItsFolderOutputRefusedWithoutAFolder) {
  delegate.showSettings();
  delegate.settingsController->output->setCurrentIndex(1);
  delegate.windowController->batch().setInput(photographs.path("p-1.dng").parent_path());
  EXPECT_EQ(delegate.windowController->batch().outputLabel->stringValue(), "No custom output folder selected");
  delegate.windowController->batch().startBatch();
  EXPECT_FALSE(delegate.windowController->isProcessing());
  EXPECT_EQ(panels.lastAlert(),
            "The saved output folder needs permission again. Choose it in Settings or choose an output folder for "
            "this batch.");
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
}

TEST_F(Application, EndsWithItsLastWindow) {
  EXPECT_TRUE(delegate.applicationShouldTerminateAfterLastWindowClosed());
  EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
}

TEST_F(Application, OffersASavedProfileInTheBatchTabAtOnce) {
  CameraProfile saved = CameraProfile::empty("New body", DNGReader::readMetadata(photographs.path("p-1.dng")));
  ProfileStore::save(saved);
  emit delegate.windowController->calibration().profileSaved(saved.id);
  EXPECT_EQ(delegate.windowController->batch().profilePopUp->count(), 2);
  EXPECT_EQ(delegate.windowController->batch().profilePopUp->currentText(), "New body");
  EXPECT_EQ(delegate.windowController->batch().statusLabel->stringValue(), "Choose an input folder.");
}

TEST_F(Application, ShowsItsVersion) {
  QApplication::setApplicationVersion("1.2.3");
  delegate.showAbout();
  EXPECT_EQ(panels.lastAlert(), "Tessaly\nVersion 1.2.3");
}

TEST_F(Application, KeepsItsTabAndPlace) {
  delegate.windowController->tabs().setCurrentIndex(1);
  delegate.windowController->close();
  AppDelegate next(panels);
  next.applicationDidFinishLaunching();
  EXPECT_EQ(next.windowController->tabs().currentIndex(), 1);
  EXPECT_EQ(next.windowController->size(), delegate.windowController->size());
}

}  // namespace
}  // namespace tessaly::tests
