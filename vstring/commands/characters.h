// Commands on the characters of a string: the algorithms. Entry points: the functions below.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// Latin-1 letters with accents, ligatures and such as ASCII letters; other bytes as they are. At
/// most two bytes come out of one.
std::size_t unaccented_size(Text text);
void write_unaccented(Text text, char* out);

/// Printable ASCII as it stands but the backslash doubled; \t \n \r; other bytes as \xhh.
std::size_t visible_size(Text text);
void write_visible(Text text, char* out);

/// Whether brackets are properly nested: open[i] is closed by close[i]. Other characters do not
/// count.
bool is_balanced(Text text, Text open, Text close);

/// Whether no character stands twice in a text.
bool is_repetition_free(Text text);

}  // namespace vstring
