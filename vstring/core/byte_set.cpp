// Scans over byte sets. Any set is looked up for 32 bytes at once: a shuffle by the low nibbles
// gives the high nibbles that are in the set, a second one the bit of the high nibble to look for.
// A scan first tries a few bytes one by one, as most scans end soon.
#include "vstring/core/byte_set.h"

#include <algorithm>
#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr std::size_t kNumTried = 4;
constexpr std::size_t kMarks = 64;  // bits in a word of marks

// The offset of the first byte whose membership is `wanted`; the text's length when none is.
std::size_t find_plain(Text text, const ByteSet& set, bool wanted) {
  std::size_t at = 0;
  while (at < text.size() && set.contains(byte_of(text[at])) != wanted) ++at;
  return at;
}

std::size_t count_plain(Text text, const ByteSet& set) {
  auto count =
      std::count_if(text.begin(), text.end(), [&](char c) { return set.contains(byte_of(c)); });
  return static_cast<std::size_t>(count);
}

// The marks of a text of at most kMarks bytes.
std::uint64_t marks_plain(Text text, const ByteSet& set) {
  std::uint64_t marks = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    marks |= std::uint64_t{set.contains(byte_of(text[i]))} << i;
  }
  return marks;
}

#ifdef VSTRING_X86

constexpr std::size_t kVector = 32;
constexpr std::size_t kHalf = kVector / 2;
constexpr std::size_t kBlock = 4 * kVector;

// A set as shuffles read it: for each low nibble the high nibbles that are in the set, one bit
// each, 0..7 in one table and 8..15 in the other. Both halves of a table are alike.
struct Tables {
  __m256i low;
  __m256i high;
};

// The 16 bits of each high nibble, turned into 8 bits for each low nibble.
VSTRING_AVX2 inline Tables make_tables(const ByteSet& set) {
  __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(set.words()));
  __m256i source = _mm256_broadcastsi128_si256(_mm_set_epi64x(0x0101010101010101, 0));
  __m256i wanted = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
  __m256i nibble = _mm256_set1_epi8(1);
  __m256i rows = _mm256_setzero_si256();
  for (int i = 0; i < 8; ++i) {
    __m256i bits = _mm256_and_si256(_mm256_shuffle_epi8(words, source), wanted);
    rows = _mm256_or_si256(rows, _mm256_and_si256(_mm256_cmpeq_epi8(bits, wanted), nibble));
    source = _mm256_add_epi8(source, _mm256_set1_epi8(2));
    nibble = _mm256_add_epi8(nibble, nibble);
  }
  return {_mm256_permute2x128_si256(rows, rows, 0x00), _mm256_permute2x128_si256(rows, rows, 0x11)};
}

VSTRING_AVX2 inline __m256i load(const char* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// The first and the last 16 bytes of a text of 16 to 32; they may overlap.
VSTRING_AVX2 inline __m256i load_ends(Text text) {
  return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(text.data() + text.size() - kHalf),
                             reinterpret_cast<const __m128i*>(text.data()));
}

// All ones for each of the bytes that is in the set.
VSTRING_AVX2 inline __m256i members(__m256i bytes, const Tables& tables) {
  // A shuffle gives 0 for an index with its top bit set; turning that bit selects the other table.
  __m256i turned = _mm256_xor_si256(bytes, _mm256_set1_epi8(-128));
  __m256i rows = _mm256_or_si256(_mm256_shuffle_epi8(tables.low, bytes),
                                 _mm256_shuffle_epi8(tables.high, turned));
  __m256i nibbles = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
  __m256i powers = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
  __m256i bits = _mm256_shuffle_epi8(powers, nibbles);
  return _mm256_cmpeq_epi8(_mm256_and_si256(rows, bits), bits);
}

VSTRING_AVX2 inline std::uint32_t mask_of(__m256i flags) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(flags));
}

// A bit for each of the bytes whose membership is as wanted.
template <bool Wanted>
VSTRING_AVX2 inline std::uint32_t hits(__m256i bytes, const Tables& tables) {
  std::uint32_t mask = mask_of(members(bytes, tables));
  return Wanted ? mask : ~mask;
}

