// Search with mismatches. The offsets of a block are looked at side by side, a byte of the pattern
// at a time, in a loop that the compiler turns into vector code. Tests:
// tests/unit/approximate_test.cpp.
#include "vstring/search/mismatch.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "vstring/core/cpu.h"

namespace vstring {
namespace {

constexpr std::size_t kBlock = 64;   // offsets side by side
constexpr std::size_t kStride = 16;  // bytes of the pattern between looks at the counts

template <class Count>
using Counts = std::array<Count, kBlock>;

// Counts of a byte, up to a ceiling that one more stride cannot carry beyond 255.
constexpr std::size_t kMaxNarrow = 255 - kStride;

// Counts the mismatches at the 64 offsets from `at` on, up to `ceiling`; whether any is at most k,
// which is below the ceiling.
template <class Count>
[[gnu::always_inline]] inline bool count_block(Text pattern, const char* at, Count k, Count ceiling,
                                               Counts<Count>& counts) {
  counts.fill(0);
  for (std::size_t i = 0; i < pattern.size(); i += kStride) {
    std::size_t end = std::min(i + kStride, pattern.size());
    for (std::size_t p = i; p < end; ++p) {
      const char* text = at + p;
      char c = pattern[p];
      for (std::size_t j = 0; j < kBlock; ++j) {
        counts[j] = static_cast<Count>(counts[j] + (text[j] != c ? 1 : 0));
      }
    }
    Count least = ceiling;
    for (Count& count : counts) count = std::min(count, ceiling);
    for (Count count : counts) least = std::min(least, count);
    if (least > k) return false;
  }
  return true;
}

using Narrow = std::uint8_t;
using Wide = std::uint32_t;

bool count_narrow(Text pattern, const char* at, Narrow k, Counts<Narrow>& counts) {
  return count_block<Narrow>(pattern, at, k, kMaxNarrow, counts);
}

bool count_wide(Text pattern, const char* at, Wide k, Counts<Wide>& counts) {
  return count_block<Wide>(pattern, at, k, ~Wide{0} - kStride, counts);
}

#ifdef VSTRING_X86
__attribute__((target("avx2"))) bool count_narrow_avx2(Text pattern, const char* at, Narrow k,
                                                       Counts<Narrow>& counts) {
  return count_block<Narrow>(pattern, at, k, kMaxNarrow, counts);
}
#endif

auto choose_narrow() {
#ifdef VSTRING_X86
  if (has_avx2()) return count_narrow_avx2;
#endif
  return count_narrow;
}

// Looks at all whole blocks; the first offset that it has not looked at, npos when it was told to
// stop.
template <class Count, class CountBlock>
std::size_t report_blocks(Text pattern, Text text, std::size_t num_offsets, Count k,
                          CountBlock count_offsets, const ReportMismatching& report) {
  Counts<Count> counts;
  std::size_t offset = 0;
  for (; offset + kBlock <= num_offsets; offset += kBlock) {
    if (!count_offsets(pattern, text.data() + offset, k, counts)) continue;
    for (std::size_t j = 0; j < kBlock; ++j) {
      if (counts[j] <= k && !report(offset + j, counts[j])) return Text::npos;
    }
  }
  return offset;
}

std::size_t count_one(Text pattern, const char* at, std::size_t k) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < pattern.size() && count <= k; ++i) {
    count += at[i] != pattern[i] ? 1 : 0;
  }
  return count;
}

}  // namespace

void for_each_mismatching(Text pattern, Text text, std::size_t k, const ReportMismatching& report) {
  if (pattern.size() > text.size()) return;
  std::size_t num_offsets = text.size() - pattern.size() + 1;
  bool is_narrow = k < kMaxNarrow;
  std::size_t offset = is_narrow ? report_blocks(pattern, text, num_offsets, static_cast<Narrow>(k),
                                                 choose_narrow(), report)
                                 : report_blocks(pattern, text, num_offsets, static_cast<Wide>(k),
                                                 count_wide, report);
  for (; offset < num_offsets; ++offset) {
    std::size_t count = count_one(pattern, text.data() + offset, k);
    if (count <= k && !report(offset, count)) return;
  }
}

}  // namespace vstring
