// The shape of a word: whether it rises, falls or reads the same backwards, and its pattern. Entry
// points: first_fall, first_rise, is_palindrome, have_same_pattern, canonical_pattern. Tests:
// tests/unit/words_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// The first position whose byte is less than the one before it; the word's length when none is.
std::size_t first_fall(Text word);
/// The first position whose byte is greater than the one before it; the word's length when none is.
std::size_t first_rise(Text word);

bool is_palindrome(Text word);

/// Whether renaming bytes one to one turns s into t, two texts of one length.
bool have_same_pattern(Text s, Text t);

/// Writes the word with its distinct bytes renamed `base`, base + 1, ... in the order in which they
/// first appear, and ends early at a name that would be 0. Returns how many bytes it wrote, at
/// most as many as the word has.
std::size_t canonical_pattern(Text word, unsigned char base, char* out);

}  // namespace vstring
