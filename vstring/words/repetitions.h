// Repeated runs of a word, and the Thue-Morse word, which has none that overlap. Entry points:
// count_repeats, visit_repeats, write_thue_morse. Tests: tests/unit/words_test.cpp.
#pragma once

#include <cstddef>
#include <functional>

#include "vstring/core/text.h"

namespace vstring {

/// word[first .. first + length) = word[second .. second + length), longer on neither side.
struct Repeat {
  std::size_t first;
  std::size_t second;
  std::size_t length;
};

/// How many repeats at a distance of at least 2 the word has; counting stops above `limit`.
std::size_t count_repeats(Text word, std::size_t limit);
/// Visits them by falling distance, those of one distance from left to right.
void visit_repeats(Text word, const std::function<void(const Repeat&)>& visit);

/// Writes the first `length` letters of the Thue-Morse word: letter i is `even` or `odd` as the
/// number of ones in the binary digits of i.
void write_thue_morse(std::size_t length, char even, char odd, char* out);

}  // namespace vstring
