// Reading times.
#include <algorithm>

#include "vstring/formatting/time.h"
#include "vstring/time.h"

namespace vstring {
namespace {

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

int days_in_month(std::int64_t year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && is_leap_year(year) ? 29 : kDays[month - 1];
}

class Parser {
 public:
  explicit Parser(Text text) : text_(text) {}

  // Whether the text goes on as the format says.
  bool parse(Text format) {
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (is_blank(format[i])) {
        skip_blanks();
      } else if (format[i] != '%') {
        if (!literal(format[i])) return false;
      } else {
        std::size_t at = i + 1;
        while (at < format.size() && (format[at] == 'E' || format[at] == 'O')) ++at;
        if (at == format.size()) return literals(format.substr(i));
        if (!convert(format.substr(i, at + 1 - i))) return false;
        i = at;
      }
    }
    return true;
  }

  // The time that the fields make up; nothing when there is no such date.
  std::optional<ParsedTime> result() const {
    if (is_seconds_known_) return from_seconds();
    std::int64_t year = this->year();
    int month = month_;
    int day = day_;
    if (year_day_ != 0 && !is_month_or_day_known_) {
      if (year_day_ > (is_leap_year(year) ? 366 : 365)) return {};
      day = year_day_;
      for (; day > days_in_month(year, month); ++month) day -= days_in_month(year, month);
    }
    if (day > days_in_month(year, month)) return {};
    std::tm when = {};
    when.tm_year = static_cast<int>(year - 1900);
    when.tm_mon = month - 1;
    when.tm_mday = day;
    when.tm_hour = hour();
    when.tm_min = minute_;
    when.tm_sec = second_;
    std::int64_t days = days_since_1970(year, month, day);
    when.tm_wday = static_cast<int>(((days + 4) % 7 + 7) % 7);
    when.tm_yday = static_cast<int>(days - days_since_1970(year, 1, 1));
    when.tm_isdst = -1;
    return ParsedTime{when, at_};
  }

 private:
  void skip_blanks() {
    while (at_ < text_.size() && is_blank(text_[at_])) ++at_;
  }

