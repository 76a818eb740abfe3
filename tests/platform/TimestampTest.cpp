#include "platform/Timestamp.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace tessaly {
namespace {

Timestamp at(std::int64_t secondsSince1970) {
  return Timestamp(std::chrono::seconds(secondsSince1970));
}

TEST(Timestamp, WritesTheInternetFormInUTC) {
  EXPECT_EQ(iso8601Text(at(0)), "1970-01-01T00:00:00Z");
  EXPECT_EQ(iso8601Text(at(1794774192)), "2026-11-15T20:23:12Z");
  EXPECT_EQ(iso8601Text(at(951782399)), "2000-02-28T23:59:59Z");
  EXPECT_EQ(iso8601Text(at(-1)), "1969-12-31T23:59:59Z");
}

TEST(Timestamp, ReadsWhatItWrites) {
  for (const std::int64_t moment : {-62167219200LL, -1LL, 0LL, 951868800LL, 1794774192LL, 253402300799LL}) {
    EXPECT_EQ(parseISO8601(iso8601Text(at(moment))), at(moment)) << iso8601Text(at(moment));
  }
}

TEST(Timestamp, ReadsAnHourOffset) {
  EXPECT_EQ(parseISO8601("2026-11-15T21:23:12+01:00"), at(1794774192));
  EXPECT_EQ(parseISO8601("2026-11-15T21:23:12+0100"), at(1794774192));
  EXPECT_EQ(parseISO8601("2026-11-15T14:53:12-05:30"), at(1794774192));
  EXPECT_EQ(parseISO8601("2027-01-01T00:30:00+01:00"), parseISO8601("2026-12-31T23:30:00Z"));
}

TEST(Timestamp, RefusesDaysAndTimesThatDoNotExist) {
  EXPECT_TRUE(parseISO8601("2024-02-29T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-02-29T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-00-10T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-13-10T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-04-31T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-04-00T00:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-04-01T24:00:00Z"));
  EXPECT_FALSE(parseISO8601("2026-04-01T23:60:00Z"));
  EXPECT_FALSE(parseISO8601("2026-04-01T23:59:60Z"));
  EXPECT_FALSE(parseISO8601("2026-04-01T23:59:59+24:00"));
  EXPECT_FALSE(parseISO8601("2026-04-01T23:59:59+00:60"));
}

TEST(Timestamp, DropsAFractionOfASecond) {
  const auto whole = parseISO8601("2026-11-15T20:23:12Z");
  ASSERT_TRUE(whole);
  for (const char* text : {"2026-11-15T20:23:12.0Z", "2026-11-15T20:23:12.5Z", "2026-11-15T20:23:12.999999999Z",
                           "2026-11-15T22:23:12.123+02:00"}) {
    EXPECT_EQ(parseISO8601(text), whole) << text;
  }
}

TEST(Timestamp, RefusesEveryOtherForm) {
  for (const char* text : {"",
                           "2026",
                           "2026-11-15",
                           "2026-11-15T20:23Z",
                           "2026-11-15T20:23:12",
                           "2026-11-15 20:23:12Z",
                           "2026-11-15T20:23:12.Z",
                           "2026-11-15T20:23:12,5Z",
                           "2026-11-15T20:23:12.5",
                           "2026-11-15T20:23:12z",
                           "2026-11-15T20:23:12Z ",
                           " 2026-11-15T20:23:12Z",
                           "20261115T202312Z",
                           "+026-11-15T20:23:12Z",
                           "2026-1-015T20:23:12Z",
                           "2026-11-15T20:23:12+1:00",
                           "2026-11-15T20:23:12+",
                           "2026-11-15T20:23:12-01:00Z",
                           "12026-11-15T20:23:12Z",
                           "2026-11-15T-2:23:12Z"}) {
    EXPECT_FALSE(parseISO8601(text)) << text;
  }
}

TEST(Timestamp, RefusesAMomentThatFourDigitsOfAYearCannotShow) {
  EXPECT_FALSE(parseISO8601("0000-01-01T00:30:00+01:00"));
  EXPECT_FALSE(parseISO8601("9999-12-31T23:30:00-01:00"));
}

TEST(Timestamp, TakesThePresentInWholeSeconds) {
  const auto before = std::chrono::system_clock::now();
  const Timestamp now = currentTimestamp();
  EXPECT_LE(now, std::chrono::system_clock::now());
  EXPECT_GT(now, before - std::chrono::seconds(1));
}

}  // namespace
}  // namespace tessaly
