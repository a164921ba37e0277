// Block masks. A set of ASCII bytes is looked up for 32 bytes at once by two shuffles. The last
// bytes of a text are looked at in a block of their own with NULs behind them.
#include "vstring/language/text_masks.h"

#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

// A set of bytes below 128, as shuffles read it.
class AsciiSet {
 public:
  constexpr explicit AsciiSet(Text members) {
    for (char c : members) {
      rows_[byte_of(c) % 16] = static_cast<std::uint8_t>(rows_[byte_of(c) % 16] | 1 << (c / 16));
    }
  }
  constexpr bool contains(unsigned char c) const {
    return c < 128 && (rows_[c % 16] >> (c / 16) & 1) != 0;
  }
  // For each low nibble the high nibbles that are in the set, one bit each.
  const std::uint8_t* rows() const { return rows_; }

 private:
  std::uint8_t rows_[16] = {};
};

constexpr AsciiSet kWordBytes("'0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
constexpr AsciiSet kSpaces("\t\n\v\f\r ");
constexpr AsciiSet kMarks(".?!:");

// What counting carries from block to block.
struct Counter {
  WordCount count;
  std::uint64_t is_in_word = 0;  // 1 when the last byte before the block is one of a word
};

// A mask of the 64 bytes from `at` on.
std::uint64_t members_plain(const char* at, const AsciiSet& set) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    mask |= std::uint64_t{set.contains(byte_of(at[i]))} << i;
  }
  return mask;
}

void find_word_bytes_plain(const char* at, std::size_t num_blocks, std::uint64_t* masks) {
  for (; num_blocks > 0; --num_blocks, at += kBlock) *masks++ = members_plain(at, kWordBytes);
}

void find_marks_plain(const char* at, std::size_t num_blocks, std::uint64_t* masks) {
  for (; num_blocks > 0; --num_blocks, at += kBlock) {
    *masks++ = members_plain(at, kMarks) & members_plain(at + 1, kSpaces);
  }
}

void count_plain(const char* at, std::size_t num_blocks, Counter& counter) {
  for (const char* end = at + num_blocks * kBlock; at != end; ++at) {
    bool is_word = kWordBytes.contains(byte_of(*at));
    bool is_behind_word = counter.is_in_word != 0;
    if (is_word && !is_behind_word) ++counter.count.words;
    if (*at == '\n' && !is_behind_word) ++counter.count.lines;
    counter.is_in_word = is_word ? 1 : 0;
  }
}

#ifdef VSTRING_X86

// The set's rows, in both halves of the vector.
VSTRING_AVX2 inline __m256i rows_of(const AsciiSet& set) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(set.rows())));
}

VSTRING_AVX2 inline __m256i load(const char* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// All ones for each of the bytes that is in the set. A shuffle gives no rows for bytes from 128 on
// and no bit for high nibbles from 8 on.
VSTRING_AVX2 inline __m256i members(__m256i bytes, __m256i rows) {
  __m256i powers = _mm256_broadcastsi128_si256(
      _mm_set_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -128, 64, 32, 16, 8, 4, 2, 1));
  __m256i nibbles = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
  __m256i bits = _mm256_shuffle_epi8(powers, nibbles);
  return _mm256_cmpeq_epi8(_mm256_and_si256(_mm256_shuffle_epi8(rows, bytes), bits), bits);
}

VSTRING_AVX2 inline std::uint32_t half_mask(__m256i flags) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(flags));
}

VSTRING_AVX2 inline std::uint64_t mask_of(__m256i low, __m256i high) {
  return std::uint64_t{half_mask(high)} << 32 | half_mask(low);
}

VSTRING_AVX2 inline std::uint64_t members_avx2(const char* at, __m256i rows) {
  return mask_of(members(load(at), rows), members(load(at + 32), rows));
}

VSTRING_AVX2 void find_word_bytes_avx2(const char* at, std::size_t num_blocks,
                                       std::uint64_t* masks) {
  __m256i rows = rows_of(kWordBytes);
  for (; num_blocks > 0; --num_blocks, at += kBlock) *masks++ = members_avx2(at, rows);
}

VSTRING_AVX2 void find_marks_avx2(const char* at, std::size_t num_blocks, std::uint64_t* masks) {
  __m256i marks = rows_of(kMarks);
  __m256i spaces = rows_of(kSpaces);
  for (; num_blocks > 0; --num_blocks, at += kBlock) {
    *masks++ = members_avx2(at, marks) & members_avx2(at + 1, spaces);
  }
}

VSTRING_AVX2 void count_avx2(const char* at, std::size_t num_blocks, Counter& counter) {
  __m256i rows = rows_of(kWordBytes);
  __m256i newline = _mm256_set1_epi8('\n');
  std::size_t words = 0;
  std::size_t lines = 0;
  std::uint64_t is_in_word = counter.is_in_word;
  for (; num_blocks > 0; --num_blocks, at += kBlock) {
    __m256i low = load(at);
    __m256i high = load(at + 32);
    std::uint64_t word_bytes = mask_of(members(low, rows), members(high, rows));
    std::uint64_t newlines =
        mask_of(_mm256_cmpeq_epi8(low, newline), _mm256_cmpeq_epi8(high, newline));
    std::uint64_t behind_word = word_bytes << 1 | is_in_word;
    words += static_cast<std::size_t>(__builtin_popcountll(word_bytes & ~behind_word));
    lines += static_cast<std::size_t>(__builtin_popcountll(newlines & ~behind_word));
    is_in_word = word_bytes >> 63;
  }
  counter.count.words += words;
  counter.count.lines += lines;
  counter.is_in_word = is_in_word;
}

#endif

// Calls kernel(at, number of blocks, number of blocks before) for the whole blocks of the text, and
// once more for what is left, copied with the byte behind it when `has_next`.
template <class Kernel>
void run_kernel(Text text, bool has_next, Kernel kernel) {
  std::size_t num_whole = text.size() / kBlock;
  Text rest = text.substr(num_whole * kBlock);
  if (num_whole > 0) kernel(text.data(), num_whole, std::size_t{0});
  if (rest.empty()) return;
  char padded[kBlock + 1] = {};
  std::memcpy(padded, rest.data(), rest.size() + (has_next ? 1 : 0));
  kernel(padded, std::size_t{1}, num_whole);
}

using MaskKernel = void(const char* at, std::size_t num_blocks, std::uint64_t* masks);

void find(Text chunk, bool has_next, MaskKernel* kernel, std::uint64_t* masks) {
  run_kernel(chunk, has_next, [=](const char* at, std::size_t num_blocks, std::size_t num_before) {
    kernel(at, num_blocks, masks + num_before);
  });
}

template <class Kernel>
Kernel* chosen([[maybe_unused]] Kernel* wide, Kernel* plain) {
  return has_avx2() ? wide : plain;
}

#ifdef VSTRING_X86
#define CHOSEN(name) chosen(name##_avx2, name##_plain)
#else
#define CHOSEN(name) name##_plain
#endif

}  // namespace

void find_word_bytes(Text chunk, std::uint64_t* masks) {
  find(chunk, false, CHOSEN(find_word_bytes), masks);
}

void find_sentence_marks(Text chunk, std::uint64_t* masks) {
  find(chunk, true, CHOSEN(find_marks), masks);
}

WordCount count_words(Text text) {
  Counter counter;
  auto* kernel = CHOSEN(count);
  run_kernel(text, false, [&](const char* at, std::size_t num_blocks, std::size_t) {
    kernel(at, num_blocks, counter);
  });
  return counter.count;
}

}  // namespace vstring
