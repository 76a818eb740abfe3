// The JSON form is shared with other programs and older versions, so texts are written out literally here.
#include "profile/CameraProfileJSON.h"
#include "profile/ProfileSamples.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <limits>
#include <string>
#include <system_error>

namespace tessaly {
namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

/// A complete profile, compact; each test replaces one piece of it.
const std::string minimal =
    R"({"version":4,"id":"3F2504E0-4F89-41D3-9A0C-0305E82C3301","name":"N","cameraModel":"M","rawWidth":100,)"
    R"("rawHeight":80,"activeX":6,"activeY":4,"activeWidth":90,"activeHeight":70,)"
    R"("createdAt":"2026-11-15T20:23:12Z","pixels":[],"lines":[]})";

std::string replaced(std::string text, const std::string& piece, const std::string& by) {
  const std::size_t at = text.find(piece);
  EXPECT_NE(at, std::string::npos) << piece;
  return text.replace(at, piece.size(), by);
}

std::string with(const std::string& members) {
  return replaced(minimal, "{", "{" + members + ",");
}

/// "" when the text decodes.
std::string failure(const std::string& text) {
  try {
    static_cast<void>(decodeProfile(text));
    return "";
  } catch (const ProfileDecodingError& error) {
    return error.what();
  }
}

CameraProfile everyField() {
  CameraProfile profile;
  profile.version = 4;
  profile.id = *UUID::parse("3f2504e0-4f89-41d3-9a0c-0305e82c3301");
  profile.name = "Zoë's \"body\" / 相机";
  profile.sensorActiveArea = RawRectangle{6, 4, 90, 70};
  profile.cameraSerial = "00123";
  profile.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
  profile.cameraModel = "Body One";
  profile.rawWidth = 100;
  profile.rawHeight = 80;
  profile.activeX = 6;
  profile.activeY = 4;
  profile.activeWidth = 90;
  profile.activeHeight = 70;
  profile.createdAt = *parseISO8601("2026-11-15T20:23:12Z");
  profile.pixels = {{11, 12, 0.99, "hot"}};
  profile.lines = {{20, 0, 79, 1, 1.0, "Manually confirmed"}};
  profile.spots = {{{50, 40, 3, 2, 0.125, "dust"}}};
  return profile;
}

TEST(CameraProfileJSON, IsWrittenWithSortedKeysAndTwoSpaces) {
  EXPECT_EQ(encodeProfile(everyField()), R"({
  "activeHeight": 70,
  "activeWidth": 90,
  "activeX": 6,
  "activeY": 4,
  "cameraModel": "Body One",
  "cameraSerial": "00123",
  "cfaLayout": {
    "height": 2,
    "pattern": [
      0,
      1,
      1,
      2
    ],
    "width": 2
  },
  "createdAt": "2026-11-15T20:23:12Z",
  "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301",
  "lines": [
    {
      "confidence": 1.0,
      "reason": "Manually confirmed",
      "width": 1,
      "x": 20,
      "yEnd": 79,
      "yStart": 0
    }
  ],
  "name": "Zoë's \"body\" / 相机",
  "pixels": [
    {
      "confidence": 0.99,
      "reason": "hot",
      "x": 11,
      "y": 12
    }
  ],
  "rawHeight": 80,
  "rawWidth": 100,
  "sensorActiveArea": {
    "height": 70,
    "width": 90,
    "x": 6,
    "y": 4
  },
  "spots": [
    {
      "confidence": 0.125,
      "radiusX": 3,
      "radiusY": 2,
      "reason": "dust",
      "x": 50,
      "y": 40
    }
  ],
  "version": 4
}
)");
}

TEST(CameraProfileJSON, LeavesAbsentFieldsOut) {
  CameraProfile profile = decodeProfile(minimal);
  EXPECT_EQ(profile.sensorActiveArea, std::nullopt);
  EXPECT_EQ(profile.cameraSerial, std::nullopt);
  EXPECT_EQ(profile.cfaLayout, std::nullopt);
  EXPECT_EQ(profile.spots, std::nullopt);
  const std::string text = encodeProfile(profile);
  for (const char* key : {"sensorActiveArea", "cameraSerial", "cfaLayout", "spots", "null"}) {
    EXPECT_EQ(text.find(key), std::string::npos) << key;
  }
  profile.spots.emplace();
  EXPECT_THAT(encodeProfile(profile), HasSubstr("\"spots\": []"));
}

