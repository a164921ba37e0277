// The longest common substring. Entry point: longest_common_substring. Tests:
// tests/unit/similarity_test.cpp.
#pragma once

#include "vstring/core/text.h"

namespace vstring {

/// The longest substring of s that stands in t; among several the leftmost of s. A view into s.
/// Linear in time, memory linear in the shorter text: the other one is read through its suffix
/// automaton (A. Blumer et al., The smallest automaton recognizing the subwords of a text, 1985).
/// Throws std::bad_alloc.
Text longest_common_substring(Text s, Text t);

}  // namespace vstring
