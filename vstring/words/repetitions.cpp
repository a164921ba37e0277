#include "vstring/words/repetitions.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

using Word = std::uint64_t;
constexpr std::size_t kWordBits = 64;
constexpr std::size_t kBlockWords = 64;

#ifdef VSTRING_X86
VSTRING_AVX2 unsigned equal_32(const char* a, const char* b) {
  __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a));
  __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b));
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(x, y)));
}

VSTRING_AVX2 void mark_equal_words(const char* a, const char* b, std::size_t num_words, Word* out) {
  for (std::size_t w = 0; w < num_words; ++w, a += kWordBits, b += kWordBits) {
    out[w] = equal_32(a, b) | Word{equal_32(a + 32, b + 32)} << 32;
  }
}
#endif

// Sets a bit for each of the positions at which the texts a and b agree; the rest of the last word
// is zero.
void mark_equal(const char* a, const char* b, std::size_t length, Word* out) {
  std::size_t i = 0;
#ifdef VSTRING_X86
  if (length >= kWordBits && has_avx2()) {
    mark_equal_words(a, b, length / kWordBits, out);
    i = length / kWordBits * kWordBits;
  }
#endif
  for (; i < length; ++i) {
    if (i % kWordBits == 0) out[i / kWordBits] = 0;
    if (a[i] == b[i]) out[i / kWordBits] |= Word{1} << i % kWordBits;
  }
}

// Calls block(position, marks, num_words) for the agreements of the word with itself, `distance`
// further on. There is always an unset bit behind the last position.
template <class Block>
void for_each_block(Text word, std::size_t distance, Block block) {
  Word marks[kBlockWords];
  std::size_t count = word.size() - distance;
  for (std::size_t at = 0; at <= count; at += kBlockWords * kWordBits) {
    std::size_t length = std::min(count - at, kBlockWords * kWordBits);
    mark_equal(word.data() + at, word.data() + at + distance, length, marks);
    std::size_t num_words = (length + kWordBits - 1) / kWordBits;
    if (length % kWordBits == 0 && num_words < kBlockWords) marks[num_words++] = 0;
    block(at, marks, num_words);
  }
}

// Distances from |word| - 1 down to 2; at |word| nothing is left to compare.
template <class Visit>
void for_each_distance(Text word, Visit visit) {
  for (std::size_t d = word.size(); d-- > 2;) {
    if (!visit(d)) return;
  }
}

}  // namespace

std::size_t count_repeats(Text word, std::size_t limit) {
  std::size_t count = 0;
  for_each_distance(word, [&](std::size_t distance) {
    Word last = 0;  // whether the position before agrees
    for_each_block(word, distance, [&](std::size_t, const Word* marks, std::size_t num_words) {
      for (std::size_t w = 0; w < num_words; ++w) {
        count += static_cast<std::size_t>(std::popcount(marks[w] & ~(marks[w] << 1 | last)));
        last = marks[w] >> (kWordBits - 1);
      }
    });
    return count <= limit;
  });
  return count;
}

void visit_repeats(Text word, const std::function<void(const Repeat&)>& visit) {
  for_each_distance(word, [&](std::size_t distance) {
    std::size_t start = 0;
    bool is_inside = false;
    for_each_block(word, distance, [&](std::size_t at, const Word* marks, std::size_t num_words) {
      for (std::size_t w = 0; w < num_words; ++w) {
        // The bits at which a run begins or ends.
        Word changes = marks[w] ^ (marks[w] << 1 | Word{is_inside});
        for (; changes != 0; changes &= changes - 1) {
          std::size_t position =
              at + w * kWordBits + static_cast<std::size_t>(std::countr_zero(changes));
          if (is_inside) visit({start, start + distance, position - start});
          is_inside = !is_inside;
          start = position;
        }
      }
    });
    return true;
  });
}

void write_thue_morse(std::size_t length, char even, char odd, char* out) {
  // A block of the word and the same with its letters exchanged make up the rest, in the order of
  // the word itself.
  constexpr std::size_t kBlock = 256;
  char blocks[2][kBlock];
  for (std::size_t i = 0; i < kBlock; ++i) {
    bool is_odd = std::popcount(i) % 2 != 0;
    blocks[0][i] = is_odd ? odd : even;
    blocks[1][i] = is_odd ? even : odd;
  }
  for (std::size_t at = 0; at < length; at += kBlock) {
    std::memcpy(out + at, blocks[std::popcount(at) % 2], std::min(kBlock, length - at));
  }
}

}  // namespace vstring
