#include "app/EarlierSettings.h"
#include "app/support/AppTest.h"
#include "app/widgets/StoredValue.h"
#include "preferences/SettingsFile.h"
#include "support/FileBytes.h"

#include <nlohmann/json.hpp>

#include <QRect>
#include <string>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;

class EarlierSettings : public testing::Test {
 protected:
  void takeOver() { takeOverEarlierSettings(ini, file); }

  TemporaryFolder folder;
  fs::path ini = folder / "Tessaly.ini";
  fs::path file = folder / "Tessaly.json";
};

TEST_F(EarlierSettings, BecomePresentOnesWithTheirTypes) {
  writeText(ini,
            "[General]\n"
            "Tessaly.settings.language=fr\n"
            "Tessaly.settings.workers=3\n"
            "Tessaly.settings.saveLog=false\n"
            "Tessaly.settings.customOutput=true\n"
            "Tessaly.settings.outputPath=\"/Fotos/\\x7167\\x7247, alle\"\n"
            "Tessaly.settings.outputBookmark=@ByteArray(/Fotos/M\\xff)\n"
            "Tessaly.window.place=@Rect(20 30 1280 820)\n"
            "Tessaly.window.tab=1\n"
            "Tessaly.window.tableColumns=90, 120, 80\n"
            "Tessaly.window.splitter=@ByteArray(\\0\\0\\0\\xff)\n"
            "Tessaly.window.nothing=@Invalid()\n");
  takeOver();
  const AppPreferences preferences(file);
  EXPECT_EQ(preferences.language(), AppLanguage::french);
  EXPECT_EQ(preferences.workers(), 3);
  EXPECT_FALSE(preferences.saveLog());
  EXPECT_TRUE(preferences.useCustomOutput());
  EXPECT_EQ(preferences.outputPath(), "/Fotos/照片, alle");
  EXPECT_EQ(preferences.outputBookmark(), "/Fotos/M\xff");
  const json all = json::parse(readText(file));
  EXPECT_EQ(shownValue(all["Tessaly.window.place"]).toRect(), QRect(20, 30, 1280, 820));
  EXPECT_EQ(all["Tessaly.window.tab"], 1);
  EXPECT_EQ(all["Tessaly.window.tableColumns"], json({90, 120, 80}));
  EXPECT_EQ(shownValue(all["Tessaly.window.splitter"]).toByteArray(), QByteArray("\0\0\0\xff", 4));
  EXPECT_EQ(all.size(), 10U);
}

TEST_F(EarlierSettings, AreTakenOverOnce) {
  writeText(ini, "[General]\nTessaly.settings.workers=3\n");
  takeOver();
  EXPECT_FALSE(fs::exists(ini));
  EXPECT_TRUE(fs::exists(folder / "Tessaly.ini.earlier"));
  fs::remove(file);
  takeOver();
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(EarlierSettings, NeverReplacePresentOnes) {
  writeText(ini, "[General]\nTessaly.settings.workers=3\nTessaly.settings.language=fr\n");
  writeText(file, R"({"Tessaly.settings.workers": 1})");
  takeOver();
  EXPECT_EQ(AppPreferences(file).workers(), 1);
  EXPECT_EQ(AppPreferences(file).language(), AppLanguage::french);
}

TEST_F(EarlierSettings, StayWhereTheyAreAsLongAsTheyCannotBeWritten) {
  writeText(ini, "[General]\nTessaly.settings.workers=3\n");
  fs::create_directory(folder / "Tessaly.json.lock");
  takeOver();
  EXPECT_TRUE(fs::exists(ini));
  EXPECT_FALSE(fs::exists(file));
}

}  // namespace
}  // namespace tessaly::tests
