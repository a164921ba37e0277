// Keys that words of like sound share. Entry points: soundex, metaphone. Tests:
// docs/commands/language.md, tests/transcripts/language/phonetics.vt.
#pragma once

#include <array>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

/// A letter and three digits; "Z000" for a text without letters. Ends at the fourth character, NUL
/// follows it.
std::array<char, 5> soundex(Text text);

/// Capital letters and 0 (for th), made of the first 1023 letters of the text. May be empty.
std::string metaphone(Text text);

}  // namespace vstring
