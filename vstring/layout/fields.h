// Where a text is split. Entry points: Splitter, each_capitalised. Tests: docs/commands/layout.md,
// tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/layout/runs.h"

namespace vstring {

/// Splits texts at separators, each of which ends a field, also an empty one.
struct Splitter {
  static constexpr char kNoQuote = '\0';

  ByteSet separators{" \t\n\f\r"};
  char quote = kNoQuote;  // between two of these no separator counts; no separator itself

  std::size_t count_fields(Text text) const;

  /// Calls visit(field) for the fields in order; quotes stay in them.
  template <class Visit>
  void each_field(Text text, Visit visit) const {
    std::size_t begin = 0;
    each_separator(text, [&](std::size_t end) {
      visit(text.substr(begin, end - begin));
      begin = end + 1;
    });
    visit(text.substr(begin));
  }

  /// Calls visit(offset) for the separators that count. A quote without a partner is a character
  /// like any other.
  template <class Visit>
  void each_separator(Text text, Visit visit) const {
    if (quote == kNoQuote) return each_member(text, separators, visit);
    ByteSet special = separators;
    special.add(byte_of(quote));
    std::size_t resume = 0;
    each_member(text, special, [&](std::size_t at) {
      if (at < resume) return;
      if (text[at] != quote) return visit(at);
      std::size_t partner = text.find(quote, at + 1);
      if (partner != Text::npos) resume = partner + 1;
    });
  }
};

/// The capitals, before which casesplit splits.
inline constexpr ByteSet kCapitals{"ABCDEFGHIJKLMNOPQRSTUVWXYZ"};

/// Calls visit(piece) for the pieces that start at the text's beginning and at each capital. The
/// empty text has none.
template <class Visit>
void each_capitalised(Text text, Visit visit) {
  std::size_t begin = 0;
  each_member(text, kCapitals, [&](std::size_t at) {
    if (at > begin) visit(text.substr(begin, at - begin));
    begin = at;
  });
  if (begin < text.size()) visit(text.substr(begin));
}

}  // namespace vstring
