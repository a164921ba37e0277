// Arithmetic on sizes that reach an allocation: what overflows is memory that cannot be had.
// Entry points: checked_sum, checked_product.
#pragma once

#include <cstddef>
#include <new>

namespace vstring {

/// a + b; throws std::bad_alloc when that is beyond size_t.
inline std::size_t checked_sum(std::size_t a, std::size_t b) {
  std::size_t sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) throw std::bad_alloc();
  return sum;
}

/// a * b; throws std::bad_alloc when that is beyond size_t.
inline std::size_t checked_product(std::size_t a, std::size_t b) {
  std::size_t product = 0;
  if (__builtin_mul_overflow(a, b, &product)) throw std::bad_alloc();
  return product;
}

}  // namespace vstring
