// Orderings of words as commands. Tests: docs/commands/orderings.md,
// tests/transcripts/words/orderings.vt.
#include "vstring/host/commands.h"
#include "vstring/words/orderings.h"

namespace vstring {
namespace {

struct TwoWords {
  explicit TwoWords(const Args& args)
      : s(args.string(1, "first argument must be a string")),
        t(args.string(2, "second argument must be a string")) {}
  Text s, t;
};

using Compare = int(Text, Text);
using CompareBySupport = int(Text, Text, const LetterPlaces&);
using CompareByWeights = int(Text, Text, const Weights&);

LetterPlaces read_support(const Args& args, const Host& host) {
  LetterPlaces places = {};
  int place = 0;
  for (char c : args.string(3, "third argument must be a string")) {
    if (places[byte_of(c)] != 0) {
      fail("repeated character `%1' detected in support", host.one_char(byte_of(c)));
    }
    places[byte_of(c)] = ++place;
  }
  return places;
}

Object order(const Args& args, const Host& host, Compare* plain, CompareBySupport* by_support) {
  TwoWords words(args);
  if (!args.has(3)) return host.integer(plain(words.s, words.t));
  int result = by_support(words.s, words.t, read_support(args, host));
  if (result == kNoPlace) fail("invalid support string");
  return host.integer(result);
}

int compare_lengths(Text s, Text t) {
  if (s.size() == t.size()) return 0;
  return s.size() < t.size() ? -1 : 1;
}

// A comparison for words of one length, made one that looks at the lengths first.
template <Compare* compare>
int shorter_first(Text s, Text t) {
  int lengths = compare_lengths(s, t);
  return lengths != 0 ? lengths : compare(s, t);
}
template <CompareBySupport* compare>
int shorter_first(Text s, Text t, const LetterPlaces& places) {
  int lengths = compare_lengths(s, t);
  return lengths != 0 ? lengths : compare(s, t, places);
}

// The weight that element i, from 0, of a list of equations gives to a character.
void read_weight(const Host& host, Object element, std::size_t i, Weights& weights) {
  constexpr const char* kNoString = "left side of equations must be strings";
  if (host_type(element) != HOST_TYPE_EQUATION) fail(kNoString);
  Object left = host_words(element)[1];
  Object right = host_words(element)[2];
  if (!is_text(left)) fail(kNoString);
  Text letter = text_of(left);
  if (letter.empty()) {
    fail("left hand sides of equations must be non-empty strings (characters)");
  }
  if (host.kernel()->IsHostInteger32(right) == 0) {
    fail("right sides of equations must be (small) integers");
  }
  std::int32_t weight = host.kernel()->HostToInteger32(right);
  if (weight < 0) {
    fail("right hand sides of equations must be non-negative, but got %1 for the %-2 equation",
         right, host.position(i + 1));
  }
  weights[byte_of(letter[0])] = weight;
}

Object order_by_weights(const Args& args, const Host& host, CompareByWeights* compare) {
  TwoWords words(args);
  if (!args.is_list(3)) fail("argument must be a list");
  Weights weights = {};
  Elements equations(args[3]);
  for (std::size_t i = 0; i < equations.size(); ++i) read_weight(host, equations[i], i, weights);
  return host.integer(compare(words.s, words.t, weights));
}

}  // namespace

Object cmd::vstring_lex(Args& args, Host& host) {
  return order(args, host, compare_lex, compare_lex);
}

Object cmd::vstring_revlex(Args& args, Host& host) {
  return order(args, host, compare_revlex, compare_revlex);
}

Object cmd::vstring_shortlex(Args& args, Host& host) {
  return order(args, host, shorter_first<compare_lex>, shorter_first<compare_lex>);
}

Object cmd::vstring_shortrevlex(Args& args, Host& host) {
  return order(args, host, shorter_first<compare_revlex>, shorter_first<compare_revlex>);
}

Object cmd::vstring_lrpo(Args& args, Host& host) {
  TwoWords words(args);
  return host.integer(compare_lrpo(words.s, words.t));
}

Object cmd::vstring_rrpo(Args& args, Host& host) {
  TwoWords words(args);
  return host.integer(compare_rrpo(words.s, words.t));
}

Object cmd::vstring_wreathorder(Args& args, Host& host) {
  return order_by_weights(args, host, compare_wreath);
}

Object cmd::vstring_wslo(Args& args, Host& host) {
  return order_by_weights(args, host, compare_weighted_shortlex);
}

}  // namespace vstring
