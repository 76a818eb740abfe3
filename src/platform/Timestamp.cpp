#include "platform/Timestamp.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace tessaly {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

/// Takes fixed-width numbers and letters off the front of a text; stays failed after the first mismatch.
class FixedFields {
 public:
  explicit FixedFields(std::string_view text) : rest_(text) {}

  /// Exactly `digits` decimal digits, at most `maximum`.
  int number(std::size_t digits, int maximum) {
    const std::string_view field = rest_.substr(0, digits);
    if (field.size() != digits || field.find_first_not_of("0123456789") != std::string_view::npos) {
      ok_ = false;
      return 0;
    }
    int value = 0;
    std::from_chars(field.data(), field.data() + field.size(), value);
    ok_ = ok_ && value <= maximum;
    rest_.remove_prefix(digits);
    return value;
  }

  /// One decimal digit or more.
  void digits() {
    const std::size_t count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    ok_ = ok_ && count > 0;
    rest_.remove_prefix(count);
  }

  void letter(char expected) { ok_ = takeIf(expected) && ok_; }

  /// Takes the letter if it is next.
  bool takeIf(char expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  [[nodiscard]] bool endsWell() const { return ok_ && rest_.empty(); }

 private:
  std::string_view rest_;
  bool ok_ = true;
};

year_month_day dateFrom(FixedFields& fields) {
  const int year = fields.number(4, 9999);
  fields.letter('-');
  const int month = fields.number(2, 12);
  fields.letter('-');
  const int day = fields.number(2, 31);
  return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
          std::chrono::day(static_cast<unsigned>(day))};
}

seconds timeOfDayFrom(FixedFields& fields) {
  const hours hour(fields.number(2, 23));
  fields.letter(':');
  const minutes minute(fields.number(2, 59));
  fields.letter(':');
  const seconds second(fields.number(2, 59));
  if (fields.takeIf('.')) fields.digits();
  return hour + minute + second;
}

/// "Z", "+02:00" or "+0200".
seconds offsetFrom(FixedFields& fields) {
  if (fields.takeIf('Z')) return seconds(0);
  const bool west = fields.takeIf('-');
  if (!west) fields.letter('+');
  const hours hour(fields.number(2, 23));
  fields.takeIf(':');
  const seconds offset = hour + minutes(fields.number(2, 59));
  return west ? -offset : offset;
}

/// Years that the four digits of the text form can show; an offset can lead out of them.
bool isWritable(Timestamp time) {
  const year_month_day date(std::chrono::floor<std::chrono::days>(time));
  return date.year() >= std::chrono::year(0) && date.year() <= std::chrono::year(9999);
}

}  // namespace

Timestamp currentTimestamp() {
  return std::chrono::floor<seconds>(std::chrono::system_clock::now());
}

std::string iso8601Text(Timestamp time) {
  const sys_days day = std::chrono::floor<std::chrono::days>(time);
  const year_month_day date(day);
  const std::chrono::hh_mm_ss<seconds> clock(time - day);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), clock.hours().count(),
                     clock.minutes().count(), clock.seconds().count());
}

std::optional<Timestamp> parseISO8601(std::string_view text) {
  FixedFields fields(text);
  const year_month_day date = dateFrom(fields);
  fields.letter('T');
  const seconds timeOfDay = timeOfDayFrom(fields);
  const seconds offset = offsetFrom(fields);
  if (!fields.endsWell() || !date.ok()) return std::nullopt;
  const Timestamp time = sys_days(date) + timeOfDay - offset;
  if (!isWritable(time)) return std::nullopt;
  return time;
}

}  // namespace tessaly
