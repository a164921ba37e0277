#include "vstring/language/word_lookup.h"

#include "vstring/charclass.h"
#include "vstring/core/byte_set.h"

namespace vstring {
namespace {

const ByteSet& word_bytes() {
  static const ByteSet set = [] {
    ByteSet bytes("'");
    for (int c = 1; c < 256; ++c) {
      if (ccl_isalnum(c) != 0) bytes.add(static_cast<unsigned char>(c));
    }
    return bytes;
  }();
  return set;
}

bool is_word_byte(char c) { return word_bytes().contains(byte_of(c)); }

// `from` does not lie inside a word.
Text next_word(Text text, std::size_t from) {
  Text rest = text.substr(from);
  rest.remove_prefix(find_member(rest, word_bytes()));
  return rest.substr(0, find_other(rest, word_bytes()));
}

Text last_word_before(Text text, std::size_t end) {
  while (end > 0 && !is_word_byte(text[end - 1])) --end;
  std::size_t start = end;
  while (start > 0 && is_word_byte(text[start - 1])) --start;
  return text.substr(start, end - start);
}

}  // namespace

Text word_around(Text text, std::size_t at) {
  if (!is_word_byte(text[at])) return {};
  std::size_t start = at;
  while (start > 0 && is_word_byte(text[start - 1])) --start;
  std::size_t end = at + 1;
  while (end < text.size() && is_word_byte(text[end])) ++end;
  return text.substr(start, end - start);
}

Text nth_word(Text text, std::int32_t n) {
  if (n == 0) return {};
  Text word;
  std::size_t at = n > 0 ? 0 : text.size();
  for (std::int64_t left = n > 0 ? std::int64_t{n} : -std::int64_t{n}; left > 0; --left) {
    word = n > 0 ? next_word(text, at) : last_word_before(text, at);
    if (word.empty()) break;
    at = static_cast<std::size_t>(word.data() - text.data()) + (n > 0 ? word.size() : 0);
  }
  return word;
}

}  // namespace vstring
