// Times as text and back. Entry points: format_time, parse_time; behind them the exported
// my_strftime and my_strptime (include/vstring/time.h), which tell what they do. Tests:
// tests/unit/time_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

inline constexpr Text kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};
inline constexpr Text kMonthNames[] = {"January",   "February", "March",    "April",
                                       "May",       "June",     "July",     "August",
                                       "September", "October",  "November", "December"};
inline constexpr std::size_t kShortName = 3;  // letters of a short name

/// What a conversion stands for that others make up; empty for all others.
Text composite_format(char conversion);

/// The time as the format says. Throws std::bad_alloc, also when the text would be longer than
/// `limit`.
std::string format_time(Text format, const std::tm& when, std::size_t limit);

/// A time read from a text, and where the reading ended.
struct ParsedTime {
  std::tm when;
  std::size_t end;
};

/// Reads the start of the text; nothing when it does not match.
std::optional<ParsedTime> parse_time(Text format, Text text);

/// Seconds since 1970 of a local time, as mktime counts them. Of a time that the clock shows twice
/// it is the one with the distance from Greenwich of `when`, or with tm_isdst < 0 the earlier one.
std::time_t local_seconds(const std::tm& when);

/// Days from 1970-01-01 to a date of the Gregorian calendar, month 1 .. 12.
std::int64_t days_since_1970(std::int64_t year, int month, int day);
bool is_leap_year(std::int64_t year);

}  // namespace vstring