  bool literal(char c) {
    if (at_ == text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  bool literals(Text piece) {
    return std::ranges::all_of(piece, [this](char c) { return literal(c); });
  }

  // A number of at most `width` digits between two bounds, blanks before it skipped.
  bool number(int width, std::int64_t least, std::int64_t most, std::int64_t& value) {
    skip_blanks();
    std::size_t start = at_;
    value = 0;
    for (; at_ < text_.size() && is_digit(text_[at_]) && width > 0; --width) {
      value = value * 10 + (text_[at_++] - '0');
    }
    return at_ > start && value >= least && value <= most;
  }

  bool number(int width, int least, int most, int& value) {
    std::int64_t wide = 0;
    if (!number(width, std::int64_t{least}, std::int64_t{most}, wide)) return false;
    value = static_cast<int>(wide);
    return true;
  }

  // A number that is read and left out of account.
  bool idle_number(int width, int least, int most) {
    int ignored = 0;
    return number(width, least, most, ignored);
  }

  bool word(Text name) {
    Text piece = text_.substr(at_, name.size());
    bool is_equal = std::ranges::equal(piece, name, {}, lower, lower);
    if (is_equal) at_ += name.size();
    return is_equal;
  }

  // A name of a table, long or short; its number from 1 in `number`.
  template <std::size_t n>
  bool name(const Text (&names)[n], int& number) {
    for (std::size_t i = 0; i < n; ++i) {
      if (!word(names[i]) && !word(names[i].substr(0, kShortName))) continue;
      number = static_cast<int>(i) + 1;
      return true;
    }
    return false;
  }

  bool month_name() {
    is_month_or_day_known_ = true;
    return name(kMonthNames, month_);
  }

  bool day_name() {
    int ignored = 0;
    return name(kDayNames, ignored);
  }

  bool half_of_day() {
    bool is_afternoon = word("PM");
    if (!is_afternoon && !word("AM")) return false;
    half_ = is_afternoon ? 12 : 0;
    return true;
  }

  bool whole_year() {
    century_ = -1;
    if (!number(4, 0, 9999, year_)) return false;
    year_of_century_ = year_ % 100;
    return true;
  }

  bool short_year() {
    if (!number(2, 0, 99, year_of_century_)) return false;
    if (century_ < 0) year_ = year_of_century_ + (year_of_century_ < 69 ? 2000 : 1900);
    return true;
  }

  bool zone_offset() {
    if (literal('Z')) return true;
    if (!literal('+') && !literal('-')) return false;
    int hours = 0;
    if (!number(2, 0, 24, hours)) return false;
    literal(':');
    return idle_number(2, 0, 59);
  }

  // Letters, or the number of hours that stands for a name.
  bool zone_name() {
    bool is_number = literal('+') || literal('-');
    while (at_ < text_.size() && (is_number ? is_digit(text_[at_]) : is_letter(text_[at_]))) ++at_;
    return true;
  }

  bool seconds_since_1970() {
    skip_blanks();
    bool is_negative = literal('-');
    // Beyond this the year is no longer an integer of 32 bits.
    constexpr std::int64_t kMost = 67'000'000'000'000'000;
    if (!number(17, std::int64_t{0}, kMost, seconds_)) return false;
    if (is_negative) seconds_ = -seconds_;
    is_seconds_known_ = true;
    return true;
  }

  // `conversion` is the whole of it, from the percent sign.
  bool convert(Text conversion) {
    Text composite = composite_format(conversion.back());
    if (!composite.empty()) return parse(composite);
    switch (conversion.back()) {
      case 'a':
      case 'A':
        return day_name();
      case 'b':
      case 'B':
      case 'h':
        return month_name();
      case 'C':
        return number(2, 0, 99, century_);
      case 'd':
      case 'e':
        is_month_or_day_known_ = true;
        return number(2, 1, 31, day_);
      case 'g':
        return idle_number(2, 0, 99);
      case 'G':
        return idle_number(4, 0, 9999);
      case 'H':
        is_half_counted_ = false;
        return number(2, 0, 23, hour_);
      case 'I':
        is_half_counted_ = true;
        return number(2, 1, 12, hour_);
      case 'j':
        return number(3, 1, 366, year_day_);
      case 'm':
        is_month_or_day_known_ = true;
        return number(2, 1, 12, month_);
      case 'M':
        return number(2, 0, 59, minute_);
      case 'n':
      case 't':
        skip_blanks();
        return true;
      case 'p':
        return half_of_day();
      case 's':
        return seconds_since_1970();
      case 'S':
        return number(2, 0, 60, second_);
      case 'u':
        return idle_number(1, 1, 7);
      case 'U':
      case 'W':
        return idle_number(2, 0, 53);
      case 'V':
        return idle_number(2, 1, 53);
      case 'w':
        return idle_number(1, 0, 6);
      case 'y':
        return short_year();
      case 'Y':
        return whole_year();
      case 'z':
        return zone_offset();
      case 'Z':
        return zone_name();
      case '%':
        return literal('%');
      default:
        return literals(conversion);
    }
  }

  std::int64_t year() const { return century_ < 0 ? year_ : century_ * 100 + year_of_century_; }

  int hour() const { return is_half_counted_ ? hour_ % 12 + half_ : hour_; }

  std::optional<ParsedTime> from_seconds() const {
    auto seconds = static_cast<std::time_t>(seconds_);
    std::tm when = {};
    if (seconds != seconds_ || localtime_r(&seconds, &when) == nullptr) return {};
    return ParsedTime{when, at_};
  }

  Text text_;
  std::size_t at_ = 0;
  int year_ = 1970;
  int century_ = -1;  // -1 when not given
  int year_of_century_ = 0;
  int month_ = 1;
  int day_ = 1;
  int year_day_ = 0;  // 0 when not given
  bool is_month_or_day_known_ = false;
  int hour_ = 0;
  int half_ = 0;  // what the half of the day adds to the hour, unless that is one of 24
  bool is_half_counted_ = true;
  int minute_ = 0;
  int second_ = 0;
  std::int64_t seconds_ = 0;
  bool is_seconds_known_ = false;
};

}  // namespace

std::optional<ParsedTime> parse_time(Text format, Text text) {
  Parser parser(text);
  if (!parser.parse(format)) return {};
  return parser.result();
}

}  // namespace vstring

char* my_strptime(const char* text, const char* format, struct tm* when) {
  std::optional<vstring::ParsedTime> parsed = vstring::parse_time(format, text);
  if (!parsed) return nullptr;
  *when = parsed->when;
  return const_cast<char*>(text) + parsed->end;
}
