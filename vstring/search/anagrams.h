// Anagrams. Entry points: are_anagrams, anagram_key.
#pragma once

#include <string>

#include "vstring/core/text.h"

namespace vstring {

/// Whether each byte stands as often in s as in t.
bool are_anagrams(Text s, Text t);
/// The bytes of a word in order: equal for anagrams alone.
std::string anagram_key(Text word);

}  // namespace vstring
