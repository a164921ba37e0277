// The filter's vectors: 32 offsets a step, each half of a byte looked up by a shuffle.
#include "vstring/search/start_filter.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr std::size_t kBlock = 32;
constexpr std::size_t kGroups = 8;
constexpr unsigned char kAllGroups = 0xff;

#ifdef VSTRING_X86

#define VSTRING_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))

VSTRING_AVX2 inline __m256i table_of(const unsigned char* bytes) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
}

VSTRING_AVX2 inline __m256i groups_of(const char* at, __m256i low, __m256i high) {
  const __m256i half = _mm256_set1_epi8(15);
  __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
  __m256i low_half = _mm256_and_si256(bytes, half);
  __m256i high_half = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), half);
  return _mm256_and_si256(_mm256_shuffle_epi8(low, low_half), _mm256_shuffle_epi8(high, high_half));
}

// The offset of the first start among `count` offsets, at least kBlock of them; count if none.
// `second` and `third` are the offsets of the bytes that go with halves[1] and halves[2].
template <class Halves>
VSTRING_AVX2 std::size_t next_avx2(const Halves (&halves)[3], const char* text, std::size_t second,
                                   std::size_t third, std::size_t count) {
  __m256i low[3], high[3];
  for (std::size_t i = 0; i < 3; ++i) {
    low[i] = table_of(halves[i].low);
    high[i] = table_of(halves[i].high);
  }
  for (std::size_t at = 0; at < count; at += kBlock) {
    at = std::min(at, count - kBlock);
    __m256i groups = groups_of(text + at, low[0], high[0]);
    groups = _mm256_and_si256(groups, groups_of(text + at + second, low[1], high[1]));
    groups = _mm256_and_si256(groups, groups_of(text + at + third, low[2], high[2]));
    __m256i none = _mm256_cmpeq_epi8(groups, _mm256_setzero_si256());
    auto starts = ~static_cast<std::uint32_t>(_mm256_movemask_epi8(none));
    if (starts != 0) return at + static_cast<std::size_t>(std::countr_zero(starts));
  }
  return count;
}

#endif

}  // namespace

StartFilter::StartFilter(std::vector<std::string> starts) {
  if (!has_avx2()) return;
  std::sort(starts.begin(), starts.end());  // so that a group's starts are alike
  length_ = starts.front().size();
  for (std::size_t i = 0; i < starts.size(); ++i) {
    auto group = static_cast<unsigned char>(1U << (i * kGroups / starts.size()));
    for (std::size_t k = 0; k < length_; ++k) {
      halves_[k].low[byte_of(starts[i][k]) % 16] |= group;
      halves_[k].high[byte_of(starts[i][k]) / 16] |= group;
    }
  }
  for (std::size_t k = length_; k < kMostBytes; ++k) {
    std::fill_n(halves_[k].low, 16, kAllGroups);
    std::fill_n(halves_[k].high, 16, kAllGroups);
  }
}

bool StartFilter::may_start_at(const char* at) const {
  unsigned groups = kAllGroups;
  for (std::size_t k = 0; k < length_; ++k) {
    unsigned char byte = byte_of(at[k]);
    groups &= halves_[k].low[byte % 16] & static_cast<unsigned>(halves_[k].high[byte / 16]);
  }
  return groups != 0;
}

std::size_t StartFilter::next(Text text, std::size_t from) const {
  if (text.size() < from + length_) return text.size();
  std::size_t count = text.size() - from - length_ + 1, at = 0;
  const char* begin = text.data() + from;
#ifdef VSTRING_X86
  if (count >= kBlock) {
    std::size_t second = length_ > 1 ? 1 : 0;
    at = next_avx2(halves_, begin, second, length_ - 1, count);
    return at == count ? text.size() : from + at;
  }
#endif
  while (at < count && !may_start_at(begin + at)) ++at;
  return at == count ? text.size() : from + at;
}

}  // namespace vstring
