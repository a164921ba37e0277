// The exported table of letter rotations, computed while the library is compiled.
// Tests: tests/unit/encoding_test.cpp.
#include <bit>

#include "vstring/encoding.h"

namespace {

constexpr unsigned kNumLetters = 26;

constexpr unsigned char rotated(unsigned shift, unsigned char c) {
  unsigned first = c < 'a' ? 0x41U : 0x61U;  // A, a
  unsigned place = c - first;
  if (place >= kNumLetters) return c;
  return static_cast<unsigned char>(first + (place + shift) % kNumLetters);
}

constexpr unsigned char entry(unsigned row, unsigned c) {
  auto byte = static_cast<unsigned char>(c);
  if (row == AROTN_NUM_ONES) return static_cast<unsigned char>(std::popcount(byte));
  return rotated(row == AROTN_ROT13 ? kNumLetters / 2 : row % kNumLetters, byte);
}

}  // namespace

#define ENTRIES_4(row, c) \
  entry(row, c), entry(row, (c) + 1), entry(row, (c) + 2), entry(row, (c) + 3)
#define ENTRIES_16(row, c) \
  ENTRIES_4(row, c), ENTRIES_4(row, (c) + 4), ENTRIES_4(row, (c) + 8), ENTRIES_4(row, (c) + 12)
#define ENTRIES_64(row, c)                                                  \
  ENTRIES_16(row, c), ENTRIES_16(row, (c) + 16), ENTRIES_16(row, (c) + 32), \
      ENTRIES_16(row, (c) + 48)
#define ROW(row) \
  { ENTRIES_64(row, 0U), ENTRIES_64(row, 64U), ENTRIES_64(row, 128U), ENTRIES_64(row, 192U) }
#define ROWS_4(row) ROW(row), ROW((row) + 1), ROW((row) + 2), ROW((row) + 3)
#define ROWS_16(row) ROWS_4(row), ROWS_4((row) + 4), ROWS_4((row) + 8), ROWS_4((row) + 12)
#define ROWS_64(row) ROWS_16(row), ROWS_16((row) + 16), ROWS_16((row) + 32), ROWS_16((row) + 48)

constexpr unsigned char arotntab[AROTN_NUM_ROWS][256] = {
    ROWS_64(0U), ROWS_64(64U), ROWS_64(128U), ROWS_64(192U), ROW(256U), ROW(257U), ROW(258U)};
