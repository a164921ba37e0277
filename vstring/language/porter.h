// M. F. Porter's stemmer ("An algorithm for suffix stripping", 1980). Entry point: porter_stem.
// Tests: docs/commands/language.md, tests/unit/language_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

inline constexpr std::size_t kMaxPorterWord = 127;

/// Writes the stem of a word of 2 to kMaxPorterWord bytes, in small letters, to `out`; gives its
/// length, which is at most the word's.
std::size_t porter_stem(Text word, char* out);

}  // namespace vstring
