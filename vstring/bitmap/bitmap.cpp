// Bitmaps (include/vstring/bitmap.h). Tests: tests/unit/bitmap_test.cpp.
#include "vstring/bitmap.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <span>
#include <utility>

#include "vstring/bitmap/set_bits.h"
#include "vstring/core/cpu.h"
#include "vstring/core/random.h"

namespace vstring {
namespace {

using Word = std::uint32_t;
constexpr Word kWordBits = 32;

std::span<Word> words_of(Bitmap* bitmap) {
  return {reinterpret_cast<Word*>(bitmap->data), bitmap->words};
}
std::span<const Word> words_of(const Bitmap* bitmap) {
  return {reinterpret_cast<const Word*>(bitmap->data), bitmap->words};
}

// A block of zeros for the record, with the spare word behind it; false when memory runs out.
bool allocate_block(Bitmap* bitmap, std::uint32_t nbits) {
  Word words = nbits / kWordBits + (nbits % kWordBits != 0 ? 1 : 0);
  auto* block = static_cast<Word*>(std::calloc(std::size_t{words} + 1, sizeof(Word)));
  if (block == nullptr) return false;
  auto* data = reinterpret_cast<std::uint8_t*>(block);
  *bitmap = {words, nbits, data, data};
  return true;
}

bool has_bit(const Bitmap* bitmap, std::uint32_t i) {
  return bitmap != nullptr && i <= bitmap->nbits;
}

std::uint8_t mask_of(std::uint64_t i) { return static_cast<std::uint8_t>(1U << i % 8); }

template <class Operation>
Bitmap* combine(Bitmap* a, const Bitmap* b, Operation operation) {
  if (a == nullptr || b == nullptr) return nullptr;
  Word* to = words_of(a).data();
  const Word* from = words_of(b).data();
  std::size_t count = std::min(a->words, b->words);
  for (std::size_t i = 0; i < count; ++i) to[i] = operation(to[i], from[i]);
  return a;
}

// The same on a duplicate of a, which is written once.
template <class Operation>
Bitmap* combined(const Bitmap* a, const Bitmap* b, Operation operation) {
  Bitmap* result = a == nullptr || b == nullptr ? nullptr : bm_new(a->nbits);
  if (result == nullptr) return nullptr;
  auto left = words_of(a);
  auto right = words_of(b);
  Word* to = words_of(result).data();
  std::size_t count = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < count; ++i) to[i] = operation(left[i], right[i]);
  std::ranges::copy(left.subspan(count), to + count);
  return result;
}

// Four sums, so that no addition waits for the one before it.
[[gnu::always_inline]] inline std::int64_t count_ones(const std::uint8_t* bytes, std::size_t size) {
  std::int64_t counts[4] = {};
  auto ones_at = [bytes](std::size_t i) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + i, sizeof word);
    return std::popcount(word);
  };
  std::size_t i = 0;
  for (; i + 32 <= size; i += 32) {
    for (std::size_t k = 0; k < 4; ++k) counts[k] += ones_at(i + 8 * k);
  }
  for (; i + 8 <= size; i += 8) counts[0] += ones_at(i);
  for (; i < size; ++i) counts[0] += std::popcount(bytes[i]);
  return counts[0] + counts[1] + counts[2] + counts[3];
}

#ifdef VSTRING_X86
// With the processor's own count.
VSTRING_AVX2 std::int64_t count_ones_wide(const std::uint8_t* bytes, std::size_t size) {
  return count_ones(bytes, size);
}
#endif

template <class Element>
Element* select(const Bitmap* bitmap, const Element* array, std::uint32_t n) {
  if (bitmap == nullptr || array == nullptr) return nullptr;
  std::int64_t room = std::max<std::int64_t>(bm_count_bits(bitmap), 1);
  if (!std::in_range<std::size_t>(room)) return nullptr;
  auto* result =
      static_cast<Element*>(std::calloc(static_cast<std::size_t>(room), sizeof(Element)));
  if (result == nullptr) return nullptr;
  Element* end = result;
  for_each_set_bit(*bitmap, n, [&](std::uint32_t i) { *end++ = array[i]; });
  return result;
}

}  // namespace
}  // namespace vstring

using vstring::words_of;

Bitmap* bm_new(uint32_t nbits) {
  auto* bitmap = static_cast<Bitmap*>(std::malloc(sizeof(Bitmap)));
  if (bitmap != nullptr && !vstring::allocate_block(bitmap, nbits)) {
    std::free(bitmap);
    return nullptr;
  }
  return bitmap;
}

Bitmap* bm_init(Bitmap* bitmap, uint32_t nbits) {
  if (bitmap == nullptr) return nullptr;
  std::free(bitmap->data);
  if (vstring::allocate_block(bitmap, nbits)) return bitmap;
  std::free(bitmap);
  return nullptr;
}

Bitmap* bm_rand(uint32_t nbits) {
  Bitmap* bitmap = bm_new(nbits);
  if (bitmap != nullptr) vstring::draw_random(words_of(bitmap));
  return bitmap;
}

void bm_free(Bitmap* bitmap) {
  if (bitmap == nullptr) return;
  std::free(bitmap->data);
  std::free(bitmap);
}

uint32_t bm_size(const Bitmap* bitmap) { return bitmap == nullptr ? 0 : bitmap->nbits; }

int bm_get(const Bitmap* bitmap, uint32_t i) {
  if (!vstring::has_bit(bitmap, i)) return -1;
  return (bitmap->data[i / 8] & vstring::mask_of(i)) != 0 ? 1 : 0;
}

int bm_setp(const Bitmap* bitmap, uint32_t i) { return bm_get(bitmap, i); }

