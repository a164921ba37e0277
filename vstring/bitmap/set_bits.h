// Visiting the ones of a bitmap. Entry point: for_each_set_bit. Tests: tests/unit/bitmap_test.cpp.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "vstring/bitmap.h"

namespace vstring {

/// Calls visit(i) for each bit i below nbits and below `limit` that is set, in order.
template <class Visit>
void for_each_set_bit(const Bitmap& bitmap, std::uint32_t limit, Visit visit) {
  std::uint32_t end = std::min(limit, bitmap.nbits);
  for (std::uint32_t first = 0; first < end; first += 32) {
    std::uint32_t word = 0;
    std::memcpy(&word, bitmap.data + first / 8, sizeof word);
    for (; word != 0; word &= word - 1) {
      std::uint32_t i = first + static_cast<std::uint32_t>(std::countr_zero(word));
      if (i >= end) return;
      visit(i);
    }
    if (end - first <= 32) return;
  }
}

}  // namespace vstring
