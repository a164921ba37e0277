// wrap and exptabs. Tests: docs/commands/layout.md, tests/transcripts/layout/wrap.vt.
#include <vector>

#include "vstring/arguments.h"
#include "vstring/host/commands.h"
#include "vstring/host/options.h"
#include "vstring/layout/tabs.h"
#include "vstring/layout/wrap.h"

namespace vstring {
namespace {

constexpr BooleanOption<WrapStyle> kWrapOptions[] = {
    {"countbytes", &WrapStyle::countbytes,
     "the `countbytes' value must be either `true' or `false', but received %1"},
    {"expandtabs", &WrapStyle::expandtabs,
     "the `expandtabs' value must be either `true' or `false', but received %1"},
    {"obeylines", &WrapStyle::obeylines,
     "the `obeylines' value must be either `true' or `false', but received %1"},
    {"obeyspaces", &WrapStyle::obeyspaces,
     "the `obeyspaces' value must be either `true' or `false', but received %1"},
};

WrapStyle read_style(const Args& args, const Host& host) {
  WrapStyle style;
  if (args.has(2)) {
    std::int32_t width = args.integer32(2, "second argument must be an integer");
    if (width < 1) fail("second argument must be positive");
    style.width = static_cast<std::size_t>(width);
  }
  read_options(args, host, 1, kWrapOptions, style);
  return style;
}

// Each element is checked for all it must be before the next one is looked at.
std::vector<std::int32_t> read_stops(HostKernelVector* kv, const Elements& list) {
  if (list.empty()) fail("list must be non-empty");
  std::vector<std::int32_t> stops;
  stops.reserve(list.size());
  for (Object element : list) {
    if (kv->IsHostInteger32(element) == 0) fail("second argument must be a list of integers");
    std::int32_t stop = kv->HostToInteger32(element);
    if (stop < 1) fail("second argument must be a list of positive integers");
    if (!stops.empty() && stop <= stops.back()) fail("tab stops must be strictly increasing");
    stops.push_back(stop);
  }
  return stops;
}

void read_tabs(const Args& args, const Host& host, TabSetting& setting) {
  if (args.is_list(2)) {
    setting.stops = read_stops(host.kernel(), Elements(args[2]));
    return;
  }
  std::int32_t width = args.integer32(
      2, "second argument must be either a positive integer or a list of positive integers");
  if (width < 1) fail("second argument must be positive");
  setting.width = static_cast<std::size_t>(width);
}

bool read_countbytes(const Args& args, const Host& host) {
  Object option = args[3];
  if (is_text(option) && text_of(option) == "countbytes") return true;
  if (host_type(option) != HOST_TYPE_EQUATION) {
    fail(
        "third optional argument must be of the form `countbytes' or `countbytes=true' or "
        "`countbytes=false', but received %1",
        option);
  }
  Object name = host_element(option, 1);
  if (!is_text(name)) fail("invalid left hand side of option %1", option);
  if (text_of(name) != "countbytes") fail("unrecognised option name `%1'", name);
  Object value = host_element(option, 2);
  if (IsVexilTrueFalse(host.kernel(), value) == 0) {
    fail("the `countbytes' option must be either `true' or `false'");
  }
  return VexilToBoolean(host.kernel(), value) == 1;
}

}  // namespace

Object cmd::vstring_wrap(Args& args, Host& host) {
  if (!args.has(1)) fail("at least one argument expected");
  Text s = args.string(1, "first argument must be a string");
  WrapStyle style = read_style(args, host);
  if (s.size() <= style.width) return args[1];
  std::size_t room = room_for_wrapped(s, style);
  return host.rewritten(args[1], room,
                        [&](char* out) { return write_wrapped(s, style, out, room); });
}

Object cmd::vstring_exptabs(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  TabSetting setting;
  if (args.has(2)) read_tabs(args, host, setting);
  if (args.has(3)) setting.countbytes = read_countbytes(args, host);
  if (s.find('\t') == Text::npos) return host.unchanged(args[1]);
  std::size_t room = room_for_expanded(s, setting);
  return host.rewritten(args[1], room,
                        [&](char* out) { return write_expanded(s, setting, out, room); });
}

}  // namespace vstring
