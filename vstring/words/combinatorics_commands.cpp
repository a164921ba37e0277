// Conjugates, factorisations, patterns and repetitions as commands. Tests:
// docs/commands/combinatorics.md, tests/transcripts/words/combinatorics.vt.
#include <new>
#include <string>

#include "vstring/core/byte_set.h"
#include "vstring/core/least_rotation.h"
#include "vstring/host/commands.h"
#include "vstring/words/factorisation.h"
#include "vstring/words/repetitions.h"
#include "vstring/words/shape.h"

namespace vstring {
namespace {

constexpr const char* kNoString = "argument must be a string";
constexpr const char* kFirstNoString = "first argument must be a string";
constexpr const char* kSecondNoString = "second argument must be a string";

// Whether the rotation of s that starts at i is that of t that starts at j.
bool are_equal_rotations(Text s, std::size_t i, Text t, std::size_t j) {
  if (i > j) return are_equal_rotations(t, j, s, i);
  std::size_t n = s.size();
  return s.substr(i, n - j) == t.substr(j) && s.substr(i + n - j) == t.substr(0, j - i) &&
         s.substr(0, i) == t.substr(j - i, i);
}

Object factor_list(const Host& host, Text word, const FactorEnds& ends) {
  List result = host.list(ends.size());
  std::size_t start = 0;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    result.set(i, host.text(word.substr(start, ends[i] - start)));
    start = ends[i];
  }
  return result.finish();
}

// The first character of a letter argument; the default when it has none.
char letter(Text text, std::size_t i, char otherwise) {
  return i < text.size() ? text[i] : otherwise;
}

// The base that the option of patcanon names.
unsigned char pattern_base(Object option) {
  constexpr const char* kForm = "option must be of the form `base = <character>', but received %1";
  if (host_type(option) != HOST_TYPE_EQUATION) fail(kForm, option);
  Object name = host_words(option)[1];
  Object value = host_words(option)[2];
  if (host_type(name) != HOST_TYPE_NAME || text_of(name) != "base") fail(kForm, option);
  if (!is_text(value)) {
    fail("the value for the `base' option must be a character, but received %1", value);
  }
  Text text = text_of(value);
  if (text.empty()) fail("the value for the `base' option must not be the empty string");
  return byte_of(text[0]);
}

}  // namespace

Object cmd::vstring_conjp(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  bool answer =
      s.size() == t.size() && are_equal_rotations(s, least_rotation(s), t, least_rotation(t));
  return host.boolean(answer);
}

// Gives "" when there is no memory for the rotation.
Object cmd::vstring_minconj(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  std::size_t start = least_rotation(s);
  if (start == 0) return host.piece(s);
  try {
    return host.text(s.size(), [&](char* out) {
      out += s.copy(out, s.size(), start);
      s.copy(out, start);
    });
  } catch (const std::bad_alloc&) {
    return host.empty_text();
  }
}

Object cmd::vstring_expsum(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  if (t.empty()) return host.integer(-1);
  return host.position(count_members(s, ByteSet(t.substr(0, 1))));
}

Object cmd::vstring_monfac(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return factor_list(host, s, monotone_factors(s));
}

Object cmd::vstring_lynfac(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return factor_list(host, s, lyndon_factors(s));
}

Object cmd::vstring_ismono(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return host.boolean(first_fall(s) == s.size() || first_rise(s) == s.size());
}

Object cmd::vstring_ispal(Args& args, Host& host) {
  return host.boolean(is_palindrome(args.string(1, kNoString)));
}

Object cmd::vstring_pateqv(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  Text t = args.string(2, kSecondNoString);
  return host.boolean(s.size() == t.size() && have_same_pattern(s, t));
}

Object cmd::vstring_patcanon(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  unsigned char base = args.has(2) ? pattern_base(args[2]) : 1;
  Scratch scratch(s.size() + 1);
  scratch.data()[canonical_pattern(s, base, scratch.data())] = '\0';
  return host.c_text(scratch.data());
}

Object cmd::vstring_thue(Args& args, Host& host) {
  std::int32_t length = args.integer32(1, "argument must be a 32-bit integer");
  if (length < 0) fail("argument must be non-negative");
  char even = '0';
  char odd = '1';
  if (args.has(2)) {
    Text letters = args.string(2, kSecondNoString);
    even = letter(letters, 0, even);
    odd = args.has(3) ? letter(args.string(3, "third argument must be a string"), 0, odd)
                      : letter(letters, 1, odd);
  }
  auto size = static_cast<std::size_t>(length);
  return host.text(size, [&](char* out) { write_thue_morse(size, even, odd, out); });
}

// Counted before anything is made: a word may have more repeats than a sequence holds.
Object cmd::vstring_repeats(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  std::size_t count = count_repeats(s, HOST_MAX_ELEMENTS);
  if (count == 0) return host.nothing();
  Sequence result = host.sequence(count);
  std::size_t i = 0;
  visit_repeats(s, [&](const Repeat& repeat) {
    const Object triple[] = {host.position(repeat.first + 1), host.position(repeat.second + 1),
                             host.position(repeat.length)};
    result.set(i++, host.list_of(triple));
  });
  return result.object();
}

}  // namespace vstring
