// How often each byte value stands in a text. Entry points: make_histogram, for_each_count.
// Tests: tests/unit/statistics_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

using Histogram = std::array<std::uint32_t, 256>;

Histogram make_histogram(Text text);

/// Calls use(byte value, count) for the values that occur, in ascending order. Most values do not
/// occur in most texts, so they are passed over by the block.
template <class Use>
void for_each_count(const Histogram& counts, Use use) {
  constexpr std::size_t kBlock = 8;
  for (std::size_t block = 0; block < counts.size(); block += kBlock) {
    std::uint32_t any = 0;
    for (std::size_t i = 0; i < kBlock; ++i) any |= counts[block + i];
    if (any == 0) continue;
    for (std::size_t c = block; c < block + kBlock; ++c) {
      if (counts[c] != 0) use(static_cast<unsigned char>(c), counts[c]);
    }
  }
}

}  // namespace vstring
