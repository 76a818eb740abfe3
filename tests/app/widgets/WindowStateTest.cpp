#include "app/support/AppTest.h"
#include "app/widgets/WindowState.h"

#include <string>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

const QRect first(0, 0, 1600, 1000);
const QRect second(1600, 0, 1280, 1024);
constexpr QSize usual(1280, 820);

TEST(WindowPlace, IsTheOneItHadOnAnyScreen) {
  for (const QRect& stored : {QRect(10, 20, 1100, 800), QRect(1700, 100, 1100, 800)})
    EXPECT_EQ(placedWindow(stored, usual, {first, second}), stored);
}

TEST(WindowPlace, IsTheMiddleOfTheFirstScreenTheFirstTime) {
  const QRect placed = placedWindow(QRect(), usual, {first, second});
  EXPECT_EQ(placed.size(), usual);
  EXPECT_EQ(placed.center(), first.center());
}

TEST(WindowPlace, IsTheMiddleWhenItsScreenIsGone) {
  const QRect placed = placedWindow(QRect(1700, 100, 1100, 800), usual, {first});
  EXPECT_EQ(placed.size(), QSize(1100, 800));
  EXPECT_EQ(placed.center(), first.center());
}

TEST(WindowPlace, IsTheMiddleAsSoonAsOnePixelIsOutside) {
  const QRect inside(500, 200, 1100, 800);
  EXPECT_EQ(placedWindow(inside, usual, {first}), inside);
  EXPECT_NE(placedWindow(inside.translated(1, 0), usual, {first}), inside.translated(1, 0));
  EXPECT_NE(placedWindow(inside.translated(0, 1), usual, {first}), inside.translated(0, 1));
}

TEST(WindowPlace, IsNeverLargerThanTheScreen) {
  EXPECT_EQ(placedWindow(QRect(0, 0, 3000, 2000), usual, {first}), first);
}

TEST(WindowPlace, NeedsNoScreen) {
  EXPECT_EQ(placedWindow(QRect(), usual, {}).size(), usual);
}

class WindowStateStore : public AppTest {};

TEST_F(WindowStateStore, KeepsWhatItIsGiven) {
  EXPECT_EQ(WindowState::value("nothing", 7).toInt(), 7);
  WindowState::setValue("something", QRect(1, 2, 3, 4));
  EXPECT_EQ(WindowState::value("something").toRect(), QRect(1, 2, 3, 4));
}

TEST_F(WindowStateStore, IsNoneOfThePreferences) {
  WindowState::setValue("something", "kept");
  AppPreferences::shared().reset();
  EXPECT_EQ(WindowState::value("something").toString(), "kept");
}

TEST_F(WindowStateStore, KeepsTheFolderOfEachPurpose) {
  const TemporaryFolder folder;
  WindowState::setPanelFolder("source", folder.path());
  EXPECT_EQ(WindowState::panelFolder("source"), folder.path());
  EXPECT_EQ(WindowState::panelFolder("never used"), std::nullopt);
}

TEST_F(WindowStateStore, KeepsAFolderWhoseNameIsNoText) {
  const TemporaryFolder folder;
  const fs::path odd = folder.path() / "M\xff\xfe";
  fs::create_directory(odd);
  WindowState::setPanelFolder("source", odd);
  EXPECT_EQ(WindowState::panelFolder("source"), odd);
}

TEST_F(WindowStateStore, ForgetsAFolderThatIsGone) {
  const TemporaryFolder folder;
  WindowState::setPanelFolder("source", folder.path() / "removed");
  EXPECT_EQ(WindowState::panelFolder("source"), std::nullopt);
}

}  // namespace
}  // namespace tessaly::tests
