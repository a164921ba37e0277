// Replacement templates. Tests: tests/transcripts/regex/.
#include "vstring/regex/expand.h"

#include <algorithm>

namespace vstring::regex {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Calls piece(text) for each stretch of the expansion, from the left.
template <class Piece>
void for_each_piece(Text pattern, const Captures& captures, Piece piece) {
  std::size_t i = 0;
  while (i < pattern.size()) {
    std::size_t end = std::min(pattern.find_first_of("&\\", i), pattern.size());
    piece(pattern.substr(i, end - i));
    if (end == pattern.size()) return;
    i = end + 1;
    char c = i < pattern.size() ? pattern[i] : '\0';
    if (pattern[end] == '&') {
      piece(captures.text(0));
    } else if (is_digit(c)) {
      piece(captures.text(static_cast<std::size_t>(c - '0')));
      ++i;
    } else if (c == '\\' || c == '&') {
      piece(pattern.substr(i++, 1));
    } else {
      piece(pattern.substr(end, 1));
    }
  }
}

}  // namespace

std::uint64_t expanded_size(Text pattern, const Captures& captures) {
  std::uint64_t size = 0;
  for_each_piece(pattern, captures, [&](Text piece) { size += piece.size(); });
  return size;
}

char* expand(Text pattern, const Captures& captures, char* out) {
  for_each_piece(pattern, captures,
                 [&](Text piece) { out = std::copy(piece.begin(), piece.end(), out); });
  return out;
}

bool needs_groups(Text pattern) {
  for (std::size_t i = 1; i < pattern.size(); ++i) {
    if (pattern[i - 1] == '\\' && is_digit(pattern[i])) return true;
  }
  return false;
}

}  // namespace vstring::regex
