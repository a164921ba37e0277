// Small stemmers that look at one end of a word. Entry points: without_prefixes, singular. Tests:
// docs/commands/language.md, tests/transcripts/language/stems.vt.
#pragma once

#include <cstddef>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

inline constexpr std::size_t kMaxAffixedWord = 255;

/// What is left of the word when all known prefixes are taken off its front, one after the other,
/// as long as it has more than 3 bytes and only letters are left.
Text without_prefixes(Text word);

/// The word without its plural s, taken off twice.
std::string singular(Text word);

}  // namespace vstring