TEST(CameraProfileJSON, ReadsWhatItWrites) {
  EXPECT_EQ(decodeProfile(encodeProfile(everyField())), everyField());
  const CameraProfile made = tests::sampleProfile();
  EXPECT_EQ(decodeProfile(encodeProfile(made)), made);
  CameraProfile bare = decodeProfile(minimal);
  EXPECT_EQ(decodeProfile(encodeProfile(bare)), bare);
  EXPECT_EQ(encodeProfile(decodeProfile(encodeProfile(bare))), encodeProfile(bare));
}

TEST(CameraProfileJSON, KeepsTheWholeRangeOfNumbers) {
  CameraProfile profile = everyField();
  profile.version = least;
  profile.rawWidth = most;
  profile.pixels = {{least, most, -0.1, ""},
                    {9007199254740993, -9007199254740993, std::numeric_limits<double>::denorm_min(), ""},
                    {0, 0, std::numeric_limits<double>::max(), ""},
                    {0, 0, 0.1 + 0.2, ""}};
  EXPECT_EQ(decodeProfile(encodeProfile(profile)), profile);
}

TEST(CameraProfileJSON, KeepsEveryCharacterOfATextThatIsUTF8) {
  CameraProfile profile = everyField();
  profile.name = "a\0b\n\t\\\"\x7f é 相 \xF0\x9F\x93\xB7"s;
  EXPECT_EQ(decodeProfile(encodeProfile(profile)).name, profile.name);
}

TEST(CameraProfileJSON, RefusesToWriteWhatCouldNotBeReadBack) {
  CameraProfile profile = everyField();
  profile.name = "\xff";
  EXPECT_THROW(static_cast<void>(encodeProfile(profile)), std::invalid_argument);
  for (const double confidence : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    profile = everyField();
    profile.pixels[0].confidence = confidence;
    EXPECT_THROW(static_cast<void>(encodeProfile(profile)), std::invalid_argument);
    profile = everyField();
    profile.lines[0].confidence = confidence;
    EXPECT_THROW(static_cast<void>(encodeProfile(profile)), std::invalid_argument);
    profile = everyField();
    profile.spots->front().confidence = confidence;
    EXPECT_THROW(static_cast<void>(encodeProfile(profile)), std::invalid_argument);
  }
  profile = everyField();
  profile.createdAt = Timestamp(std::chrono::seconds(253402300800));
  EXPECT_THROW(static_cast<void>(encodeProfile(profile)), std::invalid_argument);
}

TEST(CameraProfileJSON, NeedsEveryKeyThatIsNotOptional) {
  const std::string text = encodeProfile(everyField());
  for (const std::string key : {"version", "id", "name", "cameraModel", "rawWidth", "rawHeight", "activeX", "activeY",
                                "activeWidth", "activeHeight", "createdAt", "pixels", "lines"}) {
    const std::string quoted = '"' + key + '"';
    EXPECT_EQ(failure(replaced(text, "\n  " + quoted, "\n  \"other\"")), "profile: " + quoted + " is missing");
  }
  for (const std::string key : {"sensorActiveArea", "cameraSerial", "cfaLayout", "spots"}) {
    EXPECT_EQ(failure(replaced(text, "\n  \"" + key + '"', "\n  \"other\"")), "") << key;
  }
}

TEST(CameraProfileJSON, NeedsEveryKeyOfARecord) {
  const std::string pixel = R"({"x":1,"y":2,"confidence":1,"reason":"r"})";
  const std::string line = R"({"x":1,"yStart":2,"yEnd":3,"width":4,"confidence":1,"reason":"r"})";
  const std::string spot = R"({"x":1,"y":2,"radiusX":3,"radiusY":4,"confidence":1,"reason":"r"})";
  const auto check = [](const std::string& array, const std::string& record, std::initializer_list<const char*> keys) {
    const auto profile = [&array](const std::string& second, const std::string& first) {
      const std::string members = '"' + array + "\":[" + first + ',' + second + ']';
      return array == "spots" ? with(members) : replaced(minimal, '"' + array + "\":[]", members);
    };
    EXPECT_EQ(failure(profile(record, record)), "");
    for (const char* key : keys) {
      const std::string quoted = std::string("\"") + key + '"';
      EXPECT_EQ(failure(profile(replaced(record, quoted, "\"other\""), record)),
                array + "[1]: " + quoted + " is missing");
    }
    EXPECT_EQ(failure(profile("null", record)), array + "[1] is not an object");
    EXPECT_EQ(failure(profile("[]", record)), array + "[1] is not an object");
  };
  check("pixels", pixel, {"x", "y", "confidence", "reason"});
  check("lines", line, {"x", "yStart", "yEnd", "width", "confidence", "reason"});
  check("spots", spot, {"x", "y", "radiusX", "radiusY", "confidence", "reason"});
}

