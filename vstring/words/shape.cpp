#include "vstring/words/shape.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "vstring/core/common_ends.h"
#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

enum class Step { kFall, kRise };

#ifdef VSTRING_X86
// The same over whole blocks of 32 bytes, from position 1; where the first block begins that holds
// such a step, or that is not whole.
template <Step step>
VSTRING_AVX2 std::size_t skip_blocks(Text word) {
  std::size_t i = 1;
  for (; i + 32 <= word.size(); i += 32) {
    __m256i now = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(word.data() + i));
    __m256i before = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(word.data() + i - 1));
    __m256i excess =
        step == Step::kFall ? _mm256_subs_epu8(before, now) : _mm256_subs_epu8(now, before);
    if (_mm256_testz_si256(excess, excess) == 0) break;
  }
  return i;
}
#endif

template <Step step>
std::size_t first_step(Text word) {
  std::size_t i = 1;
#ifdef VSTRING_X86
  if (word.size() > 32 && has_avx2()) i = skip_blocks<step>(word);
#endif
  for (; i < word.size(); ++i) {
    unsigned char before = byte_of(word[i - 1]);
    unsigned char now = byte_of(word[i]);
    if (step == Step::kFall ? now < before : now > before) return i;
  }
  return word.size();
}

}  // namespace

std::size_t first_fall(Text word) { return first_step<Step::kFall>(word); }

std::size_t first_rise(Text word) { return first_step<Step::kRise>(word); }

bool is_palindrome(Text word) {
  std::size_t half = word.size() / 2;
  const char* end = word.data() + word.size();
  std::size_t i = 0;
  for (; half - i >= 8; i += 8) {
    if (eight_bytes(word.data() + i) != __builtin_bswap64(eight_bytes(end - i - 8))) return false;
  }
  while (i < half && word[i] == word[word.size() - 1 - i]) ++i;
  return i == half;
}

bool have_same_pattern(Text s, Text t) {
  // The number of each byte's name, from 1; 0 while it has none.
  std::array<int, 256> name_in_s = {};
  std::array<int, 256> name_in_t = {};
  int next = 1;
  for (std::size_t i = 0; i < s.size(); ++i) {
    int& a = name_in_s[byte_of(s[i])];
    int& b = name_in_t[byte_of(t[i])];
    if (a != b) return false;
    if (a == 0) a = b = next++;
  }
  return true;
}

std::size_t canonical_pattern(Text word, unsigned char base, char* out) {
  std::array<unsigned char, 256> names = {};
  unsigned char next = base;
  for (std::size_t i = 0; i < word.size(); ++i) {
    unsigned char& name = names[byte_of(word[i])];
    if (name == 0) name = next++;
    if (name == 0) return i;
    out[i] = static_cast<char>(name);
  }
  return word.size();
}

}  // namespace vstring
