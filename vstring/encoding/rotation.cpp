// Rotations. The loops are plain: compilers turn them into vector code, once for any machine and
// once for wide vectors.
#include "vstring/encoding/rotation.h"

#include <algorithm>
#include <cstddef>

#include "vstring/core/cpu.h"

namespace vstring {
namespace {

constexpr unsigned kNumLetters = 26;

// One byte of the result; `wrap` is the first place of the alphabet that goes on to its start.
// The bit that tells small letters from capitals does not count for the place.
inline unsigned char rotate_one(unsigned char c, unsigned char shift, unsigned char wrap) {
  auto place = static_cast<unsigned char>((c | 0x20) - 'a');
  auto step = static_cast<unsigned char>(place >= wrap ? shift - kNumLetters : shift);
  return static_cast<unsigned char>(c + (place < kNumLetters ? step : 0));
}

__attribute__((always_inline)) inline bool rotate_bytes_loop(const unsigned char* __restrict in,
                                                             std::size_t size, unsigned char shift,
                                                             unsigned char* __restrict out) {
  unsigned char least = 255;
  for (std::size_t i = 0; i < size; ++i) {
    auto c = static_cast<unsigned char>(in[i] + shift);
    out[i] = c;
    least = std::min(least, c);
  }
  return least == 0;
}

__attribute__((always_inline)) inline void rotate_letters_loop(const unsigned char* __restrict in,
                                                               std::size_t size,
                                                               unsigned char shift,
                                                               unsigned char* __restrict out) {
  auto wrap = static_cast<unsigned char>(kNumLetters - shift);
  for (std::size_t i = 0; i < size; ++i) out[i] = rotate_one(in[i], shift, wrap);
}

#ifdef VSTRING_X86

VSTRING_AVX2 bool rotate_bytes_wide(const unsigned char* in, std::size_t size, unsigned char shift,
                                    unsigned char* out) {
  return rotate_bytes_loop(in, size, shift, out);
}

VSTRING_AVX2 void rotate_letters_wide(const unsigned char* in, std::size_t size,
                                      unsigned char shift, unsigned char* out) {
  rotate_letters_loop(in, size, shift, out);
}

#endif

const unsigned char* bytes_of(Text text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

bool rotate_bytes(Text text, unsigned char shift, char* out) {
  auto* bytes = reinterpret_cast<unsigned char*>(out);
#ifdef VSTRING_X86
  if (has_avx2()) return rotate_bytes_wide(bytes_of(text), text.size(), shift, bytes);
#endif
  return rotate_bytes_loop(bytes_of(text), text.size(), shift, bytes);
}

void rotate_letters(Text text, unsigned char shift, char* out) {
  auto* bytes = reinterpret_cast<unsigned char*>(out);
#ifdef VSTRING_X86
  if (has_avx2()) return rotate_letters_wide(bytes_of(text), text.size(), shift, bytes);
#endif
  rotate_letters_loop(bytes_of(text), text.size(), shift, bytes);
}

}  // namespace vstring