TEST(CameraProfileJSON, PutsEveryKeyOfARecordIntoItsField) {
  const CameraProfile profile =
      decodeProfile(with(R"("spots":[{"x":1,"y":2,"radiusX":3,"radiusY":4,"confidence":0.5,"reason":"s"}],)"
                         R"("sensorActiveArea":{"x":1,"y":2,"width":3,"height":4},)"
                         R"("cfaLayout":{"width":3,"height":5,"pattern":[0,255,7]})"));
  EXPECT_EQ(profile.spots->front(), (DefectSpot{1, 2, 3, 4, 0.5, "s"}));
  EXPECT_EQ(profile.sensorActiveArea, (RawRectangle{1, 2, 3, 4}));
  EXPECT_EQ(profile.cfaLayout, (CFALayout{3, 5, {0, 255, 7}}));
  const CameraProfile defects = decodeProfile(
      replaced(replaced(minimal, "\"pixels\":[]", R"("pixels":[{"x":1,"y":2,"confidence":0.5,"reason":"p"}])"),
               "\"lines\":[]", R"("lines":[{"x":1,"yStart":2,"yEnd":3,"width":4,"confidence":0.5,"reason":"l"}])"));
  EXPECT_EQ(defects.pixels.front(), (DefectPixel{1, 2, 0.5, "p"}));
  EXPECT_EQ(defects.lines.front(), (DefectLine{1, 2, 3, 4, 0.5, "l"}));
}

TEST(CameraProfileJSON, NeedsEveryKeyOfTheAreaAndTheMosaic) {
  EXPECT_EQ(failure(with(R"("sensorActiveArea":{"x":1,"y":2,"width":3})")), "sensorActiveArea: \"height\" is missing");
  EXPECT_EQ(failure(with(R"("sensorActiveArea":[1,2,3,4])")), "sensorActiveArea is not an object");
  EXPECT_EQ(failure(with(R"("cfaLayout":{"width":2,"height":2})")), "cfaLayout: \"pattern\" is missing");
  EXPECT_EQ(failure(with(R"("cfaLayout":{"width":2,"height":2,"pattern":{}})")),
            "cfaLayout: \"pattern\" is not an array");
  for (const char* colour : {"256", "-1", "0.5", "\"0\"", "null", "true"}) {
    EXPECT_EQ(failure(with(std::string(R"("cfaLayout":{"width":2,"height":2,"pattern":[0,)") + colour + "]}")),
              "cfaLayout: \"pattern\" holds something else than 0 to 255")
        << colour;
  }
}

// A profile with these pixels.
std::string withPixels(const std::string& pixels) {
  return replaced(minimal, "\"pixels\":[]", "\"pixels\":" + pixels);
}

TEST(CameraProfileJSON, TellsTheFirstFaultOfTheTextThenOfTheFieldsInTheirOrder) {
  const std::string twoFaults = withPixels(R"([{"x":1},{"x":1,"y":2,"confidence":1,"reason":"r"},7])");
  EXPECT_EQ(failure(twoFaults), "pixels[0]: \"y\" is missing");
  EXPECT_EQ(failure(replaced(twoFaults, "\"createdAt\":\"", "\"createdAt\":\"x")),
            "profile: \"createdAt\" is not an ISO 8601 date and time");
  EXPECT_EQ(failure(replaced(twoFaults, "\"lines\":[]", "\"lines\":7")), "pixels[0]: \"y\" is missing");
  EXPECT_THAT(failure(replaced(twoFaults, "[]}", "[}")), HasSubstr("Not a JSON text (at byte "));
  EXPECT_EQ(failure(withPixels(R"([{"x":1,"y":2,"confidence":1,"reason":"r"},7,{}])")), "pixels[1] is not an object");
}

