// The everyday commands: reading, taking apart and putting together strings.
// Tests: docs/commands/editing.md, tests/transcripts/commands/editing.vt.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "vstring/commands/editing.h"
#include "vstring/core/byte_set.h"
#include "vstring/core/checked.h"
#include "vstring/host/commands.h"
#include "vstring/host/ranges.h"

namespace vstring {
namespace {

constexpr const char* kFirstNoString = "first argument must be a string";
constexpr const char* kSecondNoString = "second argument must be a string";
constexpr const char* kThirdNoString = "third argument must be a string";

// Two pieces in a row.
Object joined(Host& host, Text a, Text b) {
  return host.text(a.size() + b.size(), [&](char* out) {
    std::memcpy(out, a.data(), a.size());
    std::memcpy(out + a.size(), b.data(), b.size());
  });
}

// Three pieces in a row.
Object joined(Host& host, Text a, Text b, Text c) {
  return host.text(a.size() + b.size() + c.size(), [&](char* out) {
    std::memcpy(out, a.data(), a.size());
    std::memcpy(out + a.size(), b.data(), b.size());
    std::memcpy(out + a.size() + b.size(), c.data(), c.size());
  });
}

// The 1-based position of the first character of `character` that `find` finds in the text, 0 when
// there is none. An empty text stands for its NUL, which every text has at its end.
template <class Find>
Object position_of(Args& args, Host& host, Find find) {
  Text character = args.string(1, kFirstNoString);
  Text text = args.string(2, kSecondNoString);
  if (character.empty()) return host.position(text.size() + 1);
  std::size_t found = find(text, character[0]);
  return host.position(found == Text::npos ? 0 : found + 1);
}

// An integer as a position. One beyond 32 bits, whose sign nobody can ask for, lies behind every
// text.
std::int64_t position_argument(const Args& args, int i) {
  if (!args.is_integer32(i)) return std::numeric_limits<std::int64_t>::max();
  return args.integer32(i, "");
}

// How many bytes at the front of s take(s, t) takes.
std::size_t length_made_of(Text s, Text t) { return find_other(s, ByteSet(t)); }

}  // namespace

Object cmd::vstring_length(Args& args, Host& host) {
  return host.position(args.string(1, kFirstNoString).size());
}

Object cmd::vstring_ord(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return host.integer(s.empty() ? 0 : byte_of(s[0]));
}

Object cmd::vstring_char(Args& args, Host& host) {
  if (!args.is_integer(1)) fail("argument must be a 32-bit integer");
  std::int32_t code = args.integer32(1, "integer argument is too large");
  if (code < 0 || code > 255) fail("integer argument is too large");
  return host.one_char(static_cast<unsigned char>(code));
}

Object cmd::vstring_strchr(Args& args, Host& host) {
  return position_of(args, host, [](Text text, char c) { return text.find(c); });
}

Object cmd::vstring_strrchr(Args& args, Host& host) { return position_of(args, host, find_last); }

Object cmd::vstring_has(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text c = args.string(2, kSecondNoString);
  if (c.empty()) fail("second argument must not be the empty string");
  return host.boolean(s.find(c[0]) != Text::npos);
}

Object cmd::vstring_compare(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.boolean(s <= t);
}

Object cmd::vstring_compareci(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.boolean(compare_ignoring_case(s, t) <= 0);
}

Object cmd::vstring_isprefix(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.boolean(t.starts_with(s));
}

Object cmd::vstring_issuffix(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.boolean(t.ends_with(s));
}

Object cmd::vstring_substr(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (!args.is_range(2)) fail("second argument must be a range");
  if (s.empty()) return host.empty_text();
  std::int32_t lo = 0;
  std::int32_t hi = 0;
  read_range(host.kernel(), args[2], lo, hi);
  if (std::int64_t{hi} + 1 == lo) return host.empty_text();  // a..a-1, wherever a lies
  Span span = args.span(2, s.size(), "second argument must be a range");
  auto count = static_cast<std::size_t>(span.count);
  bool is_string_object = host_type(args[1]) == HOST_TYPE_STRING;
  if (count == s.size() && is_string_object) return args[1];
  return host.piece(s.substr(static_cast<std::size_t>(span.first), count));
}

Object cmd::vstring_take(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (args.is_string(2)) return host.text(s.substr(0, length_made_of(s, args.text(2))));
  if (!args.is_integer(2)) fail("second argument must be a positive integer or a string");
  std::int32_t n = args.integer32(2, "second argument is too large");
  if (n < 0) fail("second argument must be non-negative");
  auto length = static_cast<std::size_t>(n);
  return length >= s.size() ? args[1] : host.text(s.substr(0, length));
}

Object cmd::vstring_drop(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (args.is_string(2)) return host.piece(s.substr(length_made_of(s, args.text(2))));
  if (!args.is_integer(2)) fail("second argument must be a positive integer or a string");
  std::int32_t n = args.integer32(2, "second argument is too large");
  if (n < 0) fail("second argument must be positive");  // what is said; 0 is accepted all the same
  return host.piece(s.substr(std::min(static_cast<std::size_t>(n), s.size())));
}

Object cmd::vstring_snarf(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.text(s.substr(0, find_member(s, ByteSet(t))));
}

Object cmd::vstring_insert(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (!args.is_integer32(2)) fail("second argument must be a 32-bit integer");
  Text t = args.string(3, kThirdNoString);
  std::size_t i = args.index(2, s.size());
  return joined(host, s.substr(0, i), t, s.substr(i));
}

Object cmd::vstring_delete(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Span span = args.span(2, s.size(), "second argument must be a range");
  auto first = static_cast<std::size_t>(span.first);
  return joined(host, s.substr(0, first), s.substr(first + static_cast<std::size_t>(span.count)));
}

// Both types, then both signs, then both sizes.
Object cmd::vstring_exchange(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (!args.is_integer(2)) fail("second argument must be a 32-bit integer");
  if (!args.is_integer(3)) fail("third argument must be a 32-bit integer");
  std::int64_t i = position_argument(args, 2);
  std::int64_t j = position_argument(args, 3);
  if (i < 1) fail("second argument must be positive");
  if (j < 1) fail("third argument must be positive");
  auto length = static_cast<std::int64_t>(s.size());
  if (i > length) fail("second argument is too large");
  if (j > length) fail("third argument is too large");
  return host.text(s.size(), [&](char* out) {
    std::memcpy(out, s.data(), s.size());
    std::swap(out[i - 1], out[j - 1]);
  });
}

Object cmd::vstring_reverse(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return host.text(s.size(), [s](char* out) { write_reversed(s, out); });
}

Object cmd::vstring_rotate(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  if (!args.is_integer32(2)) {
    fail("expecting argument %1 to be a 32-bit integer, but got %2", host.integer(2), args[2]);
  }
  std::int64_t k = args.integer32(2, "");
  if (k == 0 || s.size() < 2) return args[1];
  // To the right whatever the sign: rotate(s, -k) is rotate(s, k).
  std::size_t shift = static_cast<std::size_t>(std::abs(k)) % s.size();
  return host.text(s.size(), [&](char* out) { write_rotated(s, shift, out); });
}

Object cmd::vstring_shift(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::int64_t k = args.integer32(2, "second argument must be a 32-bit integer");
  std::size_t blanks = std::min(static_cast<std::size_t>(std::abs(k)), s.size());
  std::size_t kept = s.size() - blanks;
  return host.text(s.size(), [&](char* out) {
    std::memset(out, ' ', s.size());
    std::memcpy(out + (k > 0 ? blanks : 0), s.data() + (k > 0 ? 0 : blanks), kept);
  });
}

Object cmd::vstring_repeat(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::int32_t n = args.integer32(2, "second argument must be a 32-bit integer");
  if (n == 1) return args[1];
  if (s.empty()) return host.empty_text();
  if (n < 0) fail("second argument must be non-negative");
  auto count = static_cast<std::size_t>(n);
  return host.text(checked_product(s.size(), count),
                   [&](char* out) { write_repeated(s, count, out); });
}

Object cmd::vstring_fill(Args& args, Host& host) {
  Text c = args.string(1, kFirstNoString);
  std::int32_t n = args.integer32(2, "second argument must be a 32-bit integer");
  if (n < 0) fail("second argument must be non-negative");
  if (c.empty()) fail("the first argument may not be the empty string");
  auto count = static_cast<std::size_t>(n);
  // Up to the shared buffer's very end, unlike other texts.
  return host.text(
      count, [&](char* out) { std::memset(out, c[0], count); }, SMALL_BUFFER_BASE_SIZE);
}

Object cmd::vstring_tr(Args& args, Host& host) {
  Text from = args.string(1, kFirstNoString);
  Text to = args.string(2, kSecondNoString);
  Text text = args.string(3, kThirdNoString);
  if (from.size() > to.size()) fail("second argument must be as long as the first");
  return host.text(text.size(), [&](char* out) { write_translated(from, to, text, out); });
}

Object cmd::vstring_cap(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  Text u = args.string(3, kThirdNoString);
  return joined(host, t, s, u);
}

}  // namespace vstring
