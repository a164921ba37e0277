// White space taken away, squeezed and added. Entry points: what stands below. Tests:
// docs/commands/layout.md, tests/transcripts/layout/spacing.vt, tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/byte_set.h"
#include "vstring/core/text.h"

namespace vstring {

/// The text without the members of a set at its left end.
Text trimmed_left(Text text, const ByteSet& set);
/// The same at the right end.
Text trimmed_right(Text text, const ByteSet& set);

/// Writes the text with each run of white space as one blank; gives its length, which is at most
/// the text's.
std::size_t write_squeezed(Text text, char* out);
/// Writes the text without its white space to a block of the text's size; gives the length.
std::size_t write_without_blanks(Text text, char* out);

/// A line is what a newline ends, or a rest that is not empty.
std::size_t count_lines(Text text);
/// Writes the text with a prefix before each line.
void write_indented(Text text, Text prefix, char* out);

}  // namespace vstring
