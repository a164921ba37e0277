#include "vstring/similarity/byte_sums.h"

#include <algorithm>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

// What two bytes contribute to a sum.
enum class Term { kDiffers, kLee };

template <Term term>
unsigned term_of(char a, char b) {
  if constexpr (term == Term::kDiffers) return a != b ? 1 : 0;
  unsigned difference = static_cast<unsigned char>(byte_of(a) - byte_of(b));
  return std::min(difference, 256 - difference);
}

#ifdef VSTRING_X86
// The sum over the whole 32-byte blocks. The Lee term of a difference is its absolute value as a
// signed byte.
template <Term term>
VSTRING_AVX2 std::uint64_t sum_blocks(const char* a, const char* b, std::size_t num_blocks) {
  const __m256i zero = _mm256_setzero_si256();
  __m256i sums = zero;
  for (std::size_t i = 0; i < num_blocks; ++i) {
    __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a) + i);
    __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b) + i);
    __m256i terms = _mm256_abs_epi8(_mm256_sub_epi8(x, y));
    if constexpr (term == Term::kDiffers) terms = _mm256_min_epu8(terms, _mm256_set1_epi8(1));
    sums = _mm256_add_epi64(sums, _mm256_sad_epu8(terms, zero));
  }
  alignas(32) std::uint64_t lanes[4];
  _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), sums);
  return lanes[0] + lanes[1] + lanes[2] + lanes[3];
}
#endif

// The sum over the positions of two texts of one length.
template <Term term>
std::uint64_t sum_of(Text s, Text t) {
  std::uint64_t sum = 0;
  std::size_t i = 0;
#ifdef VSTRING_X86
  if (s.size() >= 32 && has_avx2()) {
    sum = sum_blocks<term>(s.data(), t.data(), s.size() / 32);
    i = s.size() / 32 * 32;
  }
#endif
  for (; i < s.size(); ++i) sum += term_of<term>(s[i], t[i]);
  return sum;
}

}  // namespace

std::size_t hamming_distance(Text s, Text t) {
  std::size_t common = std::min(s.size(), t.size());
  std::uint64_t differing = sum_of<Term::kDiffers>(s.substr(0, common), t.substr(0, common));
  return static_cast<std::size_t>(differing) + std::max(s.size(), t.size()) - common;
}

std::uint64_t lee_weight(Text s) {
  static constexpr char kZeros[4096] = {};
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < s.size(); i += sizeof kZeros) {
    Text piece = s.substr(i, sizeof kZeros);
    sum += sum_of<Term::kLee>(piece, Text(kZeros, piece.size()));
  }
  return sum;
}

std::uint64_t lee_distance(Text s, Text t) { return sum_of<Term::kLee>(s, t); }

}  // namespace vstring
