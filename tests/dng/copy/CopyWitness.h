// What other people's programs say of a copy and of its source: the fixture of the witnesses.
#pragma once

#include "dng/WriterFixture.h"
#include "support/Program.h"

#include <nlohmann/json.hpp>

#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace tessaly::tests {

/// Every tag of every directory by group and name; what belongs to the file and not to the image is left out.
[[nodiscard]] inline nlohmann::json tagsOf(const std::filesystem::path& file) {
  const std::string text = outputOf("exiftool -j -a -u -G1 -n " + quoted(file));
  nlohmann::json tags = nlohmann::json::parse(text).at(0);
  for (auto tag = tags.begin(); tag != tags.end();) {
    const std::string& name = tag.key();
    const bool isOfTheFile = name == "SourceFile" || name.starts_with("System:") || name.starts_with("ExifTool:");
    tag = isOfTheFile ? tags.erase(tag) : std::next(tag);
  }
  return tags;
}

[[nodiscard]] inline std::set<std::string> differences(const nlohmann::json& source, const nlohmann::json& copy) {
  std::set<std::string> names;
  for (const auto& [name, value] : source.items()) {
    if (!copy.contains(name) || copy.at(name) != value) names.insert(name);
  }
  for (const auto& [name, value] : copy.items()) {
    if (!source.contains(name)) names.insert(name);
  }
  return names;
}

[[nodiscard]] inline std::multiset<std::string> linesOf(const std::string& text) {
  std::multiset<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.insert(line);
  return lines;
}

[[nodiscard]] inline std::multiset<std::string> newLines(const std::string& before, const std::string& after) {
  std::multiset<std::string> fresh = linesOf(after);
  for (const std::string& line : linesOf(before)) {
    const auto found = fresh.find(line);
    if (found != fresh.end()) fresh.erase(found);
  }
  return fresh;
}

/// What the program prints on standard error, without the name of the file.
[[nodiscard]] inline std::string complaints(const std::string& program, const std::filesystem::path& file) {
  std::string text = outputOf("(cd " + quoted(file.parent_path()) + " && " + program + " " + quoted(file.filename()) +
                              " 3>&1 >/dev/null 2>&3)");
  for (std::size_t at = text.find(file.filename()); at != std::string::npos; at = text.find(file.filename()))
    text.erase(at, file.filename().native().size());
  return text;
}

class CopyWitness : public WriterFixture {
 protected:
  void SetUp() override {
    if (!isInstalled("exiftool") || !isInstalled("tiffinfo")) GTEST_SKIP() << "exiftool or tiffinfo is not installed";
  }

  void expectNoNewComplaints() const {
    const auto warnings = [](const std::filesystem::path& file) {
      return outputOf("exiftool -validate -warning -error -a -m " + quoted(file));
    };
    EXPECT_THAT(newLines(warnings(source), warnings(destination)), testing::IsEmpty());
    EXPECT_THAT(newLines(complaints("tiffinfo", source), complaints("tiffinfo", destination)), testing::IsEmpty());
  }

  [[nodiscard]] std::set<std::string> changedTags() const { return differences(tagsOf(source), tagsOf(destination)); }

  [[nodiscard]] static tools::DNGBuilder camera() {
    return tools::DNGBuilder()
        .size(40, 30)
        .bits(12)
        .samples(noise(40 * 30, 8))
        .make("Maker")
        .model("Model")
        .serial("0815")
        .black(10)
        .white(4000)
        .activeArea(2, 2, 28, 38)
        .crop(0, 0, 30, 20)
        .exif(200, {{1, 125}}, "0815");
  }
};

}  // namespace tessaly::tests
