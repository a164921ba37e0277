// Base64 in vectors, after W. Mula and D. Lemire, Faster Base64 Encoding and Decoding Using AVX2
// Instructions, 2018. A block is 24 bytes or 32 digits, one half of it in each half of a vector; a
// half alone does short texts.
#include "vstring/encoding/base64_wide.h"

#include "vstring/core/cpu.h"
#include "vstring/encoding/base64.h"

#ifdef VSTRING_X86

#include <immintrin.h>

#include <cstdint>
#include <cstring>

namespace vstring {
namespace {

constexpr std::size_t kBlockGroups = 8;
constexpr std::size_t kHalfGroups = kLeastWideGroups;

// --- Bytes to digits ----------------------------------------------------------------------------

// For each group abc of a half the bytes b a c b, from which multiplications cut four times six
// bits. The first half is read with its bytes in front, the second with 4 other bytes before them.
VSTRING_AVX2 __m256i spread_places() {
  return _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                          5, 4, 6, 5, 8, 7, 9, 8, 11, 10, 12, 11, 14, 13, 15, 14);
}

// The six-bit values of b a c b: two of them are moved to the right by taking the high half of a
// product, two to the left by taking the low half.
VSTRING_AVX2 __m256i six_bit_values(__m256i spread) {
  __m256i first_third = _mm256_and_si256(spread, _mm256_set1_epi32(0x0fc0fc00));
  __m256i second_fourth = _mm256_and_si256(spread, _mm256_set1_epi32(0x003f03f0));
  return _mm256_or_si256(_mm256_mulhi_epu16(first_third, _mm256_set1_epi32(0x04000040)),
                         _mm256_mullo_epi16(second_fourth, _mm256_set1_epi32(0x01000010)));
}

// What is to be added to a value to get its digit: entry 0 for 26..51, 1..10 for 52..61, 11 and 12
// for 62 and 63, 13 for 0..25.
VSTRING_AVX2 __m256i digit_steps() {
  constexpr char kSmall = 'a' - 26;
  constexpr char kNumber = '0' - 52;
  return _mm256_broadcastsi128_si256(_mm_setr_epi8(kSmall, kNumber, kNumber, kNumber, kNumber,
                                                   kNumber, kNumber, kNumber, kNumber, kNumber,
                                                   kNumber, '+' - 62, '/' - 63, 'A', 0, 0));
}

VSTRING_AVX2 __m256i digits_of(__m256i values) {
  __m256i entries = _mm256_subs_epu8(values, _mm256_set1_epi8(51));
  __m256i is_capital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), values);
  entries = _mm256_or_si256(entries, _mm256_and_si256(is_capital, _mm256_set1_epi8(13)));
  return _mm256_add_epi8(values, _mm256_shuffle_epi8(digit_steps(), entries));
}

VSTRING_AVX2 void encode_block(const char* in, char* out) {
  __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8));
  __m256i bytes = _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
  __m256i spread = _mm256_shuffle_epi8(bytes, spread_places());
  __m256i digits = digits_of(six_bit_values(spread));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), digits);
}

VSTRING_AVX2 void encode_half(const char* in, char* out) {
  std::int32_t end = 0;
  std::memcpy(&end, in + 8, 4);
  __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
  bytes = _mm_insert_epi32(bytes, end, 2);
  __m256i spread = _mm256_shuffle_epi8(_mm256_castsi128_si256(bytes), spread_places());
  __m256i digits = digits_of(six_bit_values(spread));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(digits));
}

// --- Digits to bytes ----------------------------------------------------------------------------

// The kinds of characters by their high four bits; a character is no digit when its kind's bit is
// among those that its low four bits rule out.
enum : char {
  kSigns = 1,         // 0x2_: + and /
  kNumbers = 2,       // 0x3_: 0 to 9
  kFirstLetters = 4,  // 0x4_ and 0x6_: all but the first
  kLastLetters = 8,   // 0x5_ and 0x7_: the first 11
  kNever = 16
};

VSTRING_AVX2 __m256i kinds_by_high_bits() {
  return _mm256_broadcastsi128_si256(
      _mm_setr_epi8(kNever, kNever, kSigns, kNumbers, kFirstLetters, kLastLetters, kFirstLetters,
                    kLastLetters, kNever, kNever, kNever, kNever, kNever, kNever, kNever, kNever));
}

VSTRING_AVX2 __m256i kinds_ruled_out_by_low_bits() {
  constexpr char k0 = kSigns + kFirstLetters + kNever;
  constexpr char k1 = kSigns + kNever;                            // 1 to 9
  constexpr char kA = kSigns + kNumbers + kNever;                 // 10
  constexpr char kB = kNumbers + kLastLetters + kNever;           // 11 and 15: a sign
  constexpr char kC = kSigns + kNumbers + kLastLetters + kNever;  // 12 to 14
  return _mm256_broadcastsi128_si256(
      _mm_setr_epi8(k0, k1, k1, k1, k1, k1, k1, k1, k1, k1, kA, kB, kC, kC, kC, kB));
}

// What is to be added to a digit to get its value, by the high four bits; the slash, one less.
VSTRING_AVX2 __m256i value_steps() {
  constexpr char kCapital = -'A';
  constexpr char kSmall = 26 - 'a';
  return _mm256_broadcastsi128_si256(_mm_setr_epi8(
      0, 63 - '/', 62 - '+', 52 - '0', kCapital, kCapital, kSmall, kSmall, 0, 0, 0, 0, 0, 0, 0, 0));
}

