// Every text that the code asks a translation for has one: the literals in L("…") and LF("…"), wherever they stand, and
// in sentence("…"), which makes what is translated where it is shown.
#include "localization/Localization.h"
#include "support/FileBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

bool isKey(const std::string& text) {
  return Localization::findEntry([&text](const Localization::Entry& entry) { return entry.english() == text; });
}

/// The literals that are the first argument of a lookup, adjacent ones joined.
std::vector<std::string> keysIn(const std::string& source) {
  static const std::regex lookup(R"re(\b(?:LF?|sentence)\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re");
  static const std::regex literal(R"re("((?:[^"\\]|\\.)*)")re");
  std::vector<std::string> keys;
  for (auto call = std::sregex_iterator(source.begin(), source.end(), lookup); call != std::sregex_iterator(); ++call) {
    const std::string arguments = (*call)[1];
    std::string key;
    for (auto part = std::sregex_iterator(arguments.begin(), arguments.end(), literal); part != std::sregex_iterator();
         ++part) {
      key += (*part)[1];
    }
    keys.push_back(std::regex_replace(key, std::regex(R"(\\n)"), "\n"));
  }
  return keys;
}

TEST(Keys, AreFoundInTheCode) {
  EXPECT_EQ(keysIn("x = L(\"a\") + LF(\n  \"b \"\n \"c\\n\", {1}) + CELL(\"d\") + sentence(\"%d e\", 2);"),
            (std::vector<std::string>{"a", "b c\n", "%d e"}));
}

TEST(Keys, AllStandInTheTable) {
  std::size_t count = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(fs::path(TESSALY_SOURCE_FOLDER) / "src")) {
    if (entry.path().extension() != ".cpp") continue;
    for (const std::string& key : keysIn(tests::readText(entry.path()))) {
      EXPECT_TRUE(isKey(key)) << key << "\nin " << entry.path().filename();
      ++count;
    }
  }
  EXPECT_GT(count, 30U);
}

}  // namespace
}  // namespace tessaly
