// Subsequences: the test, a longest common one, its length, and the length by thresholds. Entry
// points: is_subsequence, longest_common_subsequence, common_subsequence_length,
// threshold_length. Tests: tests/unit/similarity_test.cpp.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

/// Whether all bytes of s stand in t in their order.
bool is_subsequence(Text s, Text t);

/// Length of a longest common subsequence, 64 cells of the table or more at a time (H. Hyyro,
/// Bit-parallel LCS-length computation revisited, 2004). Memory linear in s. Throws std::bad_alloc.
std::size_t common_subsequence_length(Text s, Text t);

/// A longest common subsequence. Among several it is the one found from the starts: equal bytes are
/// taken; otherwise t advances where nothing is lost by it, else s. A bit of memory for 256 cells
/// of the table. Throws std::bad_alloc.
std::string longest_common_subsequence(Text s, Text t);

/// What the threshold method says when it meets entries out of order.
struct ThresholdBug {
  std::size_t below;  // entry hi - 1
  std::size_t entry;  // entry hi
  std::size_t position;
  std::size_t hi;
};

/// The length that the threshold method of J. W. Hunt and T. G. Szymanski (1977) gives with
/// min(|s|, |t|) + 1 as the mark of an unused entry. Positions in the longer text may equal that
/// mark, so that with lengths that differ the result may be too small, or exceed it, so that with
/// lengths that differ by two or more it may be too great; users rely on it as it is. Reports every
/// entry that the method finds out of order. Throws std::bad_alloc.
std::size_t threshold_length(Text s, Text t,
                             const std::function<void(const ThresholdBug&)>& report);

}  // namespace vstring
