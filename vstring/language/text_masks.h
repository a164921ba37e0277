// What every 64 bytes of a text hold, one bit a byte, the first byte lowest. Entry points:
// find_word_bytes, find_sentence_marks, count_words, for_each_block, for_each_bit. Tests:
// tests/unit/language_test.cpp.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

inline constexpr std::size_t kBlock = 64;
inline constexpr std::size_t kChunk = 32 * kBlock;  // masks of a chunk stay in the first cache

/// Marks the bytes of words: letters, digits and apostrophes. For a text of at most kChunk bytes.
void find_word_bytes(Text chunk, std::uint64_t* masks);

/// Marks the bytes . ? ! : with white space right behind them. The byte behind the chunk, at most
/// kChunk bytes, is read; it may be the NUL that ends the text.
void find_sentence_marks(Text chunk, std::uint64_t* masks);

struct WordCount {
  std::size_t words = 0;
  std::size_t lines = 0;  // newlines, but for those right behind a word
};

WordCount count_words(Text text);

/// Calls visit(offset, mask) for every 64 bytes of the text, the masks being those that
/// find(chunk, masks) makes.
template <class Find, class Visit>
void for_each_block(Text text, Find find, Visit visit) {
  std::uint64_t masks[kChunk / kBlock];
  for (std::size_t start = 0; start < text.size(); start += kChunk) {
    Text chunk = text.substr(start, kChunk);
    find(chunk, masks);
    for (std::size_t at = 0; at < chunk.size(); at += kBlock) visit(start + at, masks[at / kBlock]);
  }
}

/// Calls visit(i) for every bit of the mask, from the lowest.
template <class Visit>
void for_each_bit(std::uint64_t mask, Visit visit) {
  for (; mask != 0; mask &= mask - 1) visit(static_cast<std::size_t>(std::countr_zero(mask)));
}

}  // namespace vstring
