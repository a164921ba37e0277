// The block-sorting transform (M. Burrows and D. J. Wheeler, 1994). Entry points: block_sort,
// undo_block_sort. Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// Writes, for each rotation of the text in order, the byte that stands before its start. Returns
/// the row, from 0, of the rotation that starts at offset 1; 0 for a text of less than two bytes.
/// Equal rotations stand in the order of their starts. Linear on every text. Throws std::bad_alloc.
std::size_t block_sort(Text text, char* out);

/// Writes the text of which block_sort has made `sorted` and returned `row`. Of any other text and
/// row it makes some text of that length; a row that is too large counts as the last. Throws
/// std::bad_alloc.
void undo_block_sort(Text sorted, std::size_t row, char* out);

}  // namespace vstring
