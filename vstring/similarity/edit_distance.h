// Edit distance with unit costs. Entry point: edit_distance. Tests: tests/unit/similarity_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// The least number of insertions, deletions and substitutions of a byte that turn s into t.
/// Works on the vertical differences of 64 rows of the table at a time, as bits (G. Myers, A fast
/// bit-vector algorithm for approximate string matching based on dynamic programming, JACM 46,
/// 1999; H. Hyyro's form), within a band of diagonals that grows until it holds the result
/// (E. Ukkonen, Algorithms for approximate string matching, 1985). Time O(d * n / 64) for a
/// distance d, memory linear in the shorter text. Throws std::bad_alloc.
std::size_t edit_distance(Text s, Text t);

}  // namespace vstring
