// Words by where they stand: runs of letters, digits and apostrophes. Entry points: next_word,
// word_around, nth_word. Tests: docs/commands/lookup.md, tests/transcripts/language/lookup.vt.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// The first word of the text that starts at offset `from` or behind, as a view into it; an empty
/// view when there is none. `from` does not lie inside a word.
Text next_word(Text text, std::size_t from);

/// The word that holds the byte at this offset, a view into the text; empty when it is in none.
/// Looks at no byte beyond the word's neighbours.
Text word_around(Text text, std::size_t at);

/// The n-th word, from 1, or for n < 0 counted from the last, -1; empty when there is none.
Text nth_word(Text text, std::int32_t n);

/// Calls visit(word) for each word in order.
template <class Visit>
void for_each_word(Text text, Visit visit) {
  for (Text word = next_word(text, 0); !word.empty();) {
    visit(word);
    word = next_word(text, static_cast<std::size_t>(word.data() - text.data()) + word.size());
  }
}

}  // namespace vstring
