// Search and substitution as their rules read, without a thought for speed.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "vstring/core/text.h"

namespace reference {

/// Offsets of all occurrences, overlapping ones included; an empty pattern has none.
std::vector<std::size_t> occurrences(vstring::Text pattern, vstring::Text text);

/// (offset, 1-based index of the pattern) of all occurrences, in the order of the automaton whose
/// output chains are reversed at each failure step.
using Reports = std::vector<std::pair<std::size_t, unsigned>>;
Reports occurrences_of_set(const std::vector<std::string>& patterns, vstring::Text text);

/// `text` with all occurrences replaced, built in a block of the computed size.
std::string replace_all(vstring::Text text, vstring::Text pattern, vstring::Text replacement);

}  // namespace reference
