// Simple edits of byte strings. Tests: tests/unit/editing_test.cpp, docs/commands/editing.md.
#include "vstring/commands/editing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

// Below this length a table of 256 entries costs more than it saves.
constexpr std::size_t kTableThreshold = 64;

unsigned char fold(char c) {
  unsigned char byte = byte_of(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte | 0x20) : byte;
}

#ifdef VSTRING_X86
// Writes the first `size` bytes, a multiple of 32, backwards in front of `out_end`.
__attribute__((target("avx2"))) void reverse_blocks(const char* text, std::size_t size,
                                                    char* out_end) {
  const __m256i backwards = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
  for (std::size_t i = 0; i < size; i += 32) {
    __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + i));
    block = _mm256_permute2x128_si256(_mm256_shuffle_epi8(block, backwards),
                                      _mm256_shuffle_epi8(block, backwards), 1);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out_end - i - 32), block);
  }
}
#endif

}  // namespace

void write_reversed(Text text, char* out) {
  std::size_t done = 0;
  char* out_end = out + text.size();
#ifdef VSTRING_X86
  if (text.size() >= 32 && has_avx2()) {
    done = text.size() & ~std::size_t{31};
    reverse_blocks(text.data(), done, out_end);
  }
#endif
  for (; text.size() - done >= 8; done += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + done, 8);
    word = __builtin_bswap64(word);
    std::memcpy(out_end - done - 8, &word, 8);
  }
  for (; done < text.size(); ++done) *(out_end - done - 1) = text[done];
}

// Copies what is written so far behind itself, so that few long copies do it.
void write_repeated(Text text, std::size_t count, char* out) {
  std::size_t size = text.size() * count;
  if (size == 0) return;
  if (text.size() == 1) {
    std::memset(out, text[0], size);
    return;
  }
  std::memcpy(out, text.data(), text.size());
  for (std::size_t done = text.size(); done < size;) {
    std::size_t more = std::min(done, size - done);
    std::memcpy(out + done, out, more);
    done += more;
  }
}

void write_rotated(Text text, std::size_t shift, char* out) {
  std::size_t front = text.size() - shift;
  std::memcpy(out, text.data() + front, shift);
  std::memcpy(out + shift, text.data(), front);
}

void write_translated(Text from, Text to, Text text, char* out) {
  if (text.size() < kTableThreshold) {
    for (char c : text) {
      std::size_t place = from.find(c);
      *out++ = place == Text::npos ? c : to[place];
    }
    return;
  }
  std::array<char, 256> table;
  for (std::size_t c = 0; c < table.size(); ++c) table[c] = static_cast<char>(c);
  for (std::size_t i = from.size(); i-- > 0;) table[byte_of(from[i])] = to[i];
  for (char c : text) *out++ = table[byte_of(c)];
}

int compare_ignoring_case(Text a, Text b) {
  std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    int difference = fold(a[i]) - fold(b[i]);
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace vstring
