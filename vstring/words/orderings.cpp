#include "vstring/words/orderings.h"

#include <algorithm>
#include <cstddef>

#include "vstring/core/common_ends.h"

namespace vstring {
namespace {

template <class Value>
int sign_of(Value a, Value b) {
  if (a == b) return 0;
  return a < b ? -1 : 1;
}

int compare_bytes(char a, char b) { return sign_of(byte_of(a), byte_of(b)); }

int compare_places(char a, char b, const LetterPlaces& places) {
  int first = places[byte_of(a)];
  int second = places[byte_of(b)];
  return first == 0 || second == 0 ? kNoPlace : sign_of(first, second);
}

// Of two letters that differ the lesser one is passed over and makes its word the greater so far.
template <class Iterator>
int compare_paths(Iterator s, Iterator s_end, Iterator t, Iterator t_end) {
  int verdict = 0;
  while (s != s_end && t != t_end) {
    int order = compare_bytes(*s, *t);
    if (order <= 0) ++s;
    if (order >= 0) ++t;
    if (order != 0) verdict = -order;
  }
  if (s == s_end) return t == t_end ? verdict : -1;
  return 1;
}

std::int64_t weight_of(Text text, const Weights& weights) {
  std::int64_t sum = 0;
  for (char c : text) sum += weights[byte_of(c)];
  return sum;
}

std::int32_t greatest_weight(Text text, const Weights& weights) {
  std::int32_t greatest = -1;
  for (char c : text) greatest = std::max(greatest, weights[byte_of(c)]);
  return greatest;
}

}  // namespace

int compare_lex(Text s, Text t) { return sign_of(s.compare(t), 0); }

int compare_lex(Text s, Text t, const LetterPlaces& places) {
  std::size_t equal = common_prefix(s, t);
  if (equal == std::min(s.size(), t.size())) return sign_of(s.size(), t.size());
  return compare_places(s[equal], t[equal], places);
}

int compare_revlex(Text s, Text t) {
  std::size_t equal = common_suffix(s, t);
  if (equal == std::min(s.size(), t.size())) return 0;
  return compare_bytes(s[s.size() - 1 - equal], t[t.size() - 1 - equal]);
}

int compare_revlex(Text s, Text t, const LetterPlaces& places) {
  std::size_t equal = common_suffix(s, t);
  if (equal == std::min(s.size(), t.size())) return sign_of(s.size(), t.size());
  return compare_places(s[s.size() - 1 - equal], t[t.size() - 1 - equal], places);
}

int compare_lrpo(Text s, Text t) {
  return compare_paths(s.rbegin(), s.rend(), t.rbegin(), t.rend());
}

int compare_rrpo(Text s, Text t) { return compare_paths(s.begin(), s.end(), t.begin(), t.end()); }

int compare_weighted_shortlex(Text s, Text t, const Weights& weights) {
  int order = sign_of(weight_of(s, weights), weight_of(t, weights));
  return order != 0 ? order : compare_lex(s, t);
}

// One pass from the right. The verdict so far stands at a level; what is found further left
// overrides it from that level up.
int compare_wreath(Text s, Text t, const Weights& weights) {
  int verdict = 0;
  std::int32_t level = -1;
  auto decide = [&](std::int32_t at, int order) {
    if (level > at) return;
    verdict = order;
    level = at;
  };
  while (!s.empty() && !t.empty()) {
    std::int32_t a = weights[byte_of(s.back())];
    std::int32_t b = weights[byte_of(t.back())];
    if (a != b) {
      // The letter of the lower level has no partner: its word is the greater there.
      decide(std::min(a, b), a < b ? 1 : -1);
    } else if (s.back() != t.back()) {
      decide(a, compare_bytes(s.back(), t.back()));
    } else if (level < a) {
      level = -1;  // what was found right of equal letters counts only if all left of them is equal
    }
    if (a <= b) s.remove_suffix(1);
    if (b <= a) t.remove_suffix(1);
  }
  if (s.empty() && t.empty()) return verdict;
  bool is_left_greater = !s.empty();
  return greatest_weight(is_left_greater ? s : t, weights) >= level ? (is_left_greater ? 1 : -1)
                                                                    : verdict;
}

}  // namespace vstring
