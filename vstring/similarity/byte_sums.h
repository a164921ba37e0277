// Sums over the bytes of a text or over the pairs of two: Hamming distance, Lee weight, Lee
// distance. Tests: tests/unit/similarity_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// At how many positions the texts differ; every byte that only the longer one has counts.
std::size_t hamming_distance(Text s, Text t);
/// The sum of min(c, 256 - c) over the bytes c.
std::uint64_t lee_weight(Text s);
/// The sum of min(d, 256 - d) over the differences d modulo 256 of two texts of equal length.
std::uint64_t lee_distance(Text s, Text t);

}  // namespace vstring
