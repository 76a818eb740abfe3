// The settings, written as files by hand and read through AppPreferences, and the other way round.
#include "preferences/AppPreferences.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace tessaly {
namespace {

using testing::HasSubstr;
using testing::Not;

class AppPreferencesTest : public testing::Test {
 protected:
  void store(const std::string& lines) { tests::writeText(file, "[General]\n" + lines); }

  /// Settings that were just read from a file of their own: a file that keeps its size and time is not read again.
  [[nodiscard]] AppPreferences fresh(const std::string& lines) {
    file = folder / ("settings/" + std::to_string(++files) + ".ini");
    store(lines);
    return AppPreferences(file);
  }

  [[nodiscard]] std::string stored() const { return tests::readText(file); }

  tests::TemporaryFolder folder;
  std::filesystem::path file = folder / "settings" / "Tessaly.ini";
  int files = 0;
  AppPreferences preferences{file};

  void SetUp() override { std::filesystem::create_directory(folder / "settings"); }
};

TEST_F(AppPreferencesTest, HaveTheirDefaultsWithoutAFile) {
  EXPECT_EQ(preferences.language(), AppLanguage::system);
  EXPECT_EQ(preferences.appearance(), AppAppearance::system);
  EXPECT_EQ(preferences.workers(), 0);
  EXPECT_EQ(preferences.existingOutputPolicy(), ExistingOutputPolicy::skip);
  EXPECT_TRUE(preferences.saveLog());
  EXPECT_TRUE(preferences.openAfterCompletion());
  EXPECT_FALSE(preferences.useCustomOutput());
  EXPECT_EQ(preferences.outputBookmark(), std::nullopt);
  EXPECT_EQ(preferences.outputPath(), "");
  EXPECT_FALSE(std::filesystem::exists(file)) << "reading writes nothing";
}

TEST_F(AppPreferencesTest, AreStoredUnderTheirFullKeysAtOnce) {
  preferences.setLanguage(AppLanguage::chinese);
  preferences.setAppearance(AppAppearance::dark);
  preferences.setWorkers(3);
  preferences.setExistingOutputPolicy(ExistingOutputPolicy::numberedCopy);
  preferences.setSaveLog(false);
  preferences.setOpenAfterCompletion(false);
  preferences.setUseCustomOutput(true);
  preferences.setOutputPath("/Fotos/Ausgabe");
  for (const char* line : {"Tessaly.settings.language=zh-Hans\n", "Tessaly.settings.appearance=dark\n",
                           "Tessaly.settings.workers=3\n", "Tessaly.settings.collision=numberedCopy\n",
                           "Tessaly.settings.saveLog=false\n", "Tessaly.settings.autoOpen=false\n",
                           "Tessaly.settings.customOutput=true\n", "Tessaly.settings.outputPath=/Fotos/Ausgabe\n"}) {
    EXPECT_THAT(stored(), HasSubstr(line));
  }
}

TEST_F(AppPreferencesTest, ReadBackWhatWasSet) {
  preferences.setLanguage(AppLanguage::french);
  preferences.setAppearance(AppAppearance::light);
  preferences.setWorkers(2);
  preferences.setExistingOutputPolicy(ExistingOutputPolicy::numberedCopy);
  preferences.setSaveLog(false);
  preferences.setOpenAfterCompletion(false);
  preferences.setUseCustomOutput(true);
  preferences.setOutputPath("/照片/é, “x”=;");
  const AppPreferences others(file);
  const AppPreferences another(file);
  const AppPreferences* const readers[] = {&preferences, &another};
  for (const AppPreferences* reader : readers) {
    EXPECT_EQ(reader->language(), AppLanguage::french);
    EXPECT_EQ(reader->appearance(), AppAppearance::light);
    EXPECT_EQ(reader->workers(), 2);
    EXPECT_EQ(reader->existingOutputPolicy(), ExistingOutputPolicy::numberedCopy);
    EXPECT_FALSE(reader->saveLog());
    EXPECT_FALSE(reader->openAfterCompletion());
    EXPECT_TRUE(reader->useCustomOutput());
    EXPECT_EQ(reader->outputPath(), "/照片/é, “x”=;");
  }
}

TEST_F(AppPreferencesTest, SeeWhatAnotherProcessHasWritten) {
  EXPECT_EQ(preferences.workers(), 0);
  store("Tessaly.settings.workers=2\n");
  EXPECT_EQ(preferences.workers(), 2);
  store("Tessaly.settings.workers=1\nTessaly.settings.language=fr\n");
  EXPECT_EQ(preferences.workers(), 1);
  EXPECT_EQ(preferences.language(), AppLanguage::french);
}

TEST_F(AppPreferencesTest, ClampWorkersWhenRead) {
  const std::pair<const char*, std::int64_t> rows[] = {
      {"7", 4},   {"-3", 0},      {"0", 0},    {"4", 4},   {"5", 4},   {"2.9", 2},      {"99999999999999999999", 4},
      {"two", 0}, {"3 files", 0}, {"true", 0}, {"nan", 0}, {"inf", 0}, {"\"1, 2\"", 0}, {"1, 2", 0},
      {"", 0}};
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(fresh(std::string("Tessaly.settings.workers=") + text + "\n").workers(), expected) << text;
  }
}

