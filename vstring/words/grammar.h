// Grammar inference. Entry point: infer_grammar. Tests:
// tests/unit/grammar_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

/// A symbol of a rule: 2c + 1 for the byte c, 2k for rule k.
using GrammarSymbol = std::uint32_t;
/// The right sides of the rules. Rule 0 gives the text; the others are numbered in the order in
/// which they appear when the rules are read one after the other.
using Grammar = std::vector<std::vector<GrammarSymbol>>;

/// The grammar that generates this text alone, in which no pair of neighbouring symbols stands
/// twice and every rule but rule 0 is used twice or more (C. G. Nevill-Manning and I. H. Witten,
/// Identifying hierarchical structure in sequences: a linear-time algorithm, 1997). Amortised
/// linear in time and memory. Throws std::bad_alloc.
Grammar infer_grammar(Text text);

}  // namespace vstring