TEST(CameraProfileJSON, LetsTheLastOfARepeatedArrayOrObjectCount) {
  const std::string good = R"([{"x":1,"x":5,"y":2,"confidence":1,"reason":"r"}])";
  const std::string text = withPixels(good);
  EXPECT_EQ(decodeProfile(text).pixels.at(0).x, 5);
  EXPECT_EQ(decodeProfile(replaced(text, "{", R"({"pixels":[{}, 3],)")), decodeProfile(text));
  EXPECT_EQ(decodeProfile(replaced(text, "{", R"({"pixels":{"x":[]},)")), decodeProfile(text));
  EXPECT_EQ(failure(replaced(text, "\"lines\"", R"("pixels":{},"lines")")), "profile: \"pixels\" is not an array");
  const std::string mosaic = R"("cfaLayout":{"width":2,"height":1,"pattern":[0,300],"pattern":[1,2]},)";
  EXPECT_EQ(decodeProfile(replaced(minimal, "{", "{" + mosaic)).cfaLayout, (CFALayout{2, 1, {1, 2}}));
  EXPECT_EQ(decodeProfile(replaced(minimal, "{", "{" + mosaic + "\"cfaLayout\":null,")), decodeProfile(minimal));
  EXPECT_EQ(failure(replaced(minimal, "{", "{" + mosaic + R"("cfaLayout":{"height":1,"pattern":[]},)")),
            "cfaLayout: \"width\" is missing");
}

TEST(CameraProfileJSON, PassesOverWhatStandsInsideOtherThings) {
  const std::string pixel = R"({"x":1,"y":2,"confidence":1,"reason":"r"})";
  EXPECT_EQ(failure(withPixels("[[" + pixel + "]]")), "pixels[0] is not an object");
  EXPECT_EQ(failure(withPixels(R"([{"x":{"x":1},"y":2,"confidence":1,"reason":"r"}])")),
            "pixels[0]: \"x\" is not a 64-bit whole number");
  EXPECT_EQ(failure(withPixels(R"([{"x":1,"y":2,"confidence":1,"reason":["r"]}])")),
            "pixels[0]: \"reason\" is not a text");
  EXPECT_EQ(failure(replaced(minimal, "\"name\":\"N\"", R"("name":{"name":"N"})")), "profile: \"name\" is not a text");
  EXPECT_EQ(failure(with(R"("cfaLayout":{"width":2,"height":1,"pattern":[[0],[1]]})")),
            "cfaLayout: \"pattern\" holds something else than 0 to 255");
  EXPECT_EQ(failure(with(R"("cfaLayout":{"width":2,"height":1,"pattern":[{"pattern":[1]}]})")),
            "cfaLayout: \"pattern\" holds something else than 0 to 255");
  EXPECT_EQ(decodeProfile(with(R"("a":{"pixels":[7],"name":3,"b":[{"name":4}]})")), decodeProfile(minimal));
  EXPECT_EQ(decodeProfile(withPixels("[" + replaced(pixel, "{", R"({"a":{"x":9,"pixels":[9]},)") + "]")),
            decodeProfile(withPixels("[" + pixel + "]")));
}

TEST(CameraProfileJSON, IgnoresUnknownKeysEverywhere) {
  const std::string unknown = R"("spotss":[1,{"x":null}],"":0,"Version":"x")";
  EXPECT_EQ(decodeProfile(with(unknown)), decodeProfile(minimal));
  EXPECT_EQ(
      failure(replaced(minimal, "\"pixels\":[]", R"("pixels":[{"x":1,"y":2,"confidence":1,"reason":"","extra":[]}])")),
      "");
}

TEST(CameraProfileJSON, TakesNullForAnOptionalKeyAsAbsent) {
  EXPECT_EQ(decodeProfile(with(R"("sensorActiveArea":null,"cameraSerial":null,"cfaLayout":null,"spots":null)")),
            decodeProfile(minimal));
}

TEST(CameraProfileJSON, RefusesNullForARequiredKey) {
  EXPECT_EQ(failure(replaced(minimal, "\"name\":\"N\"", "\"name\":null")), "profile: \"name\" is not a text");
  EXPECT_EQ(failure(replaced(minimal, "\"pixels\":[]", "\"pixels\":null")), "profile: \"pixels\" is not an array");
  EXPECT_EQ(failure(replaced(minimal, "\"rawWidth\":100", "\"rawWidth\":null")),
            "profile: \"rawWidth\" is not a 64-bit whole number");
}

TEST(CameraProfileJSON, LetsTheLastOfARepeatedKeyCount) {
  EXPECT_EQ(decodeProfile(with(R"("name":"first")")).name, "N");
}

