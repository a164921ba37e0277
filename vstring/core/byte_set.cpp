// Scans over byte sets. A set is looked up for 32 bytes at once: a shuffle by the low nibble gives
// a mask of the high nibbles that are in the set, another one picks the bit of the high nibble.
// Short texts take a plain loop, for which no tables are made.
#include "vstring/core/byte_set.h"

#include <algorithm>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr std::size_t kVectorThreshold = 96;

// The offset of the first byte from `from` on whose membership is `wanted`.
std::size_t find_plain(Text text, std::size_t from, const ByteSet& set, bool wanted) {
  while (from < text.size() && set.contains(byte_of(text[from])) != wanted) ++from;
  return from;
}

#ifdef VSTRING_X86
#define VSTRING_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))

// For each low nibble the set's high nibbles, as bits: 0..7 in one table, 8..15 in the other.
struct Tables {
  alignas(32) unsigned char low[32];
  alignas(32) unsigned char high[32];
};

Tables make_tables(const ByteSet& set) {
  Tables tables{};
  for (unsigned c = 0; c < 256; ++c) {
    if (!set.contains(static_cast<unsigned char>(c))) continue;
    unsigned char* table = c < 128 ? tables.low : tables.high;
    auto bit = static_cast<unsigned char>(1U << (c >> 4 & 7));
    table[c & 15] = static_cast<unsigned char>(table[c & 15] | bit);
    table[(c & 15) + 16] = table[c & 15];
  }
  return tables;
}

// A bit for each of the 32 bytes at `at` that is in the set.
VSTRING_AVX2 inline std::uint32_t members(const char* at, __m256i low, __m256i high) {
  const __m256i bits =
      _mm256_setr_epi8(1, 2, 4, 8, 16, 32, 64, -128, 1, 2, 4, 8, 16, 32, 64, -128,  //
                       1, 2, 4, 8, 16, 32, 64, -128, 1, 2, 4, 8, 16, 32, 64, -128);
  __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
  // Shuffles give 0 for an index with its top bit set; turning the bit selects the other table.
  __m256i turned = _mm256_xor_si256(bytes, _mm256_set1_epi8(-128));
  __m256i low_half = _mm256_and_si256(bytes, _mm256_set1_epi8(-113));  // 0x8f
  __m256i high_half = _mm256_and_si256(turned, _mm256_set1_epi8(-113));
  __m256i rows =
      _mm256_or_si256(_mm256_shuffle_epi8(low, low_half), _mm256_shuffle_epi8(high, high_half));
  __m256i nibbles = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
  __m256i picked = _mm256_and_si256(rows, _mm256_shuffle_epi8(bits, nibbles));
  __m256i absent = _mm256_cmpeq_epi8(picked, _mm256_setzero_si256());
  return ~static_cast<std::uint32_t>(_mm256_movemask_epi8(absent));
}

VSTRING_AVX2 std::size_t find_avx2(Text text, std::size_t from, const ByteSet& set, bool wanted) {
  Tables tables = make_tables(set);
  __m256i low = _mm256_load_si256(reinterpret_cast<const __m256i*>(tables.low));
  __m256i high = _mm256_load_si256(reinterpret_cast<const __m256i*>(tables.high));
  std::uint32_t flip = wanted ? 0 : ~0U;
  for (; from + 32 <= text.size(); from += 32) {
    std::uint32_t hits = members(text.data() + from, low, high) ^ flip;
    if (hits != 0) return from + static_cast<std::size_t>(__builtin_ctz(hits));
  }
  return find_plain(text, from, set, wanted);
}

VSTRING_AVX2 std::size_t count_avx2(Text text, const ByteSet& set, std::size_t& done) {
  Tables tables = make_tables(set);
  __m256i low = _mm256_load_si256(reinterpret_cast<const __m256i*>(tables.low));
  __m256i high = _mm256_load_si256(reinterpret_cast<const __m256i*>(tables.high));
  std::size_t count = 0;
  for (; done + 32 <= text.size(); done += 32) {
    count += static_cast<std::size_t>(__builtin_popcount(members(text.data() + done, low, high)));
  }
  return count;
}
#endif

std::size_t find(Text text, const ByteSet& set, bool wanted) {
#ifdef VSTRING_X86
  if (text.size() >= kVectorThreshold && has_avx2()) {
    // Most scans end soon: the tables are made only for those that do not.
    std::size_t near = find_plain(text.substr(0, 32), 0, set, wanted);
    return near < 32 ? near : find_avx2(text, 32, set, wanted);
  }
#endif
  return find_plain(text, 0, set, wanted);
}

}  // namespace

std::size_t find_member(Text text, const ByteSet& set) { return find(text, set, true); }

std::size_t find_other(Text text, const ByteSet& set) { return find(text, set, false); }

std::size_t count_members(Text text, const ByteSet& set) {
  std::size_t done = 0;
  std::size_t count = 0;
#ifdef VSTRING_X86
  if (text.size() >= kVectorThreshold && has_avx2()) count = count_avx2(text, set, done);
#endif
  return count + static_cast<std::size_t>(
                     std::count_if(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(),
                                   [&](char c) { return set.contains(byte_of(c)); }));
}

}  // namespace vstring
