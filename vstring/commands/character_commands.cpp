// Commands on the characters of a string. Tests: docs/commands/characters.md,
// tests/transcripts/commands/characters.vt.
#include <algorithm>
#include <string>
#include <vector>

#include "vstring/commands/characters.h"
#include "vstring/host/commands.h"
#include "vstring/host/procedure.h"
#include "vstring/language.h"
#include "vstring/search/exact.h"

namespace vstring {
namespace {

constexpr std::size_t kMaxFences = 127;  // pairs of different bytes that are not NUL
constexpr std::size_t kMaxWord = 255;

// The characters with codes lo to hi, which are in 1..255.
Object codes(Host& host, std::int32_t lo, std::int32_t hi) {
  auto size = static_cast<std::size_t>(hi) - static_cast<std::size_t>(lo) + 1;
  return host.text(size, [=](char* out) {
    for (std::int32_t code = lo; code <= hi; ++code) *out++ = static_cast<char>(code);
  });
}

bool is_code(std::int32_t n) { return n >= 1 && n <= 255; }

Object codes_between(Host& host, Object lower, Object upper) {
  HostKernelVector* kv = host.kernel();
  if (!kv->IsHostInteger32(lower) || !kv->IsHostInteger32(upper)) {
    fail("endpoints of range must be small integers");
  }
  std::int32_t lo = kv->HostToInteger32(lower);
  std::int32_t hi = kv->HostToInteger32(upper);
  if (!is_code(lo)) fail("lower endpoint of range must be in the range 1 .. 255");
  if (!is_code(hi)) fail("upper endpoint of range must be in the range 1 .. 255");
  if (lo > hi) fail("left endpoint of range must be less than or equal to the right endpoint");
  return codes(host, lo, hi);
}

}  // namespace

Object cmd::vstring_rmacc(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  return host.text(unaccented_size(s), [s](char* out) { write_unaccented(s, out); });
}

Object cmd::vstring_vis(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  return host.text(visible_size(s), [s](char* out) { write_visible(s, out); });
}

Object cmd::vstring_min(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  unsigned char least = 255;
  for (char c : s) least = std::min(least, byte_of(c));
  return s.empty() ? host.empty_text() : host.one_char(least);
}

Object cmd::vstring_max(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  unsigned char greatest = 0;
  for (char c : s) greatest = std::max(greatest, byte_of(c));
  return host.one_char(greatest);
}

Object cmd::vstring_tab(Args& args, Host& host) {
  std::int32_t n = args.integer32(2, "second argument must be a 32-bit integer");
  if (n < 0) fail("second argument must be non-negative");
  if (static_cast<std::size_t>(n) > HOST_MAX_TEXT) fail(kOutOfMemory);
  Procedure procedure(host, args[1]);
  std::string result;
  for (std::int32_t i = 1; i <= n; ++i) {
    Object value = procedure(host.integer(i));
    if (!is_text(value)) fail("procedure must return a character");
    if (text_of(value).empty()) {
      fail("procedure must return a character (string must be nonempty)");
    }
    result += text_of(value)[0];
  }
  return host.c_text(result.c_str());
}

Object cmd::vstring_iota(Args& args, Host& host) {
  if (args.count() != 1 && args.count() != 2) {
    fail("expecting one or two arguments, but received %1", host.integer(args.count()));
  }
  if (args.is_range(1)) {
    return codes_between(host, host_element(args[1], 1), host_element(args[1], 2));
  }
  if (!args.is_integer(1)) fail("first argument must be an integer or an integer range");
  if (args.has(2)) return codes_between(host, args[1], args[2]);
  std::int32_t n = args.integer32(1, "integer argument must be in the range 1 .. 255");
  if (!is_code(n)) fail("integer argument must be in the range 1 .. 255");
  return codes(host, 1, n);
}

Object cmd::vstring_isbal(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text open = args.string(2, "second argument must be a string");
  Text close = args.string(3, "third argument must be a string");
  if (open.size() != close.size()) {
    fail("second and third fence arguments must be the same length");
  }
  if (open.size() > kMaxFences) fail("too many fences");
  if (!is_repetition_free(std::string(open).append(close))) {
    fail("second and third arguments must be ``disjoint'' and repetition free");
  }
  return host.boolean(is_balanced(s, open, close));
}

Object cmd::vstring_isperm(Args& args, Host& host) {
  return host.boolean(is_repetition_free(args.string(1, "argument must be a string")));
}

Object cmd::vstring_perm(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  if (!args.is_list(2)) fail("second argument must be a list");
  Elements order(args[2]);
  if (order.size() != s.size()) {
    fail("second argument must be a permutation of 1 .. %1, but has %2 elements",
         host.position(s.size()), host.position(order.size()));
  }
  HostKernelVector* kv = host.kernel();
  std::vector<bool> is_used(s.size(), false);
  return host.text(s.size(), [&](char* out) {
    for (Object element : order) {
      // One less than the position; what is no position becomes too large.
      auto place = kv->IsHostInteger32(element)
                       ? static_cast<std::size_t>(std::int64_t{kv->HostToInteger32(element)} - 1)
                       : s.size();
      if (place >= s.size() || is_used[place]) {
        fail("second argument is not a valid permutation of 1 .. %1", host.position(s.size()));
      }
      is_used[place] = true;
      *out++ = s[place];
    }
  });
}

Object cmd::vstring_numboccur(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text t = args.string(2, "second argument must be a string");
  return host.position(count_occurrences(s, t));
}

Object cmd::vstring_syllen(Args& args, Host& host) {
  Text word = args.string(1, "first argument must be a string");
  int syllables = SyllableLength(word.data());
  if (syllables < 0) fail("word must consist entirely of alphabetic characters");
  if (word.size() > kMaxWord) fail("word is too long");
  return host.integer(syllables);
}

Object cmd::vstring_ToByteArray(Args& args, Host& host) {
  return host.byte_array(args.string(1, "argument must be a string"));
}

Object cmd::vstring_tobytearray(Args& args, Host& host) { return vstring_ToByteArray(args, host); }

Object cmd::vstring_frombytearray(Args& args, Host& host) {
  constexpr const char* kNoByteArray = "first argument must be a byte array";
  HostKernelVector* kv = host.kernel();
  if (!kv->IsHostRTable(args[1])) fail(kNoByteArray);
  HostRTableSettings settings;
  kv->HostRTableGetSettings(&settings, args[1]);
  if (settings.data_type != HOST_RTABLE_INTEGER1) fail(kNoByteArray);
  auto size = static_cast<std::size_t>(kv->HostRTableNumElements(args[1]));
  Text bytes(static_cast<const char*>(kv->HostRTableData(args[1])), size);
  return host.text(bytes.substr(0, bytes.find('\0')));  // a text ends at the first NUL
}

}  // namespace vstring