TEST_F(AppPreferencesTest, ClampWorkersWhenWritten) {
  preferences.setWorkers(9);
  EXPECT_THAT(stored(), HasSubstr("Tessaly.settings.workers=4\n"));
  preferences.setWorkers(-1);
  EXPECT_THAT(stored(), HasSubstr("Tessaly.settings.workers=0\n"));
}

TEST_F(AppPreferencesTest, ReadAnUnknownLanguageOrAppearanceAsSystem) {
  store("Tessaly.settings.language=de\nTessaly.settings.appearance=Dark\n");
  EXPECT_EQ(preferences.language(), AppLanguage::system);
  EXPECT_EQ(preferences.appearance(), AppAppearance::system);
}

TEST_F(AppPreferencesTest, ReadOnlyTheExactPolicy) {
  for (const char* text : {"NumberedCopy", "numberedcopy", "numbered", "1", "true"}) {
    const AppPreferences read = fresh(std::string("Tessaly.settings.collision=") + text + "\n");
    EXPECT_EQ(read.existingOutputPolicy(), ExistingOutputPolicy::skip) << text;
  }
  EXPECT_EQ(fresh("Tessaly.settings.collision=numberedCopy\n").existingOutputPolicy(),
            ExistingOutputPolicy::numberedCopy);
}

TEST_F(AppPreferencesTest, CountABooleanOnlyWhenItIsStoredAsOne) {
  for (const char* text : {"no", "0", "False", "FALSE", "", "off", "\"false, false\""}) {
    const AppPreferences read =
        fresh(std::string("Tessaly.settings.saveLog=") + text + "\nTessaly.settings.autoOpen=" + text + "\n");
    EXPECT_TRUE(read.saveLog()) << text;
    EXPECT_TRUE(read.openAfterCompletion()) << text;
  }
  for (const char* text : {"yes", "1", "True", "TRUE", ""}) {
    EXPECT_FALSE(fresh(std::string("Tessaly.settings.customOutput=") + text + "\n").useCustomOutput()) << text;
  }
  const AppPreferences read =
      fresh("Tessaly.settings.saveLog=false\nTessaly.settings.autoOpen=false\nTessaly.settings.customOutput=true\n");
  EXPECT_FALSE(read.saveLog());
  EXPECT_FALSE(read.openAfterCompletion());
  EXPECT_TRUE(read.useCustomOutput());
}

TEST_F(AppPreferencesTest, KeepTheBookmarkByteForByte) {
  for (const std::string& bookmark : {std::string("/a b/\xff\xfe"), std::string("@x\0y\n", 5), std::string()}) {
    preferences.setOutputBookmark(bookmark);
    EXPECT_EQ(preferences.outputBookmark(), bookmark);
    EXPECT_EQ(AppPreferences(file).outputBookmark(), bookmark);
  }
}

TEST_F(AppPreferencesTest, RemoveTheBookmarksKeyWhenThereIsNone) {
  preferences.setOutputBookmark("/results");
  EXPECT_THAT(stored(), HasSubstr("outputBookmark"));
  preferences.setOutputBookmark(std::nullopt);
  EXPECT_THAT(stored(), Not(HasSubstr("outputBookmark")));
  EXPECT_EQ(preferences.outputBookmark(), std::nullopt);
}

TEST_F(AppPreferencesTest, TakeOnlyDataForABookmark) {
  store("Tessaly.settings.outputBookmark=/results\n");
  EXPECT_EQ(preferences.outputBookmark(), std::nullopt);
}

