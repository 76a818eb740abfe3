#include "platform/UUID.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tessaly {
namespace {

constexpr const char* sample = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";

TEST(UUID, WritesThirtySixUpperCaseCharacters) {
  UUID uuid;
  uuid.bytes = {0x3f, 0x25, 0x04, 0xe0, 0x4f, 0x89, 0x41, 0xd3, 0x9a, 0x0c, 0x03, 0x05, 0xe8, 0x2c, 0x33, 0x01};
  EXPECT_EQ(uuid.text(), sample);
}

TEST(UUID, ReadsEitherCase) {
  ASSERT_TRUE(UUID::parse(sample));
  EXPECT_EQ(UUID::parse(sample)->text(), sample);
  EXPECT_EQ(UUID::parse("3f2504e0-4f89-41d3-9a0c-0305e82c3301"), UUID::parse(sample));
  EXPECT_EQ(UUID::parse("3f2504E0-4f89-41d3-9A0c-0305e82c3301"), UUID::parse(sample));
}

TEST(UUID, RefusesEveryOtherForm) {
  const std::string text = sample;
  EXPECT_FALSE(UUID::parse(""));
  EXPECT_FALSE(UUID::parse(text.substr(0, 35)));
  EXPECT_FALSE(UUID::parse(text + "0"));
  EXPECT_FALSE(UUID::parse(text + '\0'));
  EXPECT_FALSE(UUID::parse(" " + text.substr(1)));
  EXPECT_FALSE(UUID::parse("{" + text + "}"));
  EXPECT_FALSE(UUID::parse("3F2504E04F8941D39A0C0305E82C3301"));
  EXPECT_FALSE(UUID::parse("3F2504E0-4F89-41D3-9A0C+0305E82C3301"));
  EXPECT_FALSE(UUID::parse("3F2504E0-4F89-41D3-9A0C-0305E82C330G"));
}

TEST(UUID, ReadsNothingBehindTheTextItIsGiven) {
  const std::string longer = std::string(sample) + "AAAA";
  EXPECT_EQ(UUID::parse(std::string_view(longer).substr(0, 36)), UUID::parse(sample));
}

TEST(UUID, MakesARandomVersionFourIdentifierEveryTime) {
  std::set<UUID> seen;
  for (int i = 0; i < 100; ++i) {
    const UUID made = UUID::random();
    EXPECT_EQ(made.text()[14], '4');
    seen.insert(made);
  }
  EXPECT_EQ(seen.size(), 100u);
}

}  // namespace
}  // namespace tessaly
