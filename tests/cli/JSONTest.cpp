// Results for programs: one object on standard output and nothing else there, as docs/schemas says.
#include "cli/RepairScene.h"

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;
using JSONValue = nlohmann::json;

using testing::IsEmpty;
using testing::SizeIs;

/// What a value breaks of a schema: type, required, properties, additionalProperties, items, enum and minimum, which
/// are all that docs/schemas uses.
class SchemaCheck {
 public:
  void check(const JSONValue& value, const JSONValue& schema, const std::string& place) {
    if (schema.contains("type") && !hasType(value, schema["type"])) complain(place, "has another type");
    if (schema.contains("enum") && std::count(schema["enum"].begin(), schema["enum"].end(), value) == 0)
      complain(place, "is none of the values");
    if (schema.contains("minimum") && value < schema["minimum"]) complain(place, "is too small");
    if (value.is_object()) checkObject(value, schema, place);
    if (value.is_array() && schema.contains("items")) {
      for (std::size_t i = 0; i < value.size(); ++i)
        check(value[i], schema["items"], place + "/" + std::to_string(i));
    }
  }

  std::vector<std::string> complaints;

 private:
  void complain(const std::string& place, const std::string& what) { complaints.push_back(place + " " + what); }

  static bool hasType(const JSONValue& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "boolean") return value.is_boolean();
    return type == "integer" ? value.is_number_integer() : value.is_number();
  }

  void checkObject(const JSONValue& value, const JSONValue& schema, const std::string& place) {
    for (const JSONValue& key : schema.value("required", JSONValue::array()))
      if (!value.contains(key.get<std::string>())) complain(place, "lacks " + key.get<std::string>());
    for (const auto& [key, entry] : value.items()) {
      if (schema["properties"].contains(key)) {
        check(entry, schema["properties"][key], place + "/" + key);
      } else if (!schema.value("additionalProperties", true)) {
        complain(place, "has an unknown key " + key);
      }
    }
  }
};

class JSONTest : public RepairScene {
 protected:
  static std::vector<std::string> complaintsAbout(const JSONValue& value, const std::string& schema) {
    SchemaCheck check;
    check.check(value, JSONValue::parse(readText(fs::path(TESSALY_SOURCE_FOLDER) / "docs/schemas" / schema)), "");
    return check.complaints;
  }
};

TEST_F(JSONTest, OfABatchTellsOfEachFile) {
  writeText(folder / "photos/x.NEF", "");
  writeText(folder / "photos/L1.DNG.pp3", "new");
  fs::create_directory(folder / "out");
  writeText(folder / "out/L1.DNG.pp3", "old");
  const ProgramResult result = repair({"photos", "--output", "out", "--json", "--sidecars", "--workers", "1"});
  EXPECT_EQ(result.status, 1);
  const JSONValue object = JSONValue::parse(result.output);
  EXPECT_THAT(complaintsAbout(object, "repair.json"), IsEmpty());
  ASSERT_THAT(object["files"], SizeIs(2));
  EXPECT_EQ(object["files"][0]["status"], "Success");
  EXPECT_EQ(object["files"][0]["output"], (fs::canonical(folder / "out") / "L1.DNG").native());
  EXPECT_EQ(object["files"][0]["repairedSamples"], 1);
  EXPECT_THAT(object["files"][0]["lacking"], SizeIs(1));
  EXPECT_EQ(object["files"][1]["status"], "Failed");
  EXPECT_FALSE(object["files"][1].contains("output"));
  EXPECT_THAT(result.errors, testing::HasSubstr("Processing complete"));
}

TEST_F(JSONTest, OfABatchIsTheSummaryWithItsFiles) {
  const ProgramResult result = repair({"photos", "--json", "--summary", "summary.json"});
  JSONValue object = JSONValue::parse(result.output);
  object.erase("files");
  EXPECT_EQ(object, JSONValue::parse(readText(folder / "summary.json")));
}

TEST_F(JSONTest, ByLinesIsOneObjectAFile) {
  photographs({"photos/L2.DNG"});
  const ProgramResult result = repair({"photos", "--json-lines", "--no-log"});
  EXPECT_EQ(result.status, 0);
  const std::vector<std::string> lines = linesOf(result.output);
  ASSERT_THAT(lines, SizeIs(2));
  for (const std::string& line : lines)
    EXPECT_THAT(complaintsAbout(JSONValue::parse(line), "repair-line.json"), IsEmpty());
}

TEST_F(JSONTest, OfADryRunSaysWhatWouldHappen) {
  writeText(folder / "photos/x.NEF", "");
  const JSONValue object = JSONValue::parse(repair({"photos", "--json", "--dry-run"}).output);
  EXPECT_THAT(complaintsAbout(object, "repair.json"), IsEmpty());
  EXPECT_EQ(object["files"][0]["status"], "Fits");
  EXPECT_EQ(object["files"][1]["status"], "Refused");
  EXPECT_FALSE(fs::exists(folder / "photos/Tessaly Results"));
}

TEST_F(JSONTest, HasStandardOutputForItself) {
  EXPECT_EQ(repair({"photos", "--json", "--json-lines"}).status, 2);
  EXPECT_EQ(repair({"photos", "--json", "--summary", "-"}).status, 2);
  EXPECT_FALSE(fs::exists(folder / "photos/Tessaly Results"));
}

TEST_F(JSONTest, OfABatchThatFailsAsAWholeIsThereToo) {
  const ProgramResult result = repair({"missing", "--json"});
  EXPECT_EQ(result.status, 1);
  const JSONValue object = JSONValue::parse(result.output);
  EXPECT_THAT(complaintsAbout(object, "repair.json"), IsEmpty());
  EXPECT_EQ(object["failed"], 1);
}

TEST_F(JSONTest, OfProfilesAndMetadataFollowsItsSchema) {
  ASSERT_EQ(run({"profiles", "import", "p.json"}).status, 0);
  const JSONValue list = JSONValue::parse(run({"profiles", "list", "--json"}).output);
  EXPECT_THAT(complaintsAbout(list, "profiles-list.json"), IsEmpty());
  ASSERT_THAT(list["profiles"], SizeIs(1));
  EXPECT_EQ(list["profiles"][0]["cameraSerial"], "SN-1");
  const ProgramResult shown = run({"profiles", "show", "p.json", "--json"});
  EXPECT_THAT(complaintsAbout(JSONValue::parse(shown.output), "profile.json"), IsEmpty());
  EXPECT_EQ(shown.output, run({"profiles", "show", "p.json"}).output);
  const ProgramResult metadata = run({"inspect", "photos/L1.DNG", "--json"});
  EXPECT_THAT(complaintsAbout(JSONValue::parse(metadata.output), "inspect.json"), IsEmpty());
  EXPECT_EQ(metadata.output, run({"inspect", "photos/L1.DNG"}).output);
}

}  // namespace
}  // namespace tessaly::tests
