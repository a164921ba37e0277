// Palindromes inside a text. Entry point: longest_palindrome. Tests: tests/unit/words_test.cpp.
#pragma once

#include "vstring/core/text.h"

namespace vstring {

/// The longest palindromic substring, the leftmost of equals; a view into the text. Linear
/// (G. Manacher, A new linear-time on-line algorithm for finding the smallest initial palindrome of
/// a string, 1975). Throws std::bad_alloc.
Text longest_palindrome(Text text);

}  // namespace vstring
