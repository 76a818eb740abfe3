// Programs of other people as witnesses: a copy says the same as its source, and nobody complains about it who does not
// complain about the source.
#include "WriterFixture.h"
#include "support/Program.h"
#include "support/RealFiles.h"

#include <nlohmann/json.hpp>

#include <set>
#include <sstream>

namespace tessaly {
namespace {

using nlohmann::json;
using testing::IsEmpty;
using tests::isInstalled;
using tests::noise;
using tests::outputOf;
using tests::quoted;
using tests::readBytes;
using tests::Samples;
using tools::DNGBuilder;

using Path = std::filesystem::path;

// Every tag of every directory by group and name; what belongs to the file and not to the image is left out.
json tagsOf(const Path& file) {
  const std::string text = outputOf("exiftool -j -a -u -G1 -n " + quoted(file));
  json tags = json::parse(text).at(0);
  for (auto tag = tags.begin(); tag != tags.end();) {
    const std::string& name = tag.key();
    const bool isOfTheFile = name == "SourceFile" || name.starts_with("System:") || name.starts_with("ExifTool:");
    tag = isOfTheFile ? tags.erase(tag) : std::next(tag);
  }
  return tags;
}

std::set<std::string> differences(const json& source, const json& copy) {
  std::set<std::string> names;
  for (const auto& [name, value] : source.items()) {
    if (!copy.contains(name) || copy.at(name) != value) names.insert(name);
  }
  for (const auto& [name, value] : copy.items()) {
    if (!source.contains(name)) names.insert(name);
  }
  return names;
}

std::multiset<std::string> linesOf(const std::string& text) {
  std::multiset<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.insert(line);
  return lines;
}

std::multiset<std::string> newLines(const std::string& before, const std::string& after) {
  std::multiset<std::string> fresh = linesOf(after);
  for (const std::string& line : linesOf(before)) {
    const auto found = fresh.find(line);
    if (found != fresh.end()) fresh.erase(found);
  }
  return fresh;
}

// What the program prints on standard error, without the name of the file.
std::string complaints(const std::string& program, const Path& file) {
  std::string text = outputOf("(cd " + quoted(file.parent_path()) + " && " + program + " " + quoted(file.filename()) +
                              " 3>&1 >/dev/null 2>&3)");
  for (std::size_t at = text.find(file.filename()); at != std::string::npos; at = text.find(file.filename()))
    text.erase(at, file.filename().native().size());
  return text;
}

class CopyWitness : public tests::WriterFixture {
 protected:
  void SetUp() override {
    if (!isInstalled("exiftool") || !isInstalled("tiffinfo")) GTEST_SKIP() << "exiftool or tiffinfo is not installed";
  }

  void expectNoNewComplaints() const {
    const auto warnings = [](const Path& file) {
      return outputOf("exiftool -validate -warning -error -a -m " + quoted(file));
    };
    EXPECT_THAT(newLines(warnings(source), warnings(destination)), IsEmpty());
    EXPECT_THAT(newLines(complaints("tiffinfo", source), complaints("tiffinfo", destination)), IsEmpty());
  }

  [[nodiscard]] std::set<std::string> changedTags() const { return differences(tagsOf(source), tagsOf(destination)); }

  [[nodiscard]] static DNGBuilder camera() {
    return DNGBuilder()
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

TEST_F(CopyWitness, FindsTheSameTagsInACopyInTheSourceForm) {
  for (const DNGBuilder& builder : {camera(), camera().inSubIFD(), camera().tiles(16, 16).bigEndian()}) {
    makeSource(builder);
    destination = folder / "copy.dng";
    std::filesystem::remove(destination);
    copy(noise(40 * 30, 12, 2));
    EXPECT_THAT(changedTags(), IsEmpty());
    expectNoNewComplaints();
  }
}

TEST_F(CopyWitness, FindsOnlyTheStorageChangedInAReencodedCopy) {
  Samples table;
  for (int code = 0; code < 256; ++code)
    table.push_back(static_cast<std::uint16_t>(code * 16));
  for (const bool inSubIFD : {false, true}) {
    DNGBuilder builder = camera().linearization(table).rawTag(50972, {1, std::vector<std::int64_t>(16, 3)});
    if (inSubIFD) builder.inSubIFD();
    makeSource(builder);
    destination = folder / ("copy" + std::to_string(inSubIFD) + ".dng");
    copy(noise(40 * 30, 12, 2));
    std::set<std::string> expected;
    for (const char* tag :
         {"BitsPerSample", "FillOrder", "LinearizationTable", "RawImageDigest", "StripByteCounts", "StripOffsets"})
      expected.insert((inSubIFD ? "SubIFD:" : "IFD0:") + std::string(tag));
    EXPECT_EQ(changedTags(), expected);
    expectNoNewComplaints();
  }
}

TEST_F(CopyWitness, FindsOnlyTheExposureChangedInACopyWithASyntheticOne) {
  makeSource(camera());
  copy(noise(40 * 30, 12, 2), false, 0.5);
  EXPECT_EQ(changedTags(), (std::set<std::string>{"Composite:ShutterSpeed", "ExifIFD:ExposureTime"}));
  EXPECT_EQ(tagsOf(destination).at("ExifIFD:ExposureTime"), 0.5);
  expectNoNewComplaints();
}

// Which real files are read at all is what the reader's tests are about.
std::vector<Path> readableRealFiles() {
  std::vector<Path> files = tests::realFiles("accept");
  std::erase_if(files, [](const Path& file) {
    try {
      static_cast<void>(DNGReader::readMetadata(file));
      return false;
    } catch (const DNGError&) {
      return true;
    }
  });
  return files;
}

TEST_F(CopyWitness, FindsTheSameTagsInCopiesOfRealFiles) {
  const std::vector<Path> files = readableRealFiles();
  if (files.empty()) GTEST_SKIP() << "No real files in " << tests::realFilesFolder();
  for (const Path& file : files) {
    source = file;
    Samples samples = samplesOf(file);
    destination = folder / "unchanged" / file.filename();
    copy(samples);
    EXPECT_TRUE(readBytes(destination) == readBytes(source)) << file;
    samples[samples.size() / 2] ^= 1;
    samples.back() ^= 1;
    destination = folder / "changed" / file.filename();
    copy(samples);
    EXPECT_EQ(samplesOf(destination), samples) << file;
    EXPECT_THAT(changedTags(), IsEmpty()) << file;
    expectNoNewComplaints();
  }
}

}  // namespace
}  // namespace tessaly
