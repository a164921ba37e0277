#include "vstring/similarity/edit_distance.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "vstring/core/common_ends.h"
#include "vstring/core/cpu.h"

#ifdef VSTRING_X86
#include <immintrin.h>
#endif

namespace vstring {
namespace {

using Word = std::uint64_t;
constexpr std::size_t kWordBits = 64;

// Marks in masks[c] the rows, at most 64, whose byte is c. Entries of bytes that stand in neither
// text stay as they are: clearing all of them costs more than two short texts do.
void mark_rows(Text rows, Text columns, Word* masks) {
  if (rows.size() + columns.size() < 200) {
    for (char c : rows) masks[byte_of(c)] = 0;
    for (char c : columns) masks[byte_of(c)] = 0;
  } else {
    std::fill(masks, masks + 256, Word{0});
  }
  for (std::size_t i = 0; i < rows.size(); ++i) masks[byte_of(rows[i])] |= Word{1} << i;
}

// The differences between neighbouring rows of one column, a bit a row: `plus` where the lower cell
// is greater by one, `minus` where it is less by one.
struct Vertical {
  Word plus = ~Word{0};
  Word minus = 0;
};

// The differences between two neighbouring columns, row by row.
struct Horizontal {
  Word plus;
  Word minus;
};

// Steps to the next column. `plus_in` and `minus_in`, 0 or 1, tell the difference above the first
// row; the result's are those of all rows.
inline Horizontal step(Vertical& v, Word mask, Word plus_in, Word minus_in) {
  Word same_or_less = mask | v.minus;
  Word with_carry = mask | minus_in;
  Word diagonal = (((with_carry & v.plus) + v.plus) ^ v.plus) | with_carry | v.minus;
  Horizontal h = {v.minus | ~(diagonal | v.plus), v.plus & diagonal};
  Word plus = h.plus << 1 | plus_in;
  Word minus = h.minus << 1 | minus_in;
  v.plus = minus | ~(same_or_less | plus);
  v.minus = plus & same_or_less;
  return h;
}

// The distance when the rows fit a word.
std::size_t distance_in_a_word(Text rows, Text columns) {
  Word masks[256];
  mark_rows(rows, columns, masks);
  std::size_t last = rows.size() - 1;
  std::size_t distance = rows.size();
  Vertical v;
  for (char c : columns) {
    Horizontal h = step(v, masks[byte_of(c)], 1, 0);
    distance += h.plus >> last & 1;
    distance -= h.minus >> last & 1;
  }
  return distance;
}

// The columns first .. end - 1 of the table, 0-based.
struct Columns {
  std::size_t first;
  std::size_t end;
};

// The differences along one row of the table: what one block of rows hands down to the next.
struct Row {
  explicit Row(std::size_t length) : plus(length), minus(length) {}
  std::vector<std::uint8_t> plus;
  std::vector<std::uint8_t> minus;
};

// Takes the row above a block of at most 64 rows to the block's last row.
void cross_block(Text rows, Text columns, Columns range, Row& row) {
  Word masks[256];
  mark_rows(rows, columns, masks);
  std::size_t last = rows.size() - 1;
  Vertical v;
  for (std::size_t j = range.first; j < range.end; ++j) {
    Horizontal h = step(v, masks[byte_of(columns[j])], row.plus[j], row.minus[j]);
    row.plus[j] = h.plus >> last & 1;
    row.minus[j] = h.minus >> last & 1;
  }
}

#ifdef VSTRING_X86

constexpr std::size_t kLanes = 4;
constexpr std::size_t kNoByte = 256;  // the row of masks without a bit

struct LaneState {
  __m256i v_plus, v_minus;  // a block of rows a lane
  __m256i plus, minus;      // what each lane handed down in its last column
};

// Each lane steps to its next column: lane k is k columns behind lane 0, so that what it is handed
// is what the lane above gave in the step before.
VSTRING_AVX2 inline void step_lanes(LaneState& state, __m256i masks, std::uint8_t plus_above,
                                    std::uint8_t minus_above) {
  const __m256i ones = _mm256_set1_epi64x(-1);
  __m256i plus_in = _mm256_blend_epi32(_mm256_permute4x64_epi64(state.plus, 0x90),
                                       _mm256_castsi128_si256(_mm_cvtsi32_si128(plus_above)), 3);
  __m256i minus_in = _mm256_blend_epi32(_mm256_permute4x64_epi64(state.minus, 0x90),
                                        _mm256_castsi128_si256(_mm_cvtsi32_si128(minus_above)), 3);
  __m256i same_or_less = _mm256_or_si256(masks, state.v_minus);
  __m256i with_carry = _mm256_or_si256(masks, minus_in);
  __m256i sum = _mm256_add_epi64(_mm256_and_si256(with_carry, state.v_plus), state.v_plus);
  __m256i diagonal = _mm256_or_si256(_mm256_xor_si256(sum, state.v_plus),
                                     _mm256_or_si256(with_carry, state.v_minus));
  __m256i h_plus = _mm256_or_si256(
      state.v_minus, _mm256_andnot_si256(_mm256_or_si256(diagonal, state.v_plus), ones));
  __m256i h_minus = _mm256_and_si256(state.v_plus, diagonal);
  state.plus = _mm256_srli_epi64(h_plus, 63);
  state.minus = _mm256_srli_epi64(h_minus, 63);
  h_plus = _mm256_or_si256(_mm256_slli_epi64(h_plus, 1), plus_in);
  h_minus = _mm256_or_si256(_mm256_slli_epi64(h_minus, 1), minus_in);
  state.v_plus =
      _mm256_or_si256(h_minus, _mm256_andnot_si256(_mm256_or_si256(same_or_less, h_plus), ones));
  state.v_minus = _mm256_and_si256(h_plus, same_or_less);
}

using LaneMasks = Word[kLanes];

// Lane k's mask for the byte c[k].
VSTRING_AVX2 inline __m256i masks_of(const LaneMasks* masks, std::size_t c0, std::size_t c1,
                                     std::size_t c2, std::size_t c3) {
  auto row = [masks](std::size_t c) VSTRING_AVX2 {
    return _mm256_load_si256(reinterpret_cast<const __m256i*>(masks[c]));
  };
  return _mm256_blend_epi32(_mm256_blend_epi32(row(c0), row(c1), 0x0c),
                            _mm256_blend_epi32(row(c2), row(c3), 0xc0), 0xf0);
}

VSTRING_AVX2 inline std::uint8_t last_lane(__m256i lanes) {
  return static_cast<std::uint8_t>(_mm256_extract_epi32(lanes, 6));
}

// The same for four blocks of 64 rows at once. Before the first and behind the last column a lane
// sees no byte and is handed no difference, which leaves its untouched state as it is.
VSTRING_AVX2 void cross_four_blocks(Text rows, Text columns, Columns range, Row& row) {
  alignas(32) LaneMasks masks[kNoByte + 1] = {};
  for (std::size_t i = 0; i < kLanes * kWordBits; ++i) {
    masks[byte_of(rows[i])][i / kWordBits] |= Word{1} << i % kWordBits;
  }
  const __m256i zero = _mm256_setzero_si256();
  LaneState state = {_mm256_set1_epi64x(-1), zero, zero, zero};
  auto byte_at = [&](std::size_t j, std::size_t lane) -> std::size_t {
    return j >= range.first + lane && j < range.end + lane ? byte_of(columns[j - lane]) : kNoByte;
  };
  std::size_t end = range.end + kLanes - 1;
  for (std::size_t j = range.first; j < end; ++j) {
    bool is_inside = j >= range.first + kLanes - 1 && j < range.end;
    const char* c = columns.data() + j;
    __m256i now =
        is_inside ? masks_of(masks, byte_of(c[0]), byte_of(c[-1]), byte_of(c[-2]), byte_of(c[-3]))
                  : masks_of(masks, byte_at(j, 0), byte_at(j, 1), byte_at(j, 2), byte_at(j, 3));
    bool is_handed = j < range.end;
    step_lanes(state, now, is_handed ? row.plus[j] : 0, is_handed ? row.minus[j] : 0);
    if (j < range.first + kLanes - 1) continue;
    row.plus[j - (kLanes - 1)] = last_lane(state.plus);
    row.minus[j - (kLanes - 1)] = last_lane(state.minus);
  }
}

#endif

// Takes the row above some rows down to their last one; returns how many rows that was.
std::size_t cross_rows(Text rows, Text columns, Columns range, Row& row) {
#ifdef VSTRING_X86
  if (rows.size() >= kLanes * kWordBits && has_avx2()) {
    cross_four_blocks(rows, columns, range, row);
    return kLanes * kWordBits;
  }
#endif
  cross_block(rows.substr(0, kWordBits), columns, range, row);
  return std::min(rows.size(), kWordBits);
}

// How many rows cross_rows takes at once.
std::size_t stripe_height(std::size_t num_rows) {
#ifdef VSTRING_X86
  if (num_rows >= kLanes * kWordBits && has_avx2()) return kLanes * kWordBits;
#endif
  return std::min(num_rows, kWordBits);
}

// The distance along the paths that stay between the diagonals within which a distance of at most
// `limit` is reached: the true one when it is at most `limit`, else an upper bound. `rows` is not
// the shorter text, `limit` not less than the difference of the lengths.
std::size_t distance_within(Text rows, Text columns, std::size_t limit, Row& row) {
  std::size_t surplus = rows.size() - columns.size();
  std::size_t below = (limit + surplus) / 2;  // how far a path strays below the main diagonal
  std::size_t above = (limit - surplus) / 2;
  std::fill(row.plus.begin(), row.plus.end(), std::uint8_t{1});
  std::fill(row.minus.begin(), row.minus.end(), std::uint8_t{0});
  // The value in the row above the stripe, left of its first column.
  std::size_t corner = 0;
  std::size_t first_column = 0;
  auto move_corner = [&](std::size_t to) {
    for (; first_column < to; ++first_column) {
      corner += row.plus[first_column];
      corner -= row.minus[first_column];
    }
  };
  for (std::size_t r = 0; r < rows.size();) {
    std::size_t height = stripe_height(rows.size() - r);
    move_corner(std::min(r - std::min(r, below), columns.size()));
    std::size_t end = std::min(columns.size(), r + height + above);
    r += cross_rows(rows.substr(r), columns, {first_column, std::max(end, first_column)}, row);
    corner += height;
  }
  move_corner(columns.size());
  return corner;
}

}  // namespace

std::size_t edit_distance(Text s, Text t) {
  strip_common_ends(s, t);
  if (s.size() < t.size()) std::swap(s, t);
  if (t.empty()) return s.size();
  if (t.size() <= kWordBits) return distance_in_a_word(t, s);
  Row row(t.size());
  // Each wider band costs four times as much, until half of the table might as well be all of it.
  for (std::size_t limit = s.size() - t.size() + 2 * kWordBits; limit < t.size() / 2;) {
    std::size_t distance = distance_within(s, t, limit, row);
    if (distance <= limit) return distance;
    limit = std::min(4 * limit, distance);
  }
  return distance_within(s, t, s.size() + t.size(), row);
}

}  // namespace vstring
