// Anagrams. Tests: docs/commands/approximate.md, tests/transcripts/search/approximate.vt.
#include "vstring/search/anagrams.h"

#include <algorithm>

#include "vstring/core/histogram.h"

namespace vstring {

bool are_anagrams(Text s, Text t) {
  return s.size() == t.size() && make_histogram(s) == make_histogram(t);
}

std::string anagram_key(Text word) {
  std::string key(word);
  std::sort(key.begin(), key.end());
  return key;
}

}  // namespace vstring
