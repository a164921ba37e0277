// Placeholder text in the look of Latin. Entry point: placeholder_word. Tests:
// docs/commands/fences.md.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// Word i, from 0, of a text that never ends and is always the same.
Text placeholder_word(std::size_t i);

}  // namespace vstring
