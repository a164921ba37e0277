// Anagrams. Tests: docs/commands/approximate.md, tests/transcripts/search/approximate.vt.
#include "vstring/search/anagrams.h"

#include <algorithm>

#include "vstring/core/histogram.h"

namespace vstring {

bool are_anagrams(Text s, Text t) {
  return s.size() == t.size() && make_histogram(s) == make_histogram(t);
}

std::string anagram_key(Text word) {
  constexpr std::size_t kWorthCounting = 512;
  std::string key(word);
  if (word.size() >= kWorthCounting) {
    auto counts = make_histogram(word);
    char* out = key.data();
    for (std::size_t c = 0; c < counts.size(); ++c) {
      out = std::fill_n(out, counts[c], static_cast<char>(c));
    }
    return key;
  }
  std::sort(key.begin(), key.end(), [](char a, char b) { return byte_of(a) < byte_of(b); });
  return key;
}

}  // namespace vstring