int bm_set_bit(Bitmap* bitmap, uint32_t i) {
  if (!vstring::has_bit(bitmap, i)) return -1;
  bitmap->data[i / 8] |= vstring::mask_of(i);
  return 1;
}

int bm_clear_bit(Bitmap* bitmap, uint32_t i) {
  if (!vstring::has_bit(bitmap, i)) return -1;
  bitmap->data[i / 8] &= static_cast<uint8_t>(~vstring::mask_of(i));
  return 1;
}

int bm_set_range(Bitmap* bitmap, uint32_t a, uint32_t b) {
  if (bitmap == nullptr) return -1;
  std::uint64_t i = a;
  std::uint64_t end = std::min(std::uint64_t{b}, std::uint64_t{bitmap->words} * 32);
  for (; i < end && i % 8 != 0; ++i) bitmap->data[i / 8] |= vstring::mask_of(i);
  if (i < end) {
    std::memset(bitmap->data + i / 8, 0xff, static_cast<std::size_t>((end - i) / 8));
    i += (end - i) / 8 * 8;
  }
  for (; i < end; ++i) bitmap->data[i / 8] |= vstring::mask_of(i);
  return 1;
}

int bm_set_bits(Bitmap* bitmap, uint32_t n, const uint32_t* positions) {
  if (bitmap == nullptr || positions == nullptr || n > bitmap->nbits) return -1;
  for (std::size_t i = 0; i < n; ++i) {
    if (bm_set_bit(bitmap, positions[i]) < 0) return -1;
  }
  return 1;
}

void bm_clear(Bitmap* bitmap) {
  if (bitmap != nullptr) std::ranges::fill(words_of(bitmap), 0);
}

int bm_clearp(const Bitmap* bitmap) {
  if (bitmap == nullptr) return -1;
  auto words = words_of(bitmap);
  return std::ranges::all_of(words, [](uint32_t word) { return word == 0; }) ? 1 : 0;
}

int bm_nclearp(const Bitmap* bitmap) {
  if (bitmap == nullptr) return -1;
  auto words = words_of(bitmap);
  return std::ranges::all_of(words, [](uint32_t word) { return word != 0; }) ? 1 : 0;
}

int bm_equal(const Bitmap* a, const Bitmap* b) {
  if (a == b) return 1;
  if (a == nullptr || b == nullptr || a->nbits != b->nbits) return 0;
  return std::memcmp(a->data, b->data, std::size_t{a->words} * sizeof(uint32_t)) == 0 ? 1 : 0;
}

int bm_noteq(const Bitmap* a, const Bitmap* b) { return bm_equal(a, b) == 0 ? 1 : 0; }

int64_t bm_count_bits(const Bitmap* bitmap) {
  if (bitmap == nullptr) return -1;
  std::size_t size = bitmap->nbits / 8 + (bitmap->nbits % 8 != 0 ? 1 : 0);
#ifdef VSTRING_X86
  if (vstring::has_avx2()) return vstring::count_ones_wide(bitmap->data, size);
#endif
  return vstring::count_ones(bitmap->data, size);
}

int64_t bm_count_bits1(const Bitmap* bitmap) { return bm_count_bits(bitmap); }

Bitmap* bm_copy(Bitmap* dst, const Bitmap* src) {
  if (dst == nullptr || src == nullptr) return nullptr;
  if (dst == src) return dst;
  Bitmap copy = {};
  if (!vstring::allocate_block(&copy, src->nbits)) return nullptr;
  std::ranges::copy(words_of(src), words_of(&copy).begin());
  std::free(dst->data);
  *dst = copy;
  return dst;
}

Bitmap* bm_dup(const Bitmap* src) {
  if (src == nullptr) return nullptr;
  Bitmap* copy = bm_new(src->nbits);
  if (copy != nullptr) std::ranges::copy(words_of(src), words_of(copy).begin());
  return copy;
}

Bitmap* bm_andeq(Bitmap* a, const Bitmap* b) { return vstring::combine(a, b, std::bit_and()); }

Bitmap* bm_oreq(Bitmap* a, const Bitmap* b) { return vstring::combine(a, b, std::bit_or()); }

Bitmap* bm_xoreq(Bitmap* a, const Bitmap* b) { return vstring::combine(a, b, std::bit_xor()); }

Bitmap* bm_and(const Bitmap* a, const Bitmap* b) { return vstring::combined(a, b, std::bit_and()); }

Bitmap* bm_or(const Bitmap* a, const Bitmap* b) { return vstring::combined(a, b, std::bit_or()); }

Bitmap* bm_xor(const Bitmap* a, const Bitmap* b) { return vstring::combined(a, b, std::bit_xor()); }

Bitmap* bm_not(const Bitmap* a) {
  Bitmap* result = bm_dup(a);
  if (result != nullptr) {
    for (uint32_t& word : words_of(result)) word = ~word;
  }
  return result;
}

void bm_print(FILE* stream, const Bitmap* bitmap) {
  if (bitmap == nullptr) return;
  for (uint32_t word : words_of(bitmap)) {
    char line[33];
    for (int i = 0; i < 32; ++i) line[i] = (word >> (31 - i) & 1) != 0 ? '1' : '0';
    line[32] = '\n';
    std::fwrite(line, 1, sizeof line, stream);
  }
}

#define SELECT(name, type)                                                      \
  type* bm_select_##name(const Bitmap* bitmap, type const* array, uint32_t n) { \
    return vstring::select<type>(bitmap, array, n);                             \
  }
SELECT(ui8, uint8_t)
SELECT(i8, int8_t)
SELECT(ui16, uint16_t)
SELECT(i16, int16_t)
SELECT(ui32, uint32_t)
SELECT(i32, int32_t)
SELECT(f32, float)
SELECT(f64, double)
SELECT(ptr, void*)
#undef SELECT
