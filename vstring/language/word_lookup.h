// Words by where they stand: runs of letters, digits and apostrophes. Entry points: word_around,
// nth_word. Tests: docs/commands/lookup.md, tests/transcripts/language/lookup.vt.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// The word that holds the byte at this offset, a view into the text; empty when it is in none.
/// Looks at no byte beyond the word's neighbours.
Text word_around(Text text, std::size_t at);

/// The n-th word, from 1, or for n < 0 counted from the last, -1; empty when there is none.
Text nth_word(Text text, std::int32_t n);

}  // namespace vstring
