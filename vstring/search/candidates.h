// Where a pattern may occur: the places at which two of its bytes stand, 64 starting offsets at a
// time. Entry points: next_candidates, rarest_anchors, end_anchors. Tests:
// tests/unit/exact_search_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "vstring/core/text.h"

namespace vstring {

/// Two bytes of a pattern, by their offsets in it. Those of a pattern of one or two bytes cover it.
struct Anchors {
  std::size_t first;
  std::size_t second;
  char first_byte;
  char second_byte;
};

/// The first and the last byte: cheap to choose. The pattern must not be empty.
Anchors end_anchors(Text pattern);
/// The bytes that are probably seldom in texts: worth choosing for a long text.
Anchors rarest_anchors(Text pattern);

/// Bit k of `mask` is set when both anchors stand at start + k. What lies before `end` has been
/// looked at.
struct CandidateBlock {
  std::size_t start;
  std::size_t end;
  std::uint64_t mask;
};

/// The next candidates among the starting offsets from .. starts - 1, for a text that holds the
/// whole pattern at each of these. The mask is 0 when there are none.
CandidateBlock next_candidates(const Anchors& anchors, const char* text, std::size_t from,
                               std::size_t starts);

/// One way to find them, and the least number of starting offsets that it takes.
struct CandidateKernel {
  CandidateBlock (*next)(const Anchors& anchors, const char* text, std::size_t from,
                         std::size_t starts);
  std::size_t least_starts;
};

/// All ways that this machine can go, the fastest first; the last one takes any text.
std::span<const CandidateKernel> candidate_kernels();

}  // namespace vstring
