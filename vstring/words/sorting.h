// The characters of a text in ascending order. Entry points: sort_bytes, distinct_bytes; behind the
// first also the exported SortString (include/vstring/sort.h). Tests:
// tests/unit/orderings_test.cpp.
#pragma once

#include <string>

#include "vstring/core/text.h"

namespace vstring {

/// Writes the bytes of the text but NULs in ascending order; returns how many. `out` may be where
/// the text is.
std::size_t sort_bytes(Text text, char* out);

/// The distinct bytes of the text but NUL in ascending order.
std::string distinct_bytes(Text text);

}  // namespace vstring
