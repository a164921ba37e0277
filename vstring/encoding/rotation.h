// Rotations of bytes and of letters. Entry points: rotate_bytes, rotate_letters, and the exported
// arotntab (vstring/encoding.h). Tests: tests/unit/encoding_test.cpp.
#pragma once

#include "vstring/core/text.h"

namespace vstring {

/// Writes each byte of the text plus `shift`, modulo 256. Returns whether a NUL was written.
bool rotate_bytes(Text text, unsigned char shift, char* out);

/// Writes the text with each letter replaced by the one `shift` places further on in the alphabet
/// of its case; shift < 26. What row `shift` of arotntab says, without the table.
void rotate_letters(Text text, unsigned char shift, char* out);

}  // namespace vstring
