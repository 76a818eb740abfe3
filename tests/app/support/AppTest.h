// What every test of the window starts from: fresh settings in English, no profiles, and no alert answered.
#pragma once

#include "app/support/FakePanels.h"
#include "preferences/AppPreferences.h"
#include "profile/CameraProfile.h"
#include "store/ProfileStore.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <filesystem>
#include <functional>
#include <string>

namespace tessaly::tests {

/// Lets the window work until `holds`; false when it does not within two minutes, which no machine needs.
[[nodiscard]] inline bool waitUntil(const std::function<bool()>& holds) {
  constexpr int patience = 120'000;
  QElapsedTimer timer;
  timer.start();
  while (!holds() && timer.elapsed() < patience)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  return holds();
}

inline void type(QLineEdit& field, const char* text) {
  field.clear();
  QTest::keyClicks(&field, QString::fromUtf8(text));
}

class AppTest : public testing::Test {
 protected:
  AppTest() {
    std::filesystem::remove_all(ProfileStore::directory());
    AppPreferences::shared().reset();
    AppPreferences::shared().setLanguage(AppLanguage::english);
  }

  /// Changes the language as the settings window does.
  static void speak(AppLanguage language) {
    AppPreferences::shared().setLanguage(language);
    AppPreferences::shared().notify();
  }

  FakePanels panels;
};

}  // namespace tessaly::tests
