#include "dng/metadata/DNGMetadataJSON.h"
#include "dng/metadata/MetadataFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <stdexcept>

namespace tessaly::tests {
namespace {

using nlohmann::ordered_json;

std::vector<std::string> keysOf(const ordered_json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items())
    keys.push_back(key);
  return keys;
}

class DNGMetadataJSON : public MetadataFixture {
 protected:
  // A frame whose optional fields are all present.
  [[nodiscard]] DNGMetadata fullFrame() const {
    return read(DNGBuilder()
                    .size(20, 18)
                    .bits(12)
                    .tiles(16, 16)
                    .fillOrder(2)
                    .linearization({0, 5, 4000})
                    .activeArea(1, 2, 17, 19)
                    .crop(1, 1, 10, 10)
                    .rawTag(50713, shorts({2, 2}))
                    .rawTag(50714, rationals({1, 2, 2, 1, 3, 1, 4, 1}))
                    .rawTag(50716, {10, std::vector<std::int64_t>(32, 1)})
                    .rawTag(50830, longs({1, 2, 3, 4}))
                    .white(3000)
                    .make("Maker")
                    .serial("1234")
                    .exif(800, {{1, 3}}));
  }
};

TEST_F(DNGMetadataJSON, HasTheFieldsInTheirOrder) {
  EXPECT_EQ(keysOf(toJSON(fullFrame())), (std::vector<std::string>{"sourceEncoding",
                                                                   "cameraSerial",
                                                                   "make",
                                                                   "model",
                                                                   "rawWidth",
                                                                   "rawHeight",
                                                                   "rawOffset",
                                                                   "rawByteCount",
                                                                   "activeX",
                                                                   "activeY",
                                                                   "activeWidth",
                                                                   "activeHeight",
                                                                   "blackLevel",
                                                                   "whiteLevel",
                                                                   "bitsPerSample",
                                                                   "compression",
                                                                   "samplesPerPixel",
                                                                   "photometricInterpretation",
                                                                   "rowsPerStrip",
                                                                   "packing",
                                                                   "cfaLayout",
                                                                   "iso",
                                                                   "exposureSeconds"}));
  EXPECT_EQ(
      keysOf(toJSON(fullFrame())["sourceEncoding"]),
      (std::vector<std::string>{"littleEndian", "ifdOffset", "parentPointer", "offsets", "byteCounts", "tileWidth",
                                "tileHeight", "fillOrder", "linearization", "blackLevels", "blackRepeat", "blackDeltaH",
                                "blackDeltaV", "whiteLevels", "activeArea", "crop", "maskedAreas"}));
}

TEST_F(DNGMetadataJSON, LeavesOutWhatIsAbsent) {
  const ordered_json json = toJSON(read(DNGBuilder().linear()));
  for (const char* key : {"cameraSerial", "make", "cfaLayout", "iso", "exposureSeconds"}) {
    EXPECT_FALSE(json.contains(key)) << key;
  }
  EXPECT_FALSE(json["sourceEncoding"].contains("tileWidth"));
  EXPECT_FALSE(json["sourceEncoding"].contains("tileHeight"));
}

TEST_F(DNGMetadataJSON, HasPlainValues) {
  const ordered_json json = toJSON(fullFrame());
  EXPECT_EQ(json["packing"], "packed12MSB");
  EXPECT_EQ(json["cfaLayout"], ordered_json::parse(R"({"width": 2, "height": 2, "pattern": [0, 1, 1, 2]})"));
  EXPECT_EQ(json["exposureSeconds"], 1.0 / 3.0);
  EXPECT_EQ(json["rawWidth"], 20);
  EXPECT_EQ(json["sourceEncoding"]["littleEndian"], true);
  EXPECT_EQ(json["sourceEncoding"]["blackLevels"], ordered_json::parse("[0.5, 2.0, 3.0, 4.0]"));
  EXPECT_EQ(json["sourceEncoding"]["crop"], ordered_json::parse(R"({"x": 3, "y": 2, "width": 10, "height": 10})"));
  EXPECT_EQ(toJSON(read(DNGBuilder()))["packing"], "littleEndian16");
}

TEST_F(DNGMetadataJSON, CanBeReadBack) {
  for (const DNGMetadata& metadata : {fullFrame(), read(DNGBuilder().linear())}) {
    const std::string text = toJSON(metadata).dump();
    EXPECT_EQ(metadataFromJSON(ordered_json::parse(text)), metadata);
  }
}

TEST_F(DNGMetadataJSON, ReadsARecordWithoutASourceEncoding) {
  ordered_json json = toJSON(fullFrame());
  json.erase("sourceEncoding");
  json["iso"] = nullptr;
  json["unknown"] = {1, 2};
  json["rawWidth"] = 20.0;
  const DNGMetadata metadata = metadataFromJSON(json);
  EXPECT_EQ(metadata.sourceEncoding, std::nullopt);
  EXPECT_EQ(metadata.iso, std::nullopt);
  EXPECT_EQ(metadata.rawWidth, 20);
}

TEST_F(DNGMetadataJSON, RefusesWhatIsNoRecord) {
  const ordered_json good = toJSON(fullFrame());
  const std::vector<std::pair<std::string, ordered_json>> changes{
      {"/rawWidth", 4.5},
      {"/rawWidth", "20"},
      {"/rawWidth", nullptr},
      {"/rawWidth", 1e300},
      {"/rawWidth", UINT64_MAX},
      {"/rawOffset", -1},
      {"/model", 5},
      {"/packing", "packed"},
      {"/cfaLayout", 5},
      {"/iso", "800"},
      {"/exposureSeconds", ""},
      {"/cfaLayout/pattern/0", 256},
      {"/sourceEncoding", 5},
      {"/sourceEncoding/littleEndian", 1},
      {"/sourceEncoding/linearization/1", 65'536},
      {"/sourceEncoding/offsets", 5},
  };
  for (const auto& [place, value] : changes) {
    ordered_json bad = good;
    bad[ordered_json::json_pointer(place)] = value;
    EXPECT_THROW((void)metadataFromJSON(bad), std::invalid_argument) << place << " " << value;
  }
  EXPECT_THROW((void)metadataFromJSON(ordered_json::array()), std::invalid_argument);
}

TEST_F(DNGMetadataJSON, RefusesARecordThatLacksAField) {
  const ordered_json good = toJSON(read(DNGBuilder()));
  for (const auto& [key, value] : good.items()) {
    ordered_json bad = good;
    bad.erase(key);
    const bool optional = key == "sourceEncoding" || key == "cfaLayout";
    if (optional) continue;
    EXPECT_THROW((void)metadataFromJSON(bad), std::invalid_argument) << key;
  }
}

TEST(SourceEncodingJSON, StandsOnItsOwn) {
  DNGSourceEncoding encoding;
  encoding.offsets = {8, 16};
  encoding.tileWidth = 5;
  EXPECT_EQ(sourceEncodingFromJSON(toJSON(encoding)), encoding);
}

TEST(TIFFFieldJSON, HasTheNamesOfTheFields) {
  const TIFFField field{700, 4, 3, 22, 100, 12};
  EXPECT_EQ(toJSON(field).dump(), R"({"tag":700,"type":4,"count":3,"entry":22,"location":100,"size":12})");
  EXPECT_EQ(fieldFromJSON(toJSON(field)), field);
}

}  // namespace
}  // namespace tessaly::tests
