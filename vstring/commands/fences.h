// Fences: brackets in a text and their partners. Entry points: find_fence, matching_fence. Tests:
// docs/commands/fences.md, tests/transcripts/commands/fences.vt.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// Offset of the first of ( ) [ ] { } at `from` or behind; npos when there is none.
std::size_t find_fence(Text text, std::size_t from);

/// Offset of the fence that pairs with the one at this offset, when all three kinds nest properly
/// between the two; npos when there is none or no fence stands there. Throws std::bad_alloc.
std::size_t matching_fence(Text text, std::size_t at);

}  // namespace vstring
