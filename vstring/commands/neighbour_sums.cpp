// Sums over neighbouring bytes: 32 products at once, in lanes of 32 bits that are emptied before
// they can overflow.
#include "vstring/commands/neighbour_sums.h"

#include <algorithm>
#include <numeric>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

// Adds the pairs that begin at offsets `from` to text.size() - 2.
void add_pairs(Text text, std::size_t from, NeighbourSums& sums) {
  for (std::size_t i = from; i + 1 < text.size(); ++i) {
    std::uint64_t c = byte_of(text[i]);
    sums.products += c * byte_of(text[i + 1]);
    sums.squares += c * c;
    sums.bytes += c;
  }
}

#ifdef VSTRING_X86

constexpr std::size_t kVector = 32;
// A lane takes in four products of at most 255 * 255 a step and holds 2^32 - 1.
constexpr std::size_t kMaxSteps = 0xffffffff / (4 * 255 * 255);

VSTRING_AVX2 inline __m256i load(const char* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// The sums of four products each.
VSTRING_AVX2 inline __m256i multiplied(__m256i a, __m256i b) {
  const __m256i zero = _mm256_setzero_si256();
  __m256i low = _mm256_madd_epi16(_mm256_unpacklo_epi8(a, zero), _mm256_unpacklo_epi8(b, zero));
  __m256i high = _mm256_madd_epi16(_mm256_unpackhi_epi8(a, zero), _mm256_unpackhi_epi8(b, zero));
  return _mm256_add_epi32(low, high);
}

VSTRING_AVX2 inline std::uint64_t total32(__m256i lanes) {
  std::uint32_t values[8];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(values), lanes);
  return std::accumulate(values, values + 8, std::uint64_t{0});
}

VSTRING_AVX2 inline std::uint64_t total64(__m256i lanes) {
  std::uint64_t values[4];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(values), lanes);
  return std::accumulate(values, values + 4, std::uint64_t{0});
}

// Adds the pairs of as many whole vectors as have a byte behind them; gives the offset of the rest.
VSTRING_AVX2 std::size_t add_pairs_avx2(Text text, NeighbourSums& sums) {
  std::size_t at = 0;
  while (text.size() - at > kVector) {
    __m256i products = _mm256_setzero_si256();
    __m256i squares = _mm256_setzero_si256();
    __m256i bytes = _mm256_setzero_si256();
    std::size_t steps = std::min((text.size() - at - 1) / kVector, kMaxSteps);
    for (std::size_t step = 0; step < steps; ++step, at += kVector) {
      __m256i here = load(text.data() + at);
      products = _mm256_add_epi32(products, multiplied(here, load(text.data() + at + 1)));
      squares = _mm256_add_epi32(squares, multiplied(here, here));
      bytes = _mm256_add_epi64(bytes, _mm256_sad_epu8(here, _mm256_setzero_si256()));
    }
    sums.products += total32(products);
    sums.squares += total32(squares);
    sums.bytes += total64(bytes);
  }
  return at;
}

#endif

}  // namespace

NeighbourSums neighbour_sums(Text text) {
  NeighbourSums sums;
  if (text.empty()) return sums;
  std::size_t done = 0;
#ifdef VSTRING_X86
  if (text.size() > kVector && has_avx2()) done = add_pairs_avx2(text, sums);
#endif
  add_pairs(text, done, sums);
  const char ends[] = {text.back(), text.front()};
  add_pairs(Text(ends, 2), 0, sums);
  return sums;
}

std::uint64_t byte_sum(Text text) {
  return std::accumulate(text.begin(), text.end(), std::uint64_t{0},
                         [](std::uint64_t sum, char c) { return sum + byte_of(c); });
}

}  // namespace vstring
