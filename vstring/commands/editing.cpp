// Simple edits of byte strings. Tests: tests/unit/editing_test.cpp, docs/commands/editing.md.
#include "vstring/commands/editing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

constexpr std::size_t kVector = 32;
// Repetitions are copied from a block of about this length, which stays in the nearest cache.
constexpr std::size_t kRepeatedBlock = 8192;

unsigned char fold(char c) {
  unsigned char byte = byte_of(c);
  bool is_capital = static_cast<unsigned char>(byte - 'A') < 26;
  return is_capital ? static_cast<unsigned char>(byte | 0x20) : byte;
}

// The same for eight bytes at once. In each byte, without its top bit, one sum reaches the top bit
// from A on and the other behind Z; a byte that had the top bit set is no letter.
std::uint64_t fold_word(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kTops = 0x80 * kOnes;
  std::uint64_t low_bits = word & ~kTops;
  std::uint64_t from_a = low_bits + (0x80 - 'A') * kOnes;
  std::uint64_t behind_z = low_bits + (0x7f - 'Z') * kOnes;
  return word | ((from_a & ~behind_z & ~word & kTops) >> 2);
}

std::uint64_t folded_word_at(const char* text) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, 8);
  return fold_word(word);
}

// What tr makes of each byte.
using Translation = std::array<char, 256>;

Translation translation_of(Text from, Text to) {
  Translation translation;
  for (std::size_t c = 0; c < translation.size(); ++c) translation[c] = static_cast<char>(c);
  for (std::size_t i = from.size(); i-- > 0;) {  // backwards: the first occurrence counts
    translation[byte_of(from[i])] = to[i];
  }
  return translation;
}

#ifdef VSTRING_X86

__attribute__((target("avx2"))) __m256i load(const char* text) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
}

__attribute__((target("avx2"))) void store(char* out, __m256i block) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), block);
}

// Writes the text, of at least one vector, backwards; the last vector overlaps the one before.
__attribute__((target("avx2"))) void reverse_by_vectors(Text text, char* out) {
  const __m256i backwards = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
  std::size_t last = text.size() - kVector;
  for (std::size_t i = 0;; i = std::min(i + kVector, last)) {
    __m256i block = _mm256_shuffle_epi8(load(text.data() + i), backwards);
    store(out + last - i, _mm256_permute2x128_si256(block, block, 1));
    if (i == last) return;
  }
}

// A row of a translation: 16 bytes with the same high half, and the bits that it changes in them.
struct ChangedRow {
  __m256i first;    // the row's first byte, 32 times
  __m256i changes;  // the row's changes, twice
};

// The rows in which the translation changes anything: few in most translations.
struct ChangedRows {
  ChangedRow rows[16];
  int count = 0;
};

__attribute__((target("avx2"))) void find_changed_rows(const Translation& translation,
                                                       ChangedRows& changed) {
  __m128i unchanged = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  for (std::size_t first = 0; first < translation.size(); first += 16) {
    const char* row = translation.data() + first;
    __m128i changes =
        _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row)), unchanged);
    if (_mm_testz_si128(changes, changes) == 0) {
      changed.rows[changed.count++] = {_mm256_set1_epi8(static_cast<char>(first)),
                                       _mm256_broadcastsi128_si256(changes)};
    }
    unchanged = _mm_add_epi8(unchanged, _mm_set1_epi8(16));
  }
}

// The row's bytes select their changes; all others select none, as the addition sets their top bit.
__attribute__((target("avx2"))) __m256i changes_of(__m256i block, const ChangedRow& row) {
  __m256i place = _mm256_xor_si256(block, row.first);
  return _mm256_shuffle_epi8(row.changes, _mm256_adds_epu8(place, _mm256_set1_epi8(0x70)));
}

// Translates two vectors, which may overlap.
__attribute__((target("avx2"))) void translate_pair(const ChangedRows& changed, const char* first,
                                                    const char* second, char* first_out,
                                                    char* second_out) {
  const __m256i a = load(first);
  const __m256i b = load(second);
  __m256i new_a = a;
  __m256i new_b = b;
  for (int i = 0; i < changed.count; ++i) {
    new_a = _mm256_xor_si256(new_a, changes_of(a, changed.rows[i]));
    new_b = _mm256_xor_si256(new_b, changes_of(b, changed.rows[i]));
  }
  store(first_out, new_a);
  store(second_out, new_b);
}

// Translates a text of at least one vector; the last pair overlaps what was done before.
__attribute__((target("avx2"))) void translate_by_vectors(const Translation& translation, Text text,
                                                          char* out) {
  ChangedRows changed;
  find_changed_rows(translation, changed);
  const char* in = text.data();
  std::size_t i = 0;
  for (; text.size() - i >= 2 * kVector; i += 2 * kVector) {
    translate_pair(changed, in + i, in + i + kVector, out + i, out + i + kVector);
  }
  std::size_t last = text.size() - kVector;
  i = std::min(i, last);
  translate_pair(changed, in + i, in + last, out + i, out + last);
}

