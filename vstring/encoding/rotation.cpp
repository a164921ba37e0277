// Rotations. Each is a rule for one byte and for a vector of them; a last vector may overlap the
// one before it, so that nothing is read or written beyond the ends.
#include "vstring/encoding/rotation.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr unsigned char kNumLetters = 26;

#ifdef VSTRING_X86
VSTRING_AVX2 __m256i all(unsigned char c) { return _mm256_set1_epi8(static_cast<char>(c)); }
#endif

// Adds a number to every byte, and knows whether a NUL came out.
class ByteRule {
 public:
  explicit ByteRule(unsigned char shift) : shift_(shift) {}
  unsigned char operator()(unsigned char c) {
    auto sum = static_cast<unsigned char>(c + shift_);
    has_nul_ |= sum == 0;
    return sum;
  }
  bool has_nul() const { return has_nul_; }

#ifdef VSTRING_X86
  class Wide {
   public:
    VSTRING_AVX2 explicit Wide(const ByteRule& rule) : shift_(all(rule.shift_)), least_(all(255)) {}
    VSTRING_AVX2 __m256i operator()(__m256i bytes) {
      __m256i sums = _mm256_add_epi8(bytes, shift_);
      least_ = _mm256_min_epu8(least_, sums);
      return sums;
    }
    VSTRING_AVX2 void finish(ByteRule& rule) const {
      __m256i is_nul = _mm256_cmpeq_epi8(least_, _mm256_setzero_si256());
      rule.has_nul_ |= _mm256_testz_si256(is_nul, is_nul) == 0;
    }

   private:
    __m256i shift_;
    __m256i least_;
  };
#endif

 private:
  unsigned char shift_;
  bool has_nul_ = false;
};

// Moves letters on in their alphabet. The bit that tells small letters from capitals does not count
// for the place of a letter.
class LetterRule {
 public:
  explicit LetterRule(unsigned char shift) : shift_(shift) {}
  unsigned char operator()(unsigned char c) {
    unsigned place = (c | kCaseBit) - unsigned{'a'};
    if (place >= kNumLetters) return c;
    return static_cast<unsigned char>(c + shift_ -
                                      (place + shift_ >= kNumLetters ? kNumLetters : 0));
  }

#ifdef VSTRING_X86
  class Wide {
   public:
    VSTRING_AVX2 explicit Wide(const LetterRule& rule)
        : stays_(all(static_cast<unsigned char>(127 - rule.shift_))),
          wraps_(all(static_cast<unsigned char>(128 - rule.shift_))) {
      __m256i numbers = _mm256_broadcastsi128_si256(
          _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
      __m256i is_stay = _mm256_cmpeq_epi8(numbers, _mm256_and_si256(stays_, all(15)));
      __m256i is_wrap = _mm256_cmpeq_epi8(numbers, _mm256_and_si256(wraps_, all(15)));
      auto back = static_cast<unsigned char>(rule.shift_ - kNumLetters);
      steps_ = _mm256_or_si256(_mm256_and_si256(is_stay, all(rule.shift_)),
                               _mm256_and_si256(is_wrap, all(back)));
    }
    // The place of z becomes 127 and every other character than a letter something above, for which
    // a shuffle gives 0. The letters go to two neighbouring numbers: that of the last letter which
    // does not wrap round and that of the first which does.
    VSTRING_AVX2 __m256i operator()(__m256i bytes) const {
      __m256i places = _mm256_add_epi8(_mm256_or_si256(bytes, all(kCaseBit)), all(256 - 'a'));
      places = _mm256_adds_epu8(places, all(128 - kNumLetters));
      __m256i kinds = _mm256_min_epi8(_mm256_max_epu8(places, stays_), wraps_);
      return _mm256_add_epi8(bytes, _mm256_shuffle_epi8(steps_, kinds));
    }
    void finish(const LetterRule&) const {}

   private:
    __m256i stays_;
    __m256i wraps_;
    __m256i steps_;
  };
#endif

 private:
  static constexpr unsigned char kCaseBit = 0x20;

  unsigned char shift_;
};

template <class Rule>
void rotate_plain(const char* __restrict in, std::size_t size, Rule& rule, char* __restrict out) {
  for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<char>(rule(byte_of(in[i])));
}

#ifdef VSTRING_X86

// Blocks of 32, 16, 8 and 4 bytes. A short one is repeated in the vector.

template <class Wide>
VSTRING_AVX2 void rotate_32(const char* in, Wide& wide, char* out) {
  __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), wide(bytes));
}

template <class Wide>
VSTRING_AVX2 void rotate_16(const char* in, Wide& wide, char* out) {
  __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  __m256i rotated = wide(_mm256_broadcastsi128_si256(bytes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(rotated));
}

template <class Wide>
VSTRING_AVX2 void rotate_8(const char* in, Wide& wide, char* out) {
  __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
  __m256i rotated = wide(_mm256_broadcastq_epi64(bytes));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(rotated));
}

template <class Wide>
VSTRING_AVX2 void rotate_4(const char* in, Wide& wide, char* out) {
  int bytes = 0;
  std::memcpy(&bytes, in, 4);
  __m256i rotated = wide(_mm256_set1_epi32(bytes));
  bytes = _mm_cvtsi128_si32(_mm256_castsi256_si128(rotated));
  std::memcpy(out, &bytes, 4);
}

constexpr std::size_t kLeastWide = 4;

template <class Rule>
VSTRING_AVX2 void rotate_wide(const char* in, std::size_t size, Rule& rule, char* out) {
  typename Rule::Wide wide(rule);
  if (size >= 32) {
    for (std::size_t i = 0; i < size - 32; i += 32) rotate_32(in + i, wide, out + i);
    rotate_32(in + size - 32, wide, out + size - 32);
  } else if (size >= 16) {
    rotate_16(in, wide, out);
    rotate_16(in + size - 16, wide, out + size - 16);
  } else if (size >= 8) {
    rotate_8(in, wide, out);
    rotate_8(in + size - 8, wide, out + size - 8);
  } else {
    rotate_4(in, wide, out);
    rotate_4(in + size - 4, wide, out + size - 4);
  }
  wide.finish(rule);
}

#endif

template <class Rule>
void rotate(Text text, Rule& rule, char* out) {
#ifdef VSTRING_X86
  if (text.size() >= kLeastWide && has_avx2()) {
    return rotate_wide(text.data(), text.size(), rule, out);
  }
#endif
  rotate_plain(text.data(), text.size(), rule, out);
}

}  // namespace

bool rotate_bytes(Text text, unsigned char shift, char* out) {
  ByteRule rule(shift);
  rotate(text, rule, out);
  return rule.has_nul();
}

void rotate_letters(Text text, unsigned char shift, char* out) {
  LetterRule rule(shift);
  rotate(text, rule, out);
}

}  // namespace vstring
