// Search with at most k differences: insertions, deletions and substitutions. Entry points:
// approximate_ends, prefixed_ends. Both report where occurrences end, as 1-based positions from the
// left.
#pragma once

#include <cstddef>
#include <functional>

#include "vstring/core/text.h"

namespace vstring {

/// Told the end of an occurrence; tells whether to go on.
using ReportEnd = std::function<bool(std::size_t end)>;

/// Every position at which a part of the text ends that is at most k edits away from the pattern.
/// With bit vectors of vertical differences, 64 rows a word, over the rows that can still matter:
/// at most n * ceil(m / 64) steps (G. Myers, Journal of the ACM 46(3), 1999). Throws
/// std::bad_alloc.
void approximate_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report);

/// The longest pattern of prefixed_ends.
inline constexpr std::size_t kMaxPrefixedPattern = 32;

/// What the method of k + 1 words of states reports (S. Wu and U. Manber, Communications of the ACM
/// 35(10), 1992) when it begins with no prefix matched at all, not even those that k deletions
/// give: it may report less near the start of the text than approximate_ends. Nothing for patterns
/// that are empty or longer than 32 bytes. One step a byte, whatever k is.
void prefixed_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report);

}  // namespace vstring
