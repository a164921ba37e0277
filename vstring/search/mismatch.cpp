// Search with mismatches. The offsets of a block are looked at side by side, a byte of the pattern
// at a time, in a loop that the compiler turns into vector code. Tests:
// tests/unit/approximate_test.cpp.
#include "vstring/search/mismatch.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace vstring {
namespace {

constexpr std::size_t kBlock = 64;  // offsets side by side
constexpr std::size_t kMaxRounds =
    255;  // bytes of the pattern until a byte-sized count could overflow

using Counts = std::array<std::size_t, kBlock>;

// Adds the mismatches of part of the pattern at `at` and the 63 offsets behind it.
void add_mismatches(Text part, const char* at, Counts& counts) {
  std::uint8_t small[kBlock] = {};
  for (char c : part) {
    for (std::size_t j = 0; j < kBlock; ++j) {
      small[j] = static_cast<std::uint8_t>(small[j] + (at[j] != c ? 1 : 0));
    }
    ++at;
  }
  for (std::size_t j = 0; j < kBlock; ++j) counts[j] += small[j];
}

// Mismatches at the 64 offsets from `at` on; counts above k need not be complete.
Counts count_block(Text pattern, const char* at, std::size_t k) {
  Counts counts{};
  for (std::size_t i = 0; i < pattern.size(); i += kMaxRounds) {
    add_mismatches(pattern.substr(i, kMaxRounds), at + i, counts);
    if (*std::min_element(counts.begin(), counts.end()) > k) break;
  }
  return counts;
}

std::size_t count_one(Text pattern, const char* at, std::size_t k) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < pattern.size() && count <= k; ++i)
    count += at[i] != pattern[i] ? 1 : 0;
  return count;
}

}  // namespace

void for_each_mismatching(Text pattern, Text text, std::size_t k, const ReportMismatching& report) {
  if (pattern.size() > text.size()) return;
  std::size_t num_offsets = text.size() - pattern.size() + 1;
  std::size_t offset = 0;
  for (; offset + kBlock <= num_offsets; offset += kBlock) {
    Counts counts = count_block(pattern, text.data() + offset, k);
    for (std::size_t j = 0; j < kBlock; ++j) {
      if (counts[j] <= k && !report(offset + j, counts[j])) return;
    }
  }
  for (; offset < num_offsets; ++offset) {
    std::size_t count = count_one(pattern, text.data() + offset, k);
    if (count <= k && !report(offset, count)) return;
  }
}

}  // namespace vstring
