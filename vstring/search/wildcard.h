// Shell-style wildcards: `?` is any byte, `*` any run of bytes, `[...]` and `[^...]` a byte of a
// set. Entry point: matches_wildcard.
#pragma once

#include "vstring/core/text.h"

namespace vstring {

/// Whether the whole text matches the pattern. A backslash and the byte behind it match any one
/// byte. Takes at most pattern times text steps.
bool matches_wildcard(Text pattern, Text text);

struct WildcardCase {
  const char* pattern;
  const char* text;
  bool is_match;
};

/// Cases that show what matches and what does not, ended by one whose pattern is null; those that
/// match come first.
extern const WildcardCase kWildcardCases[];

}  // namespace vstring