// The values of digits; marks in `faults` what is no digit.
VSTRING_AVX2 __m256i values_of(__m256i digits, __m256i& faults) {
  __m256i low_bits = _mm256_set1_epi8(0x0f);
  __m256i high = _mm256_and_si256(_mm256_srli_epi32(digits, 4), low_bits);
  __m256i low = _mm256_and_si256(digits, low_bits);
  __m256i kinds = _mm256_shuffle_epi8(kinds_by_high_bits(), high);
  __m256i ruled_out = _mm256_shuffle_epi8(kinds_ruled_out_by_low_bits(), low);
  faults = _mm256_or_si256(faults, _mm256_and_si256(kinds, ruled_out));
  __m256i is_slash = _mm256_cmpeq_epi8(digits, _mm256_set1_epi8('/'));
  __m256i steps = _mm256_shuffle_epi8(value_steps(), _mm256_add_epi8(high, is_slash));
  return _mm256_add_epi8(digits, steps);
}

// Twelve bytes in front of each half: pairs of values are joined, then pairs of pairs, and their
// bytes put in order.
VSTRING_AVX2 __m256i joined(__m256i values) {
  __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
  __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
  return _mm256_shuffle_epi8(groups, _mm256_broadcastsi128_si256(_mm_setr_epi8(
                                         2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)));
}

VSTRING_AVX2 void decode_block(const char* in, char* out, __m256i& faults) {
  __m256i digits = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
  __m256i halves = joined(values_of(digits, faults));
  __m256i bytes = _mm256_permutevar8x32_epi32(halves, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(bytes));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 16), _mm256_extracti128_si256(bytes, 1));
}

VSTRING_AVX2 void decode_half(const char* in, char* out, __m256i& faults) {
  __m256i digits =
      _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)));
  __m128i bytes = _mm256_castsi256_si128(joined(values_of(digits, faults)));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
  std::int32_t end = _mm_extract_epi32(bytes, 2);
  std::memcpy(out + 8, &end, 4);
}

// --- Short texts --------------------------------------------------------------------------------

template <class Word>
Word word_at(const char* in) {
  Word word = 0;
  std::memcpy(&word, in, sizeof word);
  return word;
}

// 4 to 15 bytes with zeros behind them, from two words that may overlap.
VSTRING_AVX2 __m128i load_short(const char* in, std::size_t size) {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  if (size < 8) {
    low = word_at<std::uint32_t>(in + size - 4);
    low = low << (8 * (size - 4)) | word_at<std::uint32_t>(in);
  } else {
    low = word_at<std::uint64_t>(in);
    high = word_at<std::uint64_t>(in + size - 8) >> 8 >> (8 * (15 - size));
  }
  return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
}

// Writes the first 3 to 16 bytes.
VSTRING_AVX2 void store_short(__m128i vector, std::size_t size, char* out) {
  char bytes[16];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), vector);
  if (size >= 8) {
    std::memcpy(out, bytes, 8);
    std::memcpy(out + size - 8, bytes + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(out, bytes, 4);
    std::memcpy(out + size - 4, bytes + size - 4, 4);
  } else {
    std::memcpy(out, bytes, 3);
  }
}

}  // namespace

void encode_groups_wide(const char* in, std::size_t groups, char* out) {
  if (groups < kBlockGroups) {
    std::size_t last = groups - kHalfGroups;
    encode_half(in, out);
    encode_half(in + 3 * last, out + 4 * last);
  } else {
    std::size_t last = groups - kBlockGroups;
    for (std::size_t i = 0; i < last; i += kBlockGroups) encode_block(in + 3 * i, out + 4 * i);
    encode_block(in + 3 * last, out + 4 * last);
  }
}

bool decode_groups_wide(const char* in, std::size_t groups, char* out) {
  __m256i faults = _mm256_setzero_si256();
  if (groups < kBlockGroups) {
    std::size_t last = groups - kHalfGroups;
    decode_half(in, out, faults);
    decode_half(in + 4 * last, out + 3 * last, faults);
  } else {
    std::size_t last = groups - kBlockGroups;
    for (std::size_t i = 0; i < last; i += kBlockGroups) {
      decode_block(in + 4 * i, out + 3 * i, faults);
    }
    decode_block(in + 4 * last, out + 3 * last, faults);
  }
  return _mm256_testz_si256(faults, faults) != 0;
}

void encode_short_wide(const char* in, std::size_t size, char* out) {
  __m256i bytes = _mm256_castsi128_si256(load_short(in, size));
  __m256i spread = _mm256_shuffle_epi8(bytes, spread_places());
  store_short(_mm256_castsi256_si128(digits_of(six_bit_values(spread))), (size + 2) / 3 * 4, out);
}

bool decode_short_wide(const char* in, std::size_t size, char* out) {
  __m128i places = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  __m128i is_inside = _mm_cmpgt_epi8(_mm_set1_epi8(static_cast<char>(size)), places);
  __m128i digits = _mm_blendv_epi8(_mm_set1_epi8('A'), load_short(in, size), is_inside);
  __m256i faults = _mm256_setzero_si256();
  __m256i values = values_of(_mm256_broadcastsi128_si256(digits), faults);
  store_short(_mm256_castsi256_si128(joined(values)), decoded_size(size), out);
  return _mm256_testz_si256(faults, faults) != 0;
}

}  // namespace vstring

#endif
