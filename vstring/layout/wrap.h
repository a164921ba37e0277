// Breaking a text into lines. Entry points: room_for_wrapped, write_wrapped. Tests:
// docs/commands/layout.md, tests/transcripts/layout/wrap.vt, tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

struct WrapStyle {
  std::size_t width = 80;   // at least 1
  bool countbytes = false;  // a tab is one column
  bool expandtabs = true;   // with obeyspaces: tabs become spaces
  bool obeylines = false;   // a newline of the text starts a line
  bool obeyspaces = false;  // all white space stays, not the first of each run alone
};

/// Bytes that are enough for the wrapped text. Throws std::bad_alloc beyond all memory.
std::size_t room_for_wrapped(Text text, const WrapStyle& style);
/// Writes the wrapped text to a block of so many bytes; gives its length.
std::size_t write_wrapped(Text text, const WrapStyle& style, char* out, std::size_t room);

}  // namespace vstring
