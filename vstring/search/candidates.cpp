// Candidates by vectors. Short texts, and processors without the vectors, go from one first anchor
// to the next by memchr.
#include "vstring/search/candidates.h"

#include <cstring>
#include <iterator>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr std::size_t kBlock = 64;

// Ranks of the byte values by how often they occur in English text and in programs; the rarest is
// 0.
// clang-format off
constexpr unsigned char kFrequencyRank[256] = {
    240, 182, 154, 144, 153, 141, 128, 130, 172, 196, 244, 97, 139, 107, 147, 183,
    145, 113, 132, 32, 108, 104, 102, 48, 137, 39, 43, 19, 100, 47, 38, 148,
    255, 140, 219, 189, 184, 164, 159, 228, 225, 226, 214, 163, 234, 227, 231, 203,
    212, 206, 194, 186, 168, 165, 166, 158, 173, 167, 215, 192, 195, 204, 200, 151,
    169, 217, 190, 218, 205, 221, 197, 193, 209, 223, 129, 160, 222, 202, 211, 207,
    208, 135, 210, 220, 224, 199, 179, 185, 171, 191, 142, 180, 198, 181, 127, 236,
    152, 249, 232, 246, 242, 254, 237, 233, 243, 251, 177, 216, 245, 238, 248, 252,
    239, 187, 250, 247, 253, 241, 229, 230, 213, 235, 170, 174, 178, 175, 146, 59,
    138, 98, 42, 161, 149, 157, 70, 90, 116, 188, 50, 176, 75, 156, 74, 68,
    123, 24, 27, 28, 89, 58, 20, 12, 69, 1, 14, 23, 33, 31, 0, 21,
    103, 25, 34, 44, 82, 54, 36, 17, 78, 5, 30, 6, 10, 15, 9, 55,
    101, 11, 2, 7, 62, 56, 121, 52, 122, 73, 95, 46, 66, 65, 106, 72,
    155, 133, 93, 134, 117, 86, 111, 131, 109, 94, 26, 13, 37, 16, 35, 3,
    136, 87, 99, 63, 29, 45, 61, 41, 114, 64, 49, 83, 22, 8, 51, 115,
    126, 4, 81, 18, 40, 53, 80, 85, 162, 143, 77, 124, 88, 91, 71, 120,
    119, 67, 79, 76, 60, 57, 118, 92, 125, 84, 110, 96, 105, 112, 150, 201,
};
// clang-format on

unsigned rank_at(Text pattern, std::size_t i) { return kFrequencyRank[byte_of(pattern[i])]; }

Anchors anchors_at(Text pattern, std::size_t first, std::size_t second) {
  return {first, second, pattern[first], pattern[second]};
}

CandidateBlock next_plain(const Anchors& anchors, const char* text, std::size_t from,
                          std::size_t starts) {
  const char* firsts = text + anchors.first;
  const char* seconds = text + anchors.second;
  while (from < starts) {
    const void* hit = std::memchr(firsts + from, byte_of(anchors.first_byte), starts - from);
    if (hit == nullptr) break;
    auto at = static_cast<std::size_t>(static_cast<const char*>(hit) - firsts);
    if (seconds[at] == anchors.second_byte) return {at, at + 1, 1};
    from = at + 1;
  }
  return {starts, starts, 0};
}

#ifdef VSTRING_X86

// The last block overlaps the one before it, so that nothing behind the text is read.
std::uint64_t from_bit(std::size_t bit) { return ~std::uint64_t{0} << bit; }

VSTRING_AVX2 inline __m256i both_avx2(const char* first, const char* second, __m256i first_byte,
                                      __m256i second_byte) {
  __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(first));
  __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(second));
  return _mm256_and_si256(_mm256_cmpeq_epi8(a, first_byte), _mm256_cmpeq_epi8(b, second_byte));
}

VSTRING_AVX2 inline std::uint64_t mask_avx2(__m256i low, __m256i high) {
  auto low_bits = static_cast<std::uint32_t>(_mm256_movemask_epi8(low));
  auto high_bits = static_cast<std::uint32_t>(_mm256_movemask_epi8(high));
  return low_bits | static_cast<std::uint64_t>(high_bits) << 32;
}

