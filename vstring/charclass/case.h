// Case conversion of ASCII letters; other bytes are copied. Entry points: write_upper, write_lower,
// write_other_case, write_capitalised. Each writes text.size() bytes to `out`.
#pragma once

#include "vstring/core/text.h"

namespace vstring {

void write_upper(Text text, char* out);
void write_lower(Text text, char* out);
/// Swaps the case of every letter.
void write_other_case(Text text, char* out);
/// Raises the first byte of every run of letters and digits and lowers the rest of the run.
void write_capitalised(Text text, char* out);

}  // namespace vstring
