// Words as sequences of factors: Lyndon words, monotone runs. Entry points: lyndon_factors,
// monotone_factors. Tests: tests/unit/words_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

/// Where the factors of a word end, in order: the offset behind the last byte of each.
using FactorEnds = std::vector<std::uint32_t>;

/// The factors of the word into Lyndon words none of which is less than the next (J.-P. Duval,
/// Factorizing words over an ordered alphabet, 1983). Throws std::bad_alloc.
FactorEnds lyndon_factors(Text word);

/// The word cut from left to right into runs that rise or fall strictly; equal bytes at the start
/// of a run belong to it. Throws std::bad_alloc.
FactorEnds monotone_factors(Text word);

}  // namespace vstring
