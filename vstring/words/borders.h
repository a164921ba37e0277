// Borders and periods of words. Entry points: BorderTable, overlap_length, has_period,
// root_length. Tests: tests/unit/words_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "vstring/core/text.h"

namespace vstring {

/// The border lengths of a word; those of short words need no heap.
class BorderTable {
 public:
  /// The border lengths of all prefixes of the word (J. H. Morris and V. R. Pratt, 1970). Throws
  /// std::bad_alloc.
  explicit BorderTable(Text word);
  /// Length of the longest border of the prefix of this length, 0 .. word.size(); -1 for length 0.
  std::int32_t operator[](std::size_t length) const { return lengths_[length]; }

 private:
  std::int32_t local_[512];
  std::unique_ptr<std::int32_t[]> heap_;
  std::int32_t* lengths_;
};

/// How much of the end of s is the start of t. When s is the longer text, what a mismatch falls
/// back to is read off the borders of s, not of t, and the scan ends when all of t has been seen;
/// users rely on both.
std::size_t overlap_length(Text s, Text t);

/// Whether word[i] = word[i + period] wherever both exist, for 1 <= period <= |word|.
bool has_period(Text word, std::size_t period);

/// Length of the shortest word of which this one is a power; its own length when it is primitive.
std::size_t root_length(Text word);

}  // namespace vstring
