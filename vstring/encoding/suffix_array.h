// The suffixes of a text in order. Entry point: sort_suffixes. Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

/// Where the suffixes of the text start, the least one first, by byte values; a suffix comes before
/// those that it begins. Linear on every text (G. Nong, S. Zhang and W. H. Chan, Linear suffix
/// array construction by almost pure induced-sorting, 2009). Texts are shorter than 2^31. Throws
/// std::bad_alloc.
std::vector<std::int32_t> sort_suffixes(Text text);

}  // namespace vstring
