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
  /// The file as somebody else has written it: these members of its object.
  void store(const std::string& members) { tests::writeText(file, "{" + members + "}"); }

  [[nodiscard]] std::string stored() const { return tests::readText(file); }

  tests::TemporaryFolder folder;
  std::filesystem::path file = folder / "settings" / "Tessaly.json";
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
  EXPECT_EQ(stored(),
            "{\n"
            "  \"Tessaly.settings.appearance\": \"dark\",\n"
            "  \"Tessaly.settings.autoOpen\": false,\n"
            "  \"Tessaly.settings.collision\": \"numberedCopy\",\n"
            "  \"Tessaly.settings.customOutput\": true,\n"
            "  \"Tessaly.settings.language\": \"zh-Hans\",\n"
            "  \"Tessaly.settings.outputPath\": \"/Fotos/Ausgabe\",\n"
            "  \"Tessaly.settings.saveLog\": false,\n"
            "  \"Tessaly.settings.workers\": 3\n"
            "}\n");
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
  store(R"("Tessaly.settings.workers": 2)");
  EXPECT_EQ(preferences.workers(), 2);
  store(R"("Tessaly.settings.workers": 1, "Tessaly.settings.language": "fr")");
  EXPECT_EQ(preferences.workers(), 1);
  EXPECT_EQ(preferences.language(), AppLanguage::french);
}

TEST_F(AppPreferencesTest, ClampWorkersWhenRead) {
  const std::pair<const char*, std::int64_t> rows[] = {{"7", 4},
                                                       {"-3", 0},
                                                       {"0", 0},
                                                       {"4", 4},
                                                       {"5", 4},
                                                       {"2.9", 2},
                                                       {"99999999999999999999", 4},
                                                       {"-1e300", 0},
                                                       {"1e300", 4},
                                                       {"\"two\"", 0},
                                                       {"\"3\"", 0},
                                                       {"true", 0},
                                                       {"null", 0},
                                                       {"[1, 2]", 0},
                                                       {"{\"a\": 1}", 0}};
  for (const auto& [text, expected] : rows) {
    store(std::string(R"("Tessaly.settings.workers": )") + text);
    EXPECT_EQ(preferences.workers(), expected) << text;
  }
}

TEST_F(AppPreferencesTest, ClampWorkersWhenWritten) {
  preferences.setWorkers(9);
  EXPECT_THAT(stored(), HasSubstr(R"("Tessaly.settings.workers": 4)"));
  preferences.setWorkers(-1);
  EXPECT_THAT(stored(), HasSubstr(R"("Tessaly.settings.workers": 0)"));
}

TEST_F(AppPreferencesTest, ReadAnUnknownLanguageOrAppearanceAsSystem) {
  for (const char* text : {"\"de\"", "\"Dark\"", "\"\"", "1", "true", "[\"fr\", \"dark\"]", "null"}) {
    store(std::string(R"("Tessaly.settings.language": )") + text + R"(, "Tessaly.settings.appearance": )" + text);
    EXPECT_EQ(preferences.language(), AppLanguage::system) << text;
    EXPECT_EQ(preferences.appearance(), AppAppearance::system) << text;
  }
}

TEST_F(AppPreferencesTest, ReadOnlyTheExactPolicy) {
  for (const char* text : {"\"NumberedCopy\"", "\"numberedcopy\"", "\"numbered\"", "1", "true"}) {
    store(std::string(R"("Tessaly.settings.collision": )") + text);
    EXPECT_EQ(preferences.existingOutputPolicy(), ExistingOutputPolicy::skip) << text;
  }
  store(R"("Tessaly.settings.collision": "numberedCopy")");
  EXPECT_EQ(preferences.existingOutputPolicy(), ExistingOutputPolicy::numberedCopy);
}

TEST_F(AppPreferencesTest, CountABooleanOnlyWhenItIsStoredAsOne) {
  for (const char* text : {"\"no\"", "0", "\"false\"", "\"\"", "null", "[false]"}) {
    store(std::string(R"("Tessaly.settings.saveLog": )") + text + R"(, "Tessaly.settings.autoOpen": )" + text);
    EXPECT_TRUE(preferences.saveLog()) << text;
    EXPECT_TRUE(preferences.openAfterCompletion()) << text;
  }
  for (const char* text : {"\"yes\"", "1", "\"true\"", "\"\"", "null", "[true]"}) {
    store(std::string(R"("Tessaly.settings.customOutput": )") + text);
    EXPECT_FALSE(preferences.useCustomOutput()) << text;
  }
  store(
      R"("Tessaly.settings.saveLog": false, "Tessaly.settings.autoOpen": false, "Tessaly.settings.customOutput": true)");
  EXPECT_FALSE(preferences.saveLog());
  EXPECT_FALSE(preferences.openAfterCompletion());
  EXPECT_TRUE(preferences.useCustomOutput());
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
  for (const char* text : {"7", "true", "null", "[47]"}) {
    store(std::string(R"("Tessaly.settings.outputBookmark": )") + text);
    EXPECT_EQ(preferences.outputBookmark(), std::nullopt) << text;
  }
}

TEST_F(AppPreferencesTest, ResetOnlyTheirOwnKeys) {
  store(R"("Tessaly.other": 1, "Tessaly.window.size": 2, "Tessaly.settings": 3)");
  preferences.setLanguage(AppLanguage::french);
  preferences.setWorkers(3);
  preferences.setSaveLog(false);
  preferences.setOutputBookmark("/results");
  preferences.reset();
  EXPECT_EQ(preferences.language(), AppLanguage::system);
  EXPECT_EQ(preferences.workers(), 0);
  EXPECT_TRUE(preferences.saveLog());
  EXPECT_EQ(preferences.outputBookmark(), std::nullopt);
  EXPECT_EQ(stored(), "{\n  \"Tessaly.other\": 1,\n  \"Tessaly.settings\": 3,\n  \"Tessaly.window.size\": 2\n}\n");
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
