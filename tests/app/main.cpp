// Runs the tests of the window without a screen, with settings and user folders of its own.
#include "app/widgets/Style.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <QApplication>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const tessaly::tests::TemporaryFolder home;
  setenv("TESSALY_HOME", home.path().c_str(), 1);
  setenv("LANGUAGE", "en", 1);
  if (getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication application(argc, argv);
  QApplication::setStyle(new tessaly::Style);
  return RUN_ALL_TESTS();
}