VSTRING_AVX2 CandidateBlock next_avx2(const Anchors& anchors, const char* text, std::size_t from,
                                      std::size_t starts) {
  const char* firsts = text + anchors.first;
  const char* seconds = text + anchors.second;
  const __m256i first_byte = _mm256_set1_epi8(anchors.first_byte);
  const __m256i second_byte = _mm256_set1_epi8(anchors.second_byte);
  std::size_t at = from;
  for (; at + kBlock <= starts; at += kBlock) {
    __m256i low = both_avx2(firsts + at, seconds + at, first_byte, second_byte);
    __m256i high = both_avx2(firsts + at + 32, seconds + at + 32, first_byte, second_byte);
    __m256i any = _mm256_or_si256(low, high);
    if (_mm256_testz_si256(any, any) == 0) return {at, at + kBlock, mask_avx2(low, high)};
  }
  if (at == starts) return {starts, starts, 0};
  std::size_t last = starts - kBlock;
  __m256i low = both_avx2(firsts + last, seconds + last, first_byte, second_byte);
  __m256i high = both_avx2(firsts + last + 32, seconds + last + 32, first_byte, second_byte);
  return {last, starts, mask_avx2(low, high) & from_bit(at - last)};
}

#endif

#ifdef __SSE2__

inline std::uint64_t mask_sse2(const char* first, const char* second, __m128i first_byte,
                               __m128i second_byte) {
  __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
  __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(second));
  __m128i both = _mm_and_si128(_mm_cmpeq_epi8(a, first_byte), _mm_cmpeq_epi8(b, second_byte));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(both));
}

CandidateBlock next_sse2(const Anchors& anchors, const char* text, std::size_t from,
                         std::size_t starts) {
  const __m128i first_byte = _mm_set1_epi8(anchors.first_byte);
  const __m128i second_byte = _mm_set1_epi8(anchors.second_byte);
  while (from < starts) {
    std::size_t at = from + kBlock <= starts ? from : starts - kBlock;
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < kBlock; i += 16) {
      const char* here = text + at + i;
      mask |= mask_sse2(here + anchors.first, here + anchors.second, first_byte, second_byte) << i;
    }
    mask &= from_bit(from - at);
    from = at + kBlock;
    if (mask != 0) return {at, from, mask};
  }
  return {starts, starts, 0};
}

#endif

}  // namespace

Anchors end_anchors(Text pattern) { return anchors_at(pattern, 0, pattern.size() - 1); }

Anchors rarest_anchors(Text pattern) {
  constexpr std::size_t kEnough = 4096;  // bytes that certainly hold two rare ones
  Text seen = pattern.substr(0, kEnough);
  std::size_t first = 0;
  for (std::size_t i = 1; i < seen.size(); ++i) {
    if (rank_at(seen, i) < rank_at(seen, first)) first = i;
  }
  std::size_t second = first + 1 < seen.size() ? first + 1 : 0;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    if (i != first && rank_at(seen, i) < rank_at(seen, second)) second = i;
  }
  return anchors_at(pattern, first, second);
}

std::span<const CandidateKernel> candidate_kernels() {
  static const CandidateKernel kernels[] = {
#ifdef VSTRING_X86
      {next_avx2, kBlock},
#endif
#ifdef __SSE2__
      {next_sse2, kBlock},
#endif
      {next_plain, 0},
  };
  static const std::span<const CandidateKernel> all = kernels;
  static const std::size_t skipped = std::size(kernels) > 1 && !has_avx2() ? 1 : 0;
  return all.subspan(skipped);
}

CandidateBlock next_candidates(const Anchors& anchors, const char* text, std::size_t from,
                               std::size_t starts) {
  static const CandidateKernel fastest = candidate_kernels().front();
  if (starts < fastest.least_starts) return next_plain(anchors, text, from, starts);
  return fastest.next(anchors, text, from, starts);
}

}  // namespace vstring
