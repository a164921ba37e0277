// Simple edits of byte strings. Entry points: write_reversed, write_repeated, write_rotated,
// write_translated, compare_ignoring_case, find_last. The write_ functions fill `out`, which lies
// apart from what they read, with as many bytes as told.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// text.size() bytes: the text backwards.
void write_reversed(Text text, char* out);
/// text.size() * count bytes: the text, count times.
void write_repeated(Text text, std::size_t count, char* out);
/// text.size() bytes: the text rotated to the right by `shift`, which is less than its length.
void write_rotated(Text text, std::size_t shift, char* out);
/// text.size() bytes: every byte of `from` (its first occurrence counts) replaced by the byte of
/// `to` at the same place; `to` is at least as long as `from`.
void write_translated(Text from, Text to, Text text, char* out);
/// Negative, 0 or positive as a sorts before, with or after b when A-Z count as a-z.
int compare_ignoring_case(Text a, Text b);
/// Offset of the last c in the text; Text::npos when there is none.
std::size_t find_last(Text text, char c);

}  // namespace vstring