// The case of letters is folded as A-Z, moved to the smallest of signed bytes, are told from the
// rest by one comparison.
__attribute__((target("avx2"))) __m256i fold_vector(__m256i block) {
  __m256i moved = _mm256_add_epi8(block, _mm256_set1_epi8(static_cast<char>(0x80 - 'A')));
  __m256i is_capital = _mm256_cmpgt_epi8(_mm256_set1_epi8(-128 + 26), moved);
  return _mm256_or_si256(block, _mm256_and_si256(is_capital, _mm256_set1_epi8(0x20)));
}

// first_difference for at least one vector; the last vectors overlap the ones before.
__attribute__((target("avx2"))) std::size_t first_difference_by_vectors(const char* a,
                                                                        const char* b,
                                                                        std::size_t size) {
  std::size_t last = size - kVector;
  for (std::size_t i = 0;; i = std::min(i + kVector, last)) {
    __m256i is_equal = _mm256_cmpeq_epi8(fold_vector(load(a + i)), fold_vector(load(b + i)));
    auto differences = ~static_cast<std::uint32_t>(_mm256_movemask_epi8(is_equal));
    if (differences != 0) return i + static_cast<std::size_t>(std::countr_zero(differences));
    if (i == last) return size;
  }
}

// find_last for at least one vector; the first vector overlaps the one behind it.
__attribute__((target("avx2"))) std::size_t find_last_by_vectors(Text text, char c) {
  const __m256i wanted = _mm256_set1_epi8(c);
  for (std::size_t i = text.size() - kVector;; i -= std::min(i, kVector)) {
    __m256i is_equal = _mm256_cmpeq_epi8(load(text.data() + i), wanted);
    auto hits = static_cast<std::uint32_t>(_mm256_movemask_epi8(is_equal));
    if (hits != 0) return i + kVector - 1 - static_cast<std::size_t>(std::countl_zero(hits));
    if (i == 0) return Text::npos;
  }
}

#endif

// Offset of the first byte that differs but for case; `size` when none does.
std::size_t first_difference(const char* a, const char* b, std::size_t size) {
#ifdef VSTRING_X86
  if (size >= kVector && has_avx2()) return first_difference_by_vectors(a, b, size);
#endif
  std::size_t i = 0;
  while (size - i >= 8 && folded_word_at(a + i) == folded_word_at(b + i)) i += 8;
  while (i < size && fold(a[i]) == fold(b[i])) ++i;
  return i;
}

}  // namespace

void write_reversed(Text text, char* out) {
#ifdef VSTRING_X86
  if (text.size() >= kVector && has_avx2()) return reverse_by_vectors(text, out);
#endif
  std::size_t done = 0;
  char* out_end = out + text.size();
  for (; text.size() - done >= 8; done += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + done, 8);
    word = __builtin_bswap64(word);
    std::memcpy(out_end - done - 8, &word, 8);
  }
  for (; done < text.size(); ++done) *(out_end - done - 1) = text[done];
}

// Copies what is written so far behind itself, at last in blocks of whole repetitions.
void write_repeated(Text text, std::size_t count, char* out) {
  std::size_t size = text.size() * count;
  if (size == 0) return;
  if (text.size() == 1) {
    std::memset(out, text[0], size);
    return;
  }
  std::memcpy(out, text.data(), text.size());
  std::size_t done = text.size();
  for (std::size_t block = done; done < size;) {
    std::size_t more = std::min(block, size - done);
    std::memcpy(out + done, out, more);
    done += more;
    if (block < kRepeatedBlock) block = done;
  }
}

void write_rotated(Text text, std::size_t shift, char* out) {
  std::size_t front = text.size() - shift;
  std::memcpy(out, text.data() + front, shift);
  std::memcpy(out + shift, text.data(), front);
}

void write_translated(Text from, Text to, Text text, char* out) {
  const Translation translation = translation_of(from, to);
#ifdef VSTRING_X86
  if (text.size() >= kVector && has_avx2()) return translate_by_vectors(translation, text, out);
#endif
  for (char c : text) *out++ = translation[byte_of(c)];
}

int compare_ignoring_case(Text a, Text b) {
  std::size_t common = std::min(a.size(), b.size());
  std::size_t i = first_difference(a.data(), b.data(), common);
  if (i < common) return fold(a[i]) - fold(b[i]);
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

std::size_t find_last(Text text, char c) {
#ifdef VSTRING_X86
  if (text.size() >= kVector && has_avx2()) return find_last_by_vectors(text, c);
#endif
  return text.rfind(c);
}

}  // namespace vstring