TEST(CameraProfileJSON, ReadsWholeNumbersInAnySpelling) {
  const auto width = [](const std::string& number) {
    return decodeProfile(replaced(minimal, "\"rawWidth\":100", "\"rawWidth\":" + number)).rawWidth;
  };
  EXPECT_EQ(width("4.0"), 4);
  EXPECT_EQ(width("4e2"), 400);
  EXPECT_EQ(width("4.25E2"), 425);
  EXPECT_EQ(width("-4.0"), -4);
  EXPECT_EQ(width("-0"), 0);
  EXPECT_EQ(width("-0.0"), 0);
  EXPECT_EQ(width("9223372036854775807"), most);
  EXPECT_EQ(width("-9223372036854775808"), least);
  EXPECT_EQ(width("-9223372036854774784.0"), -9223372036854774784);
  EXPECT_EQ(width("9223372036854774784.0"), 9223372036854774784);
  EXPECT_EQ(width("9007199254740993"), 9007199254740993);
}

TEST(CameraProfileJSON, RefusesEverythingElseForAWholeNumber) {
  for (const char* value :
       {"4.5", "\"4\"", "true", "[]", "{}", "1e-1", "9223372036854775808", "-9223372036854775809",
        "18446744073709551615", "18446744073709551616", "9223372036854775808.0", "9223372036854775807.0", "1e19",
        "-9223372036854775808.0", "-9223372036854777856.0", "1e300"}) {
    EXPECT_EQ(failure(replaced(minimal, "\"rawWidth\":100", std::string("\"rawWidth\":") + value)),
              "profile: \"rawWidth\" is not a 64-bit whole number")
        << value;
  }
}

TEST(CameraProfileJSON, ReadsAnyFiniteNumberAsConfidence) {
  const auto confidence = [](const std::string& number) {
    const std::string pixel = R"("pixels":[{"x":1,"y":2,"confidence":)" + number + R"(,"reason":""}])";
    return replaced(minimal, "\"pixels\":[]", pixel);
  };
  EXPECT_EQ(decodeProfile(confidence("1")).pixels[0].confidence, 1.0);
  EXPECT_EQ(decodeProfile(confidence("-3")).pixels[0].confidence, -3.0);
  EXPECT_EQ(decodeProfile(confidence("0.1")).pixels[0].confidence, 0.1);
  EXPECT_EQ(decodeProfile(confidence("18446744073709551615")).pixels[0].confidence, 0x1p64);
  EXPECT_EQ(decodeProfile(confidence("1e-400")).pixels[0].confidence, 0.0);
  for (const char* value : {"\"1\"", "null", "true", "[1]"}) {
    EXPECT_EQ(failure(confidence(value)), "pixels[0]: \"confidence\" is not a finite number") << value;
  }
  for (const char* value : {"1e400", "-1e400"}) {
    EXPECT_EQ(failure(confidence(value)), "The JSON text holds a number that is out of range") << value;
  }
  EXPECT_NE(failure(confidence(std::string(400, '9'))), "");
  for (const char* value : {"NaN", "nan", "Infinity", "-Infinity", "inf", "0x10", "1.", ".5", "+1", "01", "1,0"}) {
    EXPECT_THAT(failure(confidence(value)), HasSubstr("Not a JSON text")) << value;
  }
}

TEST(CameraProfileJSON, ReadsTheIdentifierInEitherCase) {
  const std::string lower =
      replaced(minimal, "3F2504E0-4F89-41D3-9A0C-0305E82C3301", "3f2504e0-4f89-41d3-9a0c-0305e82c3301");
  EXPECT_EQ(decodeProfile(lower), decodeProfile(minimal));
  EXPECT_EQ(failure(replaced(minimal, "3F2504E0-", "3F2504E0")), "profile: \"id\" is not a UUID");
  EXPECT_EQ(failure(replaced(minimal, "\"3F2504E0-4F89-41D3-9A0C-0305E82C3301\"", "7")),
            "profile: \"id\" is not a text");
}

TEST(CameraProfileJSON, ReadsTheDateInISO8601Only) {
  EXPECT_EQ(decodeProfile(replaced(minimal, "20:23:12Z", "21:23:12+01:00")), decodeProfile(minimal));
  EXPECT_EQ(failure(replaced(minimal, "20:23:12Z", "20:23:12")),
            "profile: \"createdAt\" is not an ISO 8601 date and time");
  EXPECT_EQ(failure(replaced(minimal, "\"2026-11-15T20:23:12Z\"", "1794774192")),
            "profile: \"createdAt\" is not a text");
}

