// Bit vectors. Tests: tests/unit/containers_test.cpp.
#include <bit>
#include <cstdlib>

#include "vstring/containers.h"

BitVector* bv_init(BitVector* bv, uint32_t num_bits) {
  if (bv == nullptr) return nullptr;
  uint32_t num_words = num_bits / 32;
  auto* words = static_cast<uint32_t*>(std::calloc(std::size_t{num_words} + 1, sizeof(uint32_t)));
  if (words == nullptr) {
    *bv = {};
    return nullptr;
  }
  *bv = {num_words, num_bits, words};
  return bv;
}

BitVector* bv_set(BitVector* bv, uint32_t i) {
  if (bv == nullptr) return nullptr;
  bv->words[i / 32] |= 1U << i % 32;
  return bv;
}

BitVector* bv_reset(BitVector* bv, uint32_t i) {
  if (bv == nullptr) return nullptr;
  bv->words[i / 32] &= ~(1U << i % 32);
  return bv;
}

uint32_t bv_get(const BitVector* bv, uint32_t i) {
  return bv == nullptr ? 0 : bv->words[i / 32] & 1U << i % 32;
}

// The bits of a last partial word do not count: callers round the size up when they want them.
uint32_t bv_count(const BitVector* bv) {
  uint32_t count = 0;
  for (uint32_t k = 0; bv != nullptr && k < bv->num_words; ++k) {
    count += static_cast<uint32_t>(std::popcount(bv->words[k]));
  }
  return count;
}
