// The sentences of a text. Entry points: for_each_sentence, count_sentences. Tests:
// docs/commands/language.md, tests/unit/language_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/language/text_masks.h"

namespace vstring {

/// Whether the mark . ? ! or : at offset k, behind which there is white space, ends a sentence.
bool is_sentence_end(Text text, std::size_t k);

/// The sentence without white space at its front.
Text trimmed_sentence(Text sentence);

/// How many sentences the text has, 1 or more.
std::size_t count_sentences(Text text);

/// Calls visit(k) for every mark that ends a sentence of a NUL-terminated text, in order.
template <class Visit>
void for_each_sentence_end(Text text, Visit visit) {
  for_each_block(text, find_sentence_marks, [&](std::size_t offset, std::uint64_t marks) {
    for_each_bit(marks, [&](std::size_t bit) {
      if (is_sentence_end(text, offset + bit)) visit(offset + bit);
    });
  });
}

/// Calls visit(sentence) for every sentence of a NUL-terminated text, in order: up to a mark that
/// ends it, the last one up to the end of the text.
template <class Visit>
void for_each_sentence(Text text, Visit visit) {
  std::size_t start = 0;
  for_each_sentence_end(text, [&](std::size_t end) {
    visit(trimmed_sentence(text.substr(start, end + 1 - start)));
    start = end + 1;
  });
  visit(trimmed_sentence(text.substr(start)));
}

}  // namespace vstring