TEST(CameraProfileJSON, ReadsAnyVersion) {
  EXPECT_EQ(decodeProfile(replaced(minimal, "\"version\":4", "\"version\":1")).version, 1);
  EXPECT_EQ(decodeProfile(replaced(minimal, "\"version\":4", "\"version\":-99")).version, -99);
}

TEST(CameraProfileJSON, RefusesWhatIsNotOneJSONObject) {
  EXPECT_EQ(failure("[]"), "profile is not an object");
  EXPECT_EQ(failure("null"), "profile is not an object");
  EXPECT_EQ(failure("4"), "profile is not an object");
  for (const std::string& text :
       {std::string(), std::string(" "), std::string("{"), minimal + "x", minimal + minimal,
        minimal.substr(0, minimal.size() - 1), "//\n" + minimal, replaced(minimal, "[]}", "[],}"), minimal + '\0',
        std::string(1, '\0') + minimal, minimal + std::string(1, '\0') + 'x'}) {
    EXPECT_THAT(failure(text), HasSubstr("Not a JSON text")) << text;
  }
}

TEST(CameraProfileJSON, RefusesTextThatIsNotUTF8) {
  for (const char* bytes : {"\xff", "\xc3", "\xed\xa0\x80", "\xc0\x80", "\xf5\x80\x80\x80"}) {
    EXPECT_THAT(failure(replaced(minimal, "\"N\"", std::string("\"") + bytes + '"')), HasSubstr("Not a JSON text"));
  }
  EXPECT_THAT(failure(replaced(minimal, "\"N\"", R"("\ud800")")), HasSubstr("Not a JSON text"));
  EXPECT_EQ(decodeProfile(replaced(minimal, "\"N\"", R"("\ud83d\udcf7")")).name, "\xF0\x9F\x93\xB7");
}

TEST(CameraProfileJSON, SurvivesDeepNesting) {
  constexpr std::size_t deep = 3'000'000;
  EXPECT_NE(failure(std::string(deep, '[')), "");
  std::string objects;
  for (std::size_t i = 0; i < deep / 5; ++i)
    objects += "{\"a\":";
  EXPECT_NE(failure(objects), "");
  EXPECT_EQ(failure(with("\"unknown\":" + std::string(deep, '[') + std::string(deep, ']'))), "");
  EXPECT_NE(failure(with("\"spots\":" + std::string(deep, '[') + std::string(deep, ']'))), "");
}

void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

TEST(ProfileFile, IsReadWhole) {
  const tests::TemporaryFolder folder;
  writeText(folder / "body.json", encodeProfile(everyField()));
  EXPECT_EQ(readProfile(folder / "body.json"), everyField());
}

TEST(ProfileFile, ThatIsMissingIsAnErrorOfTheSystem) {
  const tests::TemporaryFolder folder;
  EXPECT_THROW(static_cast<void>(readProfile(folder / "none.json")), std::system_error);
}

TEST(ProfileFile, MustBeARegularFile) {
  const tests::TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe.json").c_str(), 0600), 0);
  EXPECT_THROW(static_cast<void>(readProfile(folder / "pipe.json")), ProfileDecodingError);
  EXPECT_THROW(static_cast<void>(readProfile(folder.path())), ProfileDecodingError);
}

TEST(ProfileFile, IsRefusedUnreadWhenItIsTooLarge) {
  const tests::TemporaryFolder folder;
  writeText(folder / "body.json", minimal + ' ');
  std::filesystem::resize_file(folder / "body.json", static_cast<std::uintmax_t>(maximumProfileFileSize) + 1);
  try {
    static_cast<void>(readProfile(folder / "body.json"));
    FAIL();
  } catch (const ProfileDecodingError& error) {
    EXPECT_STREQ(error.what(), "The file is too large for a profile");
  }
}

TEST(ProfileFile, MayBeAsLargeAsTheLimit) {
  const tests::TemporaryFolder folder;
  writeText(folder / "body.json",
            std::string(static_cast<std::size_t>(maximumProfileFileSize) - minimal.size(), ' ') + minimal);
  EXPECT_EQ(readProfile(folder / "body.json"), decodeProfile(minimal));
}

TEST(ProfileFile, ThatIsEmptyIsNoProfile) {
  const tests::TemporaryFolder folder;
  writeText(folder / "body.json", "");
  EXPECT_THROW(static_cast<void>(readProfile(folder / "body.json")), ProfileDecodingError);
}

}  // namespace
}  // namespace tessaly
