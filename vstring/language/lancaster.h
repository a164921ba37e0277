// The Lancaster stemmer of C. Paice and G. Husk: a table of rules, applied again and again. Entry
// point: lancaster_stem. Tests: docs/commands/language.md, tests/transcripts/language/stems.vt.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

inline constexpr std::size_t kMaxLancasterWord = 255;

/// The stem of a word of at most kMaxLancasterWord bytes, in small letters. Endings are those of
/// the whole word, but what is shortened is the word up to its first byte that is no letter. With
/// `trace`, all rules that match are written there.
std::string lancaster_stem(Text word, std::FILE* trace);

}  // namespace vstring
