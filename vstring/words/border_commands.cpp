// Borders, periods and covers as commands. Tests: docs/commands/borders.md,
// tests/transcripts/words/borders.vt.
#include <new>

#include "vstring/host/commands.h"
#include "vstring/words/borders.h"

namespace vstring {
namespace {

constexpr const char* kNoString = "argument must be a string";

}  // namespace

Object cmd::vstring_borderarray(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  List result = host.list(s.size());
  BorderTable borders(s);
  for (std::size_t i = 0; i < s.size(); ++i) result.set(i, host.integer(borders[i + 1]));
  return result.finish();
}

// Tells that memory ran out by a length that no border has.
Object cmd::vstring_borderlen(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.empty()) return host.integer(0);
  try {
    return host.integer(BorderTable(s)[s.size()]);
  } catch (const std::bad_alloc&) {
    return host.integer(-1);
  }
}

Object cmd::vstring_border(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.size() < 2) return host.empty_text();
  std::int32_t length = BorderTable(s)[s.size()];
  return host.piece(s.substr(s.size() - static_cast<std::size_t>(length)));
}

// The array of covers has never held anything but zeros, and programs take it so.
Object cmd::vstring_coverarray(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  List result = host.list(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) result.set(i, host.integer(0));
  return result.finish();
}

Object cmd::vstring_overlap(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text t = args.string(2, "second argument must be a string");
  if (args[1] == args[2]) return host.position(s.size());
  return host.position(overlap_length(s, t));
}

Object cmd::vstring_isperiod(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  std::int32_t period = args.integer32(2, "second argument must be a 32-bit integer");
  if (period < 1) fail("second argument must be positive");
  // A length beyond the word's is not taken for a period of it.
  if (static_cast<std::size_t>(period) > s.size()) return host.boolean(false);
  return host.boolean(has_period(s, static_cast<std::size_t>(period)));
}

// Tells that memory ran out by a period longer than the word.
Object cmd::vstring_period(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.empty()) return host.integer(0);
  try {
    return host.position(s.size() - static_cast<std::size_t>(BorderTable(s)[s.size()]));
  } catch (const std::bad_alloc&) {
    return host.position(s.size() + 1);
  }
}

Object cmd::vstring_primroot(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.empty()) return args[1];
  std::size_t length = root_length(s);
  if (length == s.size() && length > 1) return args[1];
  try {
    return host.text(s.substr(0, length));
  } catch (const std::bad_alloc&) {
    return host.empty_text();
  }
}

Object cmd::vstring_isprim(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return host.boolean(!s.empty() && root_length(s) == s.size());
}

Object cmd::vstring_bfi(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return host.boolean(s.empty() || BorderTable(s)[s.size()] == 0);
}

}  // namespace vstring