template <bool Wanted>
VSTRING_AVX2 inline bool is_hit_in_block(const char* at, const Tables& tables) {
  __m256i a = members(load(at), tables);
  __m256i b = members(load(at + kVector), tables);
  __m256i c = members(load(at + 2 * kVector), tables);
  __m256i d = members(load(at + 3 * kVector), tables);
  if (Wanted) return mask_of(_mm256_or_si256(_mm256_or_si256(a, b), _mm256_or_si256(c, d))) != 0;
  return ~mask_of(_mm256_and_si256(_mm256_and_si256(a, b), _mm256_and_si256(c, d))) != 0;
}

std::size_t first_bit(std::uint32_t mask) { return static_cast<std::size_t>(__builtin_ctz(mask)); }

VSTRING_AVX2 inline std::size_t num_bits(std::uint32_t mask) {
  return static_cast<std::size_t>(__builtin_popcount(mask));
}

// As find_plain, for a text of half a vector or more. The last vector overlaps the one before it.
template <bool Wanted>
VSTRING_AVX2 std::size_t find_avx2(Text text, const ByteSet& set) {
  Tables tables = make_tables(set);
  if (text.size() < kVector) {
    std::uint32_t found = hits<Wanted>(load_ends(text), tables);
    if (found == 0) return text.size();
    std::size_t bit = first_bit(found);
    return bit < kHalf ? bit : text.size() - kVector + bit;
  }
  const char* begin = text.data();
  std::size_t at = 0;
  while (text.size() - at >= kBlock && !is_hit_in_block<Wanted>(begin + at, tables)) at += kBlock;
  while (at < text.size()) {
    std::size_t from = std::min(at, text.size() - kVector);
    std::uint32_t found = hits<Wanted>(load(begin + from), tables);
    if (found != 0) return from + first_bit(found);
    at = from + kVector;
  }
  return text.size();
}

// As count_plain, for a text of a vector or more.
VSTRING_AVX2 std::size_t count_avx2(Text text, const ByteSet& set) {
  Tables tables = make_tables(set);
  std::size_t rest = text.size() % kVector;
  const char* end = text.data() + text.size();
  // Of the last vector only what the whole ones leave over is counted.
  std::uint32_t last = mask_of(members(load(end - kVector), tables));
  std::size_t count = rest == 0 ? 0 : num_bits(last >> (kVector - rest));
  for (const char* at = text.data(); at != end - rest; at += kVector) {
    count += num_bits(mask_of(members(load(at), tables)));
  }
  return count;
}

VSTRING_AVX2 inline std::uint64_t marks_of_block(const char* at, const Tables& tables) {
  std::uint64_t low = mask_of(members(load(at), tables));
  std::uint64_t high = mask_of(members(load(at + kVector), tables));
  return high << kVector | low;
}

VSTRING_AVX2 void mark_avx2(Text text, const ByteSet& set, std::uint64_t* marks) {
  Tables tables = make_tables(set);
  std::size_t rest = text.size() % kMarks;
  const char* end = text.data() + text.size() - rest;
  for (const char* at = text.data(); at != end; at += kMarks) *marks++ = marks_of_block(at, tables);
  if (rest == 0) return;
  char block[kMarks] = {};
  std::memcpy(block, end, rest);
  *marks = marks_of_block(block, tables) & ((std::uint64_t{1} << rest) - 1);
}

#endif

template <bool Wanted>
std::size_t find(Text text, const ByteSet& set) {
#ifdef VSTRING_X86
  if (text.size() >= kHalf && has_avx2()) {
    std::size_t near = find_plain(text.substr(0, kNumTried), set, Wanted);
    return near < kNumTried ? near : find_avx2<Wanted>(text, set);
  }
#endif
  return find_plain(text, set, Wanted);
}

}  // namespace

std::size_t find_member(Text text, const ByteSet& set) { return find<true>(text, set); }

std::size_t find_other(Text text, const ByteSet& set) { return find<false>(text, set); }

std::size_t count_members(Text text, const ByteSet& set) {
#ifdef VSTRING_X86
  if (text.size() >= kVector && has_avx2()) return count_avx2(text, set);
#endif
  return count_plain(text, set);
}

void mark_members(Text text, const ByteSet& set, std::uint64_t* marks) {
#ifdef VSTRING_X86
  if (text.size() >= kVector && has_avx2()) return mark_avx2(text, set, marks);
#endif
  for (std::size_t at = 0; at < text.size(); at += kMarks) {
    *marks++ = marks_plain(text.substr(at, kMarks), set);
  }
}

}  // namespace vstring
