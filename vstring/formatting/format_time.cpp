// Writing times, and what writing and reading share.
#include <algorithm>
#include <new>
#include <utility>

#include "vstring/formatting/time.h"
#include "vstring/time.h"

namespace vstring {

Text composite_format(char conversion) {
  switch (conversion) {
    case 'c':
      return "%a %b %e %H:%M:%S %Y";
    case 'D':
    case 'x':
      return "%m/%d/%y";
    case 'F':
      return "%Y-%m-%d";
    case 'r':
      return "%I:%M:%S %p";
    case 'R':
      return "%H:%M";
    case 'T':
    case 'X':
      return "%H:%M:%S";
    default:
      return {};
  }
}

bool is_leap_year(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int64_t days_since_1970(std::int64_t year, int month, int day) {
  // Years that begin in March have their leap day at the end.
  std::int64_t y = year - (month <= 2 ? 1 : 0);
  std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  std::int64_t year_of_era = y - era * 400;
  std::int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  std::int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

namespace {

std::tm local_time(std::time_t seconds) {
  std::tm when = {};
  localtime_r(&seconds, &when);
  return when;
}

}  // namespace

// Where the clock is set back, mktime gives whichever of two times is closer to what it was last
// asked for. The other one is told by the distance from Greenwich a day away.
std::time_t local_seconds(const std::tm& when) {
  constexpr std::time_t kDay = 86400;
  std::tm copy = when;
  std::time_t seconds = std::mktime(&copy);
  long offset = local_time(seconds).tm_gmtoff;
  for (std::time_t nearby : {seconds - kDay, seconds + kDay}) {
    std::tm there = local_time(nearby);
    std::time_t other = seconds + offset - there.tm_gmtoff;
    bool is_meant = when.tm_isdst < 0
                        ? other < seconds
                        : when.tm_isdst == there.tm_isdst && when.tm_gmtoff == there.tm_gmtoff;
    if (is_meant && local_time(other).tm_gmtoff == there.tm_gmtoff) return other;
  }
  return seconds;
}

namespace {

std::int64_t year_of(const std::tm& when) { return std::int64_t{when.tm_year} + 1900; }

// The quotient rounded down.
std::int64_t floor_div(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// The day of the week, Monday 0 to Sunday 6.
std::int64_t monday_based(const std::tm& when) { return (std::int64_t{when.tm_wday} + 6) % 7; }

int days_in_year(std::int64_t year) { return is_leap_year(year) ? 366 : 365; }

// A week of the year that ISO 8601 counts it to: weeks begin on Monday, the first one holds the
// year's first Thursday.
struct IsoWeek {
  std::int64_t year;
  std::int64_t week;
};

IsoWeek iso_week(const std::tm& when) {
  std::int64_t year = year_of(when);
  // The day of the year of this week's Thursday decides.
  std::int64_t thursday = when.tm_yday - monday_based(when) + 3;
  if (thursday < 0) {
    --year;
    thursday += days_in_year(year);
  } else if (thursday >= days_in_year(year)) {
    thursday -= days_in_year(year);
    ++year;
  }
  return {year, thursday / 7 + 1};
}

class Formatter {
 public:
  Formatter(const std::tm& when, std::size_t limit) : when_(when), limit_(limit) {}

  void format(Text format) {
    for (std::size_t i = 0; i < format.size();) {
      std::size_t percent = std::min(format.find('%', i), format.size());
      put(format.substr(i, percent - i));
      if (percent == format.size()) return;
      std::size_t at = percent + 1;
      while (at < format.size() && (format[at] == 'E' || format[at] == 'O')) ++at;
      if (at == format.size()) {
        put(format.substr(percent));
        return;
      }
      if (!convert(format[at])) put(format.substr(percent, at + 1 - percent));
      i = at + 1;
    }
  }

  std::string take() { return std::move(text_); }

 private:
  void put(Text piece) {
    if (piece.size() > limit_ - text_.size()) throw std::bad_alloc();
    text_.append(piece);
  }

  // A number with at least `width` digits, filled up with `fill`.
  bool number(std::int64_t value, std::size_t width, char fill = '0') {
    std::string digits = std::to_string(value < 0 ? -value : value);
    if (value < 0) put("-");
    if (digits.size() < width) put(std::string(width - digits.size(), fill));
    put(digits);
    return true;
  }

  bool text(Text piece) {
    put(piece);
    return true;
  }

  // A member of a table of names; "?" for a value outside it.
  template <std::size_t n>
  bool name(const Text (&names)[n], int i, std::size_t length = Text::npos) {
    bool is_inside = i >= 0 && static_cast<std::size_t>(i) < n;
    return text(is_inside ? names[static_cast<std::size_t>(i)].substr(0, length) : "?");
  }

  // Nothing when tm_isdst says that nothing is known of the zone.
  bool zone_offset() {
    if (when_.tm_isdst < 0) return true;
    long minutes = when_.tm_gmtoff / 60;
    put(when_.tm_gmtoff < 0 ? "-" : "+");
    if (minutes < 0) minutes = -minutes;
    return number(minutes / 60 * 100 + minutes % 60, 4);
  }

  bool convert(char conversion) {
    Text composite = composite_format(conversion);
    if (!composite.empty()) {
      format(composite);
      return true;
    }
    switch (conversion) {
      case 'a':
        return name(kDayNames, when_.tm_wday, kShortName);
      case 'A':
        return name(kDayNames, when_.tm_wday);
      case 'b':
      case 'h':
        return name(kMonthNames, when_.tm_mon, kShortName);
      case 'B':
        return name(kMonthNames, when_.tm_mon);
      case 'C':
        return number(floor_div(year_of(when_), 100), 2);
      case 'd':
        return number(when_.tm_mday, 2);
      case 'e':
        return number(when_.tm_mday, 2, ' ');
      case 'g':
        return number((iso_week(when_).year % 100 + 100) % 100, 2);
      case 'G':
        return number(iso_week(when_).year, 1);
      case 'H':
        return number(when_.tm_hour, 2);
      case 'I':
        return number((std::int64_t{when_.tm_hour} + 11) % 12 + 1, 2);
      case 'j':
        return number(std::int64_t{when_.tm_yday} + 1, 3);
      case 'm':
        return number(std::int64_t{when_.tm_mon} + 1, 2);
      case 'M':
        return number(when_.tm_min, 2);
      case 'n':
        return text("\n");
      case 'p':
        return text(when_.tm_hour < 12 ? "AM" : "PM");
      case 's':
        return number(local_seconds(when_), 1);
      case 'S':
        return number(when_.tm_sec, 2);
      case 't':
        return text("\t");
      case 'u':
        return number(monday_based(when_) + 1, 1);
      case 'U':
        return number((std::int64_t{when_.tm_yday} + 7 - when_.tm_wday) / 7, 2);
      case 'V':
        return number(iso_week(when_).week, 2);
      case 'w':
        return number(when_.tm_wday, 1);
      case 'W':
        return number((std::int64_t{when_.tm_yday} + 7 - monday_based(when_)) / 7, 2);
      case 'y':
        return number((year_of(when_) % 100 + 100) % 100, 2);
      case 'Y':
        return number(year_of(when_), 1);
      case 'z':
        return zone_offset();
      case 'Z':
        return text(when_.tm_zone == nullptr ? "" : when_.tm_zone);
      case '%':
        return text("%");
      default:
        return false;
    }
  }

  const std::tm& when_;
  std::size_t limit_;
  std::string text_;
};

}  // namespace

std::string format_time(Text format, const std::tm& when, std::size_t limit) {
  Formatter formatter(when, limit);
  formatter.format(format);
  return formatter.take();
}

}  // namespace vstring

size_t my_strftime(char* buffer, size_t size, const char* format, const struct tm* when) {
  if (size == 0) return 0;
  try {
    std::string text = vstring::format_time(format, *when, size - 1);
    buffer[text.copy(buffer, text.size())] = '\0';
    return text.size();
  } catch (const std::bad_alloc&) {
    return 0;
  }
}
