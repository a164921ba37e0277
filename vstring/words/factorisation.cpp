#include "vstring/words/factorisation.h"

#include <cstddef>

namespace vstring {
namespace {

// The end of the strictly rising or falling run from i, where i + 1 is inside the word and the two
// bytes differ.
std::size_t strict_run_end(Text word, std::size_t i) {
  bool is_rising = byte_of(word[i]) < byte_of(word[i + 1]);
  ++i;
  while (i + 1 < word.size() && word[i] != word[i + 1] &&
         (byte_of(word[i]) < byte_of(word[i + 1])) == is_rising) {
    ++i;
  }
  return i + 1;
}

}  // namespace

FactorEnds lyndon_factors(Text word) {
  FactorEnds ends;
  for (std::size_t start = 0; start < word.size();) {
    // word[start .. j - 1] is a power of a Lyndon word and a start of it; i is j one word earlier.
    std::size_t i = start;
    std::size_t j = start + 1;
    for (; j < word.size() && byte_of(word[i]) <= byte_of(word[j]); ++j) {
      i = word[i] == word[j] ? i + 1 : start;
    }
    for (std::size_t length = j - i; start <= i;) {
      start += length;
      ends.push_back(static_cast<std::uint32_t>(start));
    }
  }
  return ends;
}

FactorEnds monotone_factors(Text word) {
  FactorEnds ends;
  for (std::size_t i = 0; i < word.size();) {
    while (i + 1 < word.size() && word[i] == word[i + 1]) ++i;
    i = i + 1 < word.size() ? strict_run_end(word, i) : i + 1;
    ends.push_back(static_cast<std::uint32_t>(i));
  }
  return ends;
}

}  // namespace vstring
