#include "preferences/SettingsFile.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;

class SettingsFileTest : public testing::Test {
 protected:
  [[nodiscard]] std::string text() const { return tests::readText(path); }

  tests::TemporaryFolder folder;
  fs::path path = folder / "settings.json";
  SettingsFile file{path};
};

TEST_F(SettingsFileTest, HasALineForEachKey) {
  file.setValue("b", {1, 2});
  file.setValue("a", "é");
  EXPECT_EQ(text(), "{\n  \"a\": \"é\",\n  \"b\": [1,2]\n}\n");
  file.setValue("a", nullptr);
  file.setValue("b", nullptr);
  EXPECT_EQ(text(), "{}\n");
}

TEST_F(SettingsFileTest, IsMadeByTheFirstChangeTogetherWithItsFolder) {
  SettingsFile deep(folder / "one" / "two" / "settings.json");
  EXPECT_EQ(deep.value("key"), json());
  EXPECT_FALSE(fs::exists(folder / "one"));
  deep.setValue("key", true);
  EXPECT_EQ(SettingsFile(folder / "one" / "two" / "settings.json").value("key"), true);
}

TEST_F(SettingsFileTest, KeepsWhatNobodyKnows) {
  tests::writeText(path, R"({"later": {"depth": [1.5, null, "x"]}, "huge": 18446744073709551615, "mine": 1})");
  file.setValue("mine", 2);
  EXPECT_EQ(json::parse(text()),
            json::parse(R"({"later": {"depth": [1.5, null, "x"]}, "huge": 18446744073709551615, "mine": 2})"));
}

TEST_F(SettingsFileTest, IsNotWrittenWhenNothingChanges) {
  const std::string spaced = "{ \"a\" :   1 }";
  tests::writeText(path, spaced);
  file.setValue("a", 1);
  file.setValue("b", nullptr);
  file.removeAll("other");
  EXPECT_EQ(text(), spaced);
}

TEST_F(SettingsFileTest, ShowsAtOnceWhatOthersWrite) {
  file.setValue("a", 1);
  for (int number = 2; number < 9; ++number) {
    tests::writeText(path, "{\"a\": " + std::to_string(number) + "}");  // the same length, and hardly later
    EXPECT_EQ(file.value("a"), number);
  }
  fs::remove(path);
  EXPECT_EQ(file.value("a"), json());
}

TEST_F(SettingsFileTest, LosesNothingWhenSeveralChangeIt) {
  std::vector<std::thread> threads;
  for (int writer = 0; writer < 3; ++writer) {
    threads.emplace_back([this, writer] {
      SettingsFile own(path);
      for (int i = 0; i < 20; ++i)
        own.setValue(std::to_string(writer) + "." + std::to_string(i), i);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(json::parse(text()).size(), 60U);
}

TEST_F(SettingsFileTest, RemovesTheKeysThatBeginLikeThis) {
  tests::writeText(path, R"({"a.x": 1, "a.y": 2, "a": 3, "b.a.": 4})");
  file.removeAll("a.");
  EXPECT_EQ(json::parse(text()), json::parse(R"({"a": 3, "b.a.": 4})"));
}

TEST_F(SettingsFileTest, GainsOnlyTheKeysThatAreMissing) {
  file.setValue("a", 1);
  EXPECT_TRUE(file.addMissing({{"a", 2}, {"b", 3}}));
  EXPECT_EQ(json::parse(text()), json::parse(R"({"a": 1, "b": 3})"));
}

TEST_F(SettingsFileTest, ThatIsNoObjectIsSetAsideByTheFirstChange) {
  for (const std::string& damaged :
       {std::string("{\"a\": 1,}"), std::string("[1]"), std::string("\0\xff{{", 4), std::string()}) {
    tests::writeText(path, damaged);
    SettingsFile read(path);
    EXPECT_EQ(read.value("a"), json());
    EXPECT_EQ(text(), damaged) << "reading changes nothing";
    read.setValue("b", 1);
    EXPECT_EQ(json::parse(text()), json::parse(R"({"b": 1})"));
    EXPECT_EQ(tests::readText(folder / "settings.json.unreadable"), damaged);
  }
}

TEST_F(SettingsFileTest, HoldsInMemoryWhatCannotBeWritten) {
  tests::writeText(folder / "place", "a file where the folder should be");
  const fs::path below = folder / "place" / "settings.json";
  SettingsFile blocked(below);
  blocked.setValue("a", 1);
  blocked.setValue("b", 2);
  EXPECT_FALSE(blocked.addMissing({{"c", 3}}));
  EXPECT_EQ(blocked.value("a"), 1);
  EXPECT_EQ(blocked.value("c"), 3);
  fs::remove(folder / "place");
  blocked.setValue("b", nullptr);
  EXPECT_EQ(json::parse(tests::readText(below)), json::parse(R"({"a": 1, "c": 3})"));
}

TEST_F(SettingsFileTest, StaysBehindALink) {
  tests::writeText(folder / "real.json", "{\"a\": 1}");
  fs::create_symlink("real.json", path);
  file.setValue("a", 2);
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(json::parse(tests::readText(folder / "real.json")), json::parse(R"({"a": 2})"));
}

TEST_F(SettingsFileTest, WritesAReplacementForWhatIsNoText) {
  file.setValue("a", "\xff!");
  EXPECT_EQ(SettingsFile(path).value("a"), "\uFFFD!");
}

TEST(SettingsBytes, AreATextWhereTheyCanBe) {
  EXPECT_EQ(valueOfBytes("/照片"), json("/照片"));
  EXPECT_EQ(valueOfBytes("a\xff"), json::parse(R"({"bytes": [97, 255]})"));
}

TEST(SettingsBytes, AreTheSameAfterwards) {
  for (const std::string& bytes :
       {std::string(), std::string("/a b"), std::string("\0\xff\x80", 3), std::string("x\0y", 3)})
    EXPECT_EQ(bytesOfValue(json::parse(valueOfBytes(bytes).dump())), bytes);
}

TEST(SettingsBytes, AreNoOtherValue) {
  for (const char* other : {"null", "true", "7", "[97]", "{}", R"({"bytes": "x"})", R"({"bytes": [256]})",
                            R"({"bytes": [-1]})", R"({"bytes": [1.5]})"}) {
    EXPECT_EQ(bytesOfValue(json::parse(other)), std::nullopt) << other;
  }
}

}  // namespace
}  // namespace tessaly
