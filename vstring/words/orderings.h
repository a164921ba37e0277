// Orderings of words. Entry points: all functions here; each gives -1, 0 or 1 as s is less than,
// equal to or greater than t. Tests: tests/unit/orderings_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// The order of letters that a support string gives: place of each byte from 1, 0 for none.
using LetterPlaces = std::array<int, 256>;

/// What an ordering with a support gives when a letter that it needs has no place.
inline constexpr int kNoPlace = -2;

int compare_lex(Text s, Text t);
int compare_lex(Text s, Text t, const LetterPlaces& places);

/// From the last bytes back. A text and another that ends with it are equal.
int compare_revlex(Text s, Text t);
/// Here the one that runs out first is the smaller.
int compare_revlex(Text s, Text t, const LetterPlaces& places);

/// Recursive path orderings: from the right end or from the left.
int compare_lrpo(Text s, Text t);
int compare_rrpo(Text s, Text t);

using Weights = std::array<std::int32_t, 256>;

/// By the sum of the letters' weights, then by compare_lex.
int compare_weighted_shortlex(Text s, Text t, const Weights& weights);

/// The wreath product of shortlex orders, the weights being the levels: by the letters of the
/// highest level, shorter words first; then, between these, by the leftmost stretch of lower
/// letters that differs, in the same way.
int compare_wreath(Text s, Text t, const Weights& weights);

}  // namespace vstring
