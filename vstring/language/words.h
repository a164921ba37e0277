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
  std::size_t start = 0;         // of the word that is to end next
  for_each_block(text, find_word_bytes, [&](std::size_t offset, std::uint64_t word_bytes) {
    std::uint64_t behind_word = word_bytes << 1 | is_in_word;
    std::uint64_t starts = word_bytes & ~behind_word;
    auto take_start = [&] {
      start = offset + static_cast<std::size_t>(std::countr_zero(starts));
      starts &= starts - 1;
    };
    if (is_in_word == 0) take_start();
    for_each_bit(behind_word & ~word_bytes, [&](std::size_t end) {
      visit(text.substr(start, offset + end - start));
      take_start();
    });
    is_in_word = word_bytes >> 63;
  });
  if (is_in_word != 0) visit(text.substr(start));
}

}  // namespace vstring
