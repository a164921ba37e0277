// Sums over a text and its neighbouring bytes, exact. Entry points: neighbour_sums, byte_sum.
// Tests: tests/unit/statistics_test.cpp.
#pragma once

#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// Sums over the bytes of a text taken as a ring. None of them comes near 2^53 for a text that an
/// object can hold, so each is also what summing in doubles would give.
struct NeighbourSums {
  std::uint64_t products = 0;  // of each byte and the next one, of the last and the first
  std::uint64_t squares = 0;
  std::uint64_t bytes = 0;
};
NeighbourSums neighbour_sums(Text text);

std::uint64_t byte_sum(Text text);

}  // namespace vstring
