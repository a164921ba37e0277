// The words of a text: longest runs of letters, digits and apostrophes. Entry points:
// for_each_word, and count_words of text_masks.h; the exported CountWords. Tests:
// docs/commands/language.md, tests/unit/language_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/language/text_masks.h"

namespace vstring {

/// Calls visit(word) for every word of the text, in order.
template <class Visit>
void for_each_word(Text text, Visit visit) {
  std::uint64_t is_in_word = 0;  // 1 when the byte before the block is one of a word
  std::size_t start = 0;
  for_each_block(text, find_word_bytes, [&](std::size_t offset, std::uint64_t word_bytes) {
    // Words start and end, in turn, where a byte differs from the one before it.
    std::uint64_t changes = word_bytes ^ (word_bytes << 1 | is_in_word);
    for_each_bit(changes, [&](std::size_t bit) {
      if (is_in_word == 0) {
        start = offset + bit;
      } else {
        visit(text.substr(start, offset + bit - start));
      }
      is_in_word ^= 1;
    });
  });
  if (is_in_word != 0) visit(text.substr(start));
}

}  // namespace vstring
