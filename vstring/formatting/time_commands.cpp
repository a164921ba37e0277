// Times as commands. Tests: docs/commands/formatting.md, tests/transcripts/formatting/time.vt.
#include <ctime>

#include "vstring/formatting/time.h"
#include "vstring/host/commands.h"

namespace vstring {
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
  Object seconds = host.whole(local_seconds(when));
  return host.kernel()->HostNewRecord(
      9, "year", host.integer(when.tm_year + 1900), "month", host.integer(when.tm_mon + 1), "day",
      host.integer(when.tm_mday), "hour", host.integer(when.tm_hour), "minute",
      host.integer(when.tm_min), "second", host.integer(when.tm_sec), "weekday",
      host.integer((when.tm_wday + 6) % 7 + 1), "yearday", host.integer(when.tm_yday + 1), "time",
      seconds);
}

}  // namespace vstring
