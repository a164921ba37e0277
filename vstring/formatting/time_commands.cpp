// Times as commands. Tests: docs/commands/formatting.md, tests/transcripts/formatting/time.vt.
#include <ctime>
#include <limits>

#include "vstring/formatting/time.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

// Seconds since 1970, which as an integer end in 2038.
Object seconds_object(const Host& host, std::int64_t seconds) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (seconds < Limits::min() || seconds > Limits::max()) {
    return host.number(static_cast<double>(seconds));
  }
  return host.integer(static_cast<std::int32_t>(seconds));
}

}  // namespace

Object cmd::vstring_fmttime(Args& args, Host& host) {
  Text format = args.string(1, "first argument must be a string");
  std::time_t seconds = 0;
  if (args.has(2)) {
    seconds = args.integer32(2, "second argument must be a 32-bit integer");
  } else {
    seconds = std::time(nullptr);
  }
  tzset();  // the zone may have changed since the last call
  std::tm when = {};
  localtime_r(&seconds, &when);
  return host.text(format_time(format, when, HOST_MAX_TEXT));
}

Object cmd::vstring_ptime(Args& args, Host& host) {
  Text format = args.string(1, "first argument must be a string");
  Text text = args.string(2, "second argument must be a string");
  tzset();
  std::optional<ParsedTime> parsed = parse_time(format, text);
  if (!parsed || parsed->end != text.size()) return host.fail_value();
  const std::tm& when = parsed->when;
  std::tm copy = when;
  Object seconds = seconds_object(host, std::mktime(&copy));
  return host.kernel()->HostNewRecord(
      9, "year", host.integer(when.tm_year + 1900), "month", host.integer(when.tm_mon + 1), "day",
      host.integer(when.tm_mday), "hour", host.integer(when.tm_hour), "minute",
      host.integer(when.tm_min), "second", host.integer(when.tm_sec), "weekday",
      host.integer((when.tm_wday + 6) % 7 + 1), "yearday", host.integer(when.tm_yday + 1), "time",
      seconds);
}

}  // namespace vstring