TEST_F(AppPreferencesTest, ResetOnlyTheirOwnKeys) {
  store("Tessaly.other=1\nTessaly.window.size=2\nTessaly.settings=3\n[Group]\nTessaly.settings.workers=4\n");
  preferences.setLanguage(AppLanguage::french);
  preferences.setWorkers(3);
  preferences.setSaveLog(false);
  preferences.setOutputBookmark("/results");
  preferences.reset();
  EXPECT_EQ(preferences.language(), AppLanguage::system);
  EXPECT_EQ(preferences.workers(), 0);
  EXPECT_TRUE(preferences.saveLog());
  EXPECT_EQ(preferences.outputBookmark(), std::nullopt);
  EXPECT_THAT(stored(), HasSubstr("Tessaly.other=1\n"));
  EXPECT_THAT(stored(), HasSubstr("Tessaly.window.size=2\n"));
  EXPECT_THAT(stored(), HasSubstr("Tessaly.settings=3\n"));
  EXPECT_THAT(stored(), HasSubstr("[Group]\nTessaly.settings.workers=4\n"));
  EXPECT_THAT(stored(), Not(HasSubstr("Tessaly.settings.language")));
}

TEST_F(AppPreferencesTest, TolerateAFileThatIsNoSettingsFile) {
  tests::writeText(file, std::string("\0\xff[[[=\n\nworkers", 15));
  EXPECT_EQ(preferences.workers(), 0);
  EXPECT_TRUE(preferences.saveLog());
}

TEST_F(AppPreferencesTest, TellObserversOnTheCallingThread) {
  std::thread::id seen;
  int count = 0;
  const auto registration = preferences.observe([&] {
    seen = std::this_thread::get_id();
    ++count;
  });
  preferences.setWorkers(1);
  EXPECT_EQ(count, 0) << "a setter does not notify by itself";
  std::thread other([&] { preferences.notify(); });
  const std::thread::id expected = other.get_id();
  other.join();
  EXPECT_EQ(count, 1);
  EXPECT_EQ(seen, expected);
}

TEST_F(AppPreferencesTest, StopTellingAnObserverWhoseRegistrationEnded) {
  int first = 0;
  int second = 0;
  AppPreferences::Registration secondRegistration;
  const auto firstRegistration = preferences.observe([&] {
    ++first;
    secondRegistration.reset();
  });
  secondRegistration = preferences.observe([&] { ++second; });
  preferences.notify();
  preferences.notify();
  EXPECT_EQ(first, 2);
  EXPECT_EQ(second, 0);
}

TEST_F(AppPreferencesTest, AreSafeFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (int i = 1; i <= 4; ++i) {
    threads.emplace_back([this, i] {
      for (int round = 0; round < 20; ++round) {
        preferences.setWorkers(i);
        EXPECT_GE(preferences.workers(), 1);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST(AutomaticWorkers, AreLimitedByMemoryThenByProcessors) {
  constexpr std::uint64_t gibibyte = 1'073'741'824;
  EXPECT_EQ(AppPreferences::automaticWorkers(8 * gibibyte - 1, 10), 1);
  EXPECT_EQ(AppPreferences::automaticWorkers(8 * gibibyte, 1), 1);
  EXPECT_EQ(AppPreferences::automaticWorkers(8 * gibibyte, 8), 2);
  EXPECT_EQ(AppPreferences::automaticWorkers(16 * gibibyte - 1, 8), 2);
  EXPECT_EQ(AppPreferences::automaticWorkers(16 * gibibyte, 3), 3);
  EXPECT_EQ(AppPreferences::automaticWorkers(16 * gibibyte, 4), 4);
  EXPECT_EQ(AppPreferences::automaticWorkers(32 * gibibyte, 12), 4);
  EXPECT_EQ(AppPreferences::automaticWorkers(32 * gibibyte, 0), 1);
  EXPECT_EQ(AppPreferences::automaticWorkers(0, -5), 1);
}

TEST(AutomaticWorkers, OfThisMachineAreOneToFour) {
  EXPECT_GE(AppPreferences::automaticWorkers(), 1);
  EXPECT_LE(AppPreferences::automaticWorkers(), 4);
}

TEST(RawValues, OfAppearanceAndPolicyAreExact) {
  EXPECT_EQ(rawValue(AppAppearance::system), "system");
  EXPECT_EQ(rawValue(AppAppearance::light), "light");
  EXPECT_EQ(rawValue(AppAppearance::dark), "dark");
  EXPECT_EQ(appAppearance("light"), AppAppearance::light);
  EXPECT_FALSE(appAppearance("Light"));
  EXPECT_EQ(rawValue(ExistingOutputPolicy::skip), "skip");
  EXPECT_EQ(existingOutputPolicy("numberedCopy"), ExistingOutputPolicy::numberedCopy);
  EXPECT_FALSE(existingOutputPolicy("overwrite"));
}

}  // namespace
}  // namespace tessaly
