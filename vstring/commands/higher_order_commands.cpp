// Commands that call a procedure for each character of a string.
// Tests: docs/commands/higher_order.md, tests/transcripts/commands/higher_order.vt.
#include <string>
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/host/procedure.h"

namespace vstring {
namespace {

constexpr const char* kSecondNoString = "second argument must be a string";

Object call(const Host& host, const Procedure& procedure, char c) {
  return procedure(host.one_char(byte_of(c)));
}

// The first character of what the procedure gives; NUL when that is empty.
char mapped_character(const Host& host, const Procedure& procedure, char c) {
  Object value = call(host, procedure, c);
  if (!is_text(value)) fail("mapped expression must return a string when called");
  return host_text(value)[0];
}

// One pass, which ends where the procedure gives an empty string.
std::string mapped(const Host& host, const Procedure& procedure, Text s) {
  std::string result;
  result.reserve(s.size());
  for (char c : s) {
    char image = mapped_character(host, procedure, c);
    if (image == '\0') break;
    result += image;
  }
  return result;
}

std::string mapped_within(const Host& host, const Procedure& procedure, Text s, Span span) {
  std::string result(s);
  for (char& c : std::span(result).subspan(static_cast<std::size_t>(span.first),
                                           static_cast<std::size_t>(span.count))) {
    c = mapped_character(host, procedure, c);
    if (c == '\0') fail("mapped expression must return a nonempty string when called");
  }
  return result;
}

// One answer decides; without it the other one holds, unless the procedure could not tell.
Object decide(Args& args, Host& host, bool deciding) {
  Text s = args.string(2, kSecondNoString);
  Procedure procedure(host, args[1]);
  Object decision = host.boolean(deciding);
  Object other = host.boolean(!deciding);
  Object unknown = host.fail_value();
  Object result = other;
  for (char c : s) {
    Object answer = call(host, procedure, c);
    if (answer == decision) return decision;
    if (answer == unknown) {
      result = unknown;
    } else if (answer != other) {
      fail("mapped expression must return `true', `false' or `FAIL'");
    }
  }
  return result;
}

// Calls visit(i, answer) for each character of s.
template <class Visit>
void ask_each(Args& args, Host& host, Text s, const char* message, Visit visit) {
  Procedure procedure(host, args[1]);
  Object yes = host.boolean(true);
  Object no = host.boolean(false);
  for (std::size_t i = 0; i < s.size(); ++i) {
    Object answer = call(host, procedure, s[i]);
    if (answer != yes && answer != no) fail(message);
    visit(i, answer == yes);
  }
}

struct Sorted {
  std::string selected;
  std::string removed;
};

Sorted sort_out(Args& args, Host& host) {
  Text s = args.string(2, kSecondNoString);
  Sorted result;
  ask_each(
      args, host, s, "mapped expression must return `true' or `false'",
      [&](std::size_t i, bool answer) { (answer ? result.selected : result.removed) += s[i]; });
  return result;
}

// The value so far is an argument of the call that may collect, so nothing else keeps it.
template <class Characters>
Object fold(Args& args, Host& host, Characters first, Characters last) {
  if (first == last) return args[2];
  Procedure procedure(host, args[1]);
  Object value = args[2];
  for (; first != last; ++first) value = procedure(host.one_char(byte_of(*first)), value);
  return value;
}

// Where each run of equal answers ends.
std::vector<std::uint32_t> run_ends(Args& args, Host& host, Text s) {
  std::vector<std::uint32_t> ends;
  bool last = false;
  ask_each(args, host, s, "grouping procedure must return `true' or `false'",
           [&](std::size_t i, bool answer) {
             if (i > 0 && answer != last) ends.push_back(static_cast<std::uint32_t>(i));
             last = answer;
           });
  if (!s.empty()) ends.push_back(static_cast<std::uint32_t>(s.size()));
  return ends;
}

}  // namespace

// All characters are mapped twice, in two passes over s, and the second pass counts: procedures
// that count their calls or remember what they saw rely on it.
Object cmd::vstring_map(Args& args, Host& host) {
  Text s = args.string(2, kSecondNoString);
  Procedure procedure(host, args[1]);
  if (args.has(3)) {
    Span span = args.span(3, s.size(), "third argument must be a range");
    return host.c_text(mapped_within(host, procedure, s, span).c_str());
  }
  mapped(host, procedure, s);
  return host.c_text(mapped(host, procedure, s).c_str());
}

Object cmd::vstring_andmap(Args& args, Host& host) { return decide(args, host, false); }

Object cmd::vstring_ormap(Args& args, Host& host) { return decide(args, host, true); }

Object cmd::vstring_select(Args& args, Host& host) {
  return host.c_text(sort_out(args, host).selected.c_str());
}

Object cmd::vstring_remove(Args& args, Host& host) {
  return host.c_text(sort_out(args, host).removed.c_str());
}

Object cmd::vstring_selectremove(Args& args, Host& host) {
  Sorted sorted = sort_out(args, host);
  const Object both[] = {host.c_text(sorted.selected.c_str()), host.c_text(sorted.removed.c_str())};
  return host.sequence_of(both);
}

Object cmd::vstring_foldl(Args& args, Host& host) {
  Text s = args.string(3, "third argument must be a string");
  return fold(args, host, s.begin(), s.end());
}

Object cmd::vstring_foldr(Args& args, Host& host) {
  Text s = args.string(3, "third argument must be a string");
  return fold(args, host, s.rbegin(), s.rend());
}

Object cmd::vstring_group(Args& args, Host& host) {
  Text s = args.string(2, kSecondNoString);
  std::vector<std::uint32_t> ends = run_ends(args, host, s);
  host.kernel()->HostUserInfo(1, "Group", "offset table computed");
  if (ends.empty()) return host.nothing();
  Sequence groups = host.sequence(ends.size());
  std::size_t start = 0;
  for (std::size_t i = 0; i < ends.size(); start = ends[i++]) {
    groups.set(i, host.text(s.substr(start, ends[i] - start)));
  }
  return groups.object();
}

Object cmd::vstring_listmap(Args& args, Host& host) {
  Text s = args.string(2, kSecondNoString);
  Procedure procedure(host, args[1]);
  List values = host.list(s.size());
  Protection kept(host, values.object());
  for (std::size_t i = 0; i < s.size(); ++i) values.set(i, call(host, procedure, s[i]));
  return values.finish();
}

}  // namespace vstring
