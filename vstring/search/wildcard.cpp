// Wildcards. When a match fails, only the last star can help: it takes a byte more and the rest is
// tried again. Literal bytes behind a star are found by exact search. Tests:
// tests/unit/approximate_test.cpp, docs/commands/wildcard.md.
#include "vstring/search/wildcard.h"

#include <cstddef>
#include <optional>

#include "vstring/search/exact.h"

namespace vstring {
namespace {

// What an item of the pattern says to a byte, and where the next item begins.
struct Verdict {
  bool is_match;
  std::size_t next;
};

// The set that begins behind the "[" at `i`. Once a member has matched, the rest up to the "]" is
// passed over; a set without a "]" matches nothing.
Verdict match_set(Text pattern, std::size_t i, unsigned char c) {
  bool is_negated = i < pattern.size() && pattern[i] == '^';
  if (is_negated) ++i;
  bool is_member = false;
  while (i < pattern.size() && pattern[i] != ']' && !is_member) {
    unsigned char first = byte_of(pattern[i]);
    bool is_range = i + 1 < pattern.size() && pattern[i + 1] == '-';
    if (!is_range) {
      is_member = c == first;
      ++i;
      continue;
    }
    if (i + 2 >= pattern.size()) return {false, pattern.size()};
    unsigned char last = byte_of(pattern[i + 2]);
    if (last == ']') {  // ends the range and closes the set
      is_member = c >= first;
      i += 2;
    } else {
      is_member = c == first || c == last || (first < c && c < last);
      i += 3;
    }
  }
  std::size_t end = pattern.find(']', i);
  if (end == Text::npos) return {false, pattern.size()};
  return {is_member != is_negated, end + 1};
}

Verdict match_item(Text pattern, std::size_t i, unsigned char c) {
  switch (pattern[i]) {
    case '?':
      return {true, i + 1};
    case '[':
      return match_set(pattern, i + 1, c);
    case '\\':
      // The escaped byte is not compared: both bytes stand for any one.
      if (i + 1 < pattern.size()) return {true, i + 2};
      break;
    default:
      break;
  }
  return {byte_of(pattern[i]) == c, i + 1};
}

bool is_literal(Text pattern, std::size_t i) {
  char c = pattern[i];
  return c != '?' && c != '[' && (c != '\\' || i + 1 == pattern.size());
}

// The literal bytes of the pattern from `i` on.
Text literal_run(Text pattern, std::size_t i) {
  std::size_t end = i;
  while (end < pattern.size() && pattern[end] != '*' && is_literal(pattern, end)) ++end;
  return pattern.substr(i, end - i);
}

// What a star leaves to be done: its items are tried at `retry` and at later places.
class Star {
 public:
  Star(Text run, std::size_t next, std::size_t retry)
      : run_(run), next_(next + run.size()), retry_(retry) {}

  /// Goes to the next place at which the run behind the star stands, and there behind the run;
  /// false if there is none.
  bool resume(Text text, std::size_t& i, std::size_t& at) {
    std::size_t found = find_run(text);
    if (found >= text.size()) return false;
    retry_ = found + 1;
    i = next_;
    at = found + run_.size();
    return true;
  }

 private:
  std::size_t find_run(Text text) {
    if (run_.empty()) return retry_;
    if (run_.size() == 1) return text.find(run_[0], retry_);
    if (!searcher_) searcher_.emplace(run_);
    return searcher_->find(text, retry_);
  }

  Text run_;  // literal bytes right behind the star
  std::size_t next_;
  std::size_t retry_;
  std::optional<ExactSearcher> searcher_;
};

}  // namespace

bool matches_wildcard(Text pattern, Text text) {
  std::size_t i = 0;
  std::size_t at = 0;
  std::optional<Star> star;
  for (;;) {
    if (i < pattern.size() && pattern[i] == '*') {
      while (i < pattern.size() && pattern[i] == '*') ++i;
      Text run = literal_run(pattern, i);
      if (i + run.size() == pattern.size()) return text.substr(at).ends_with(run);
      star.emplace(run, i, at);
    } else if (i == pattern.size() && at == text.size()) {
      return true;
    } else if (at == text.size()) {
      return false;  // something is left of the pattern, and a later start leaves even less text
    } else if (i < pattern.size()) {
      Verdict verdict = match_item(pattern, i, byte_of(text[at]));
      if (verdict.is_match) {
        i = verdict.next;
        ++at;
        continue;
      }
    }
    if (!star || !star->resume(text, i, at)) return false;
  }
}

const WildcardCase kWildcardCases[] = {
    {"", "", true},           {"abc", "abc", true},       {"a?c", "abc", true},
    {"*", "", true},          {"*", "anything", true},    {"a*", "a", true},
    {"a**", "a", true},       {"a*c", "abc", true},       {"a*c", "abcabc", true},
    {"*b*", "abc", true},     {"*ab", "aab", true},       {"[a-c]x", "bx", true},
    {"[abc]", "c", true},     {"[^a-c]", "d", true},      {"[m-]", "z", true},
    {"[z-a]", "a", true},     {"[^]", "a", true},         {"\\q", "z", true},
    {"\\", "\\", true},       {"*.[ch]", "wild.c", true}, {"a*b*c*d", "a1b22c333d", true},
    {"", "a", false},         {"abc", "ab", false},       {"ab", "abc", false},
    {"?", "", false},         {"a*c", "abcd", false},     {"[^a-c]x", "bx", false},
    {"[m-]", "a", false},     {"[z-a]", "m", false},      {"[]", "a", false},
    {"[a", "a", false},       {"[a-", "a", false},        {"\\q", "", false},
    {"*b", "abc", false},     {"a*b*c", "acb", false},    {"*?", "", false},
    {nullptr, nullptr, false}};

}  // namespace vstring
