// Replacement templates: & is the whole match, \0..\9 the sub-expressions, \\ and \& the bytes
// themselves; any other backslash stands for itself. Entry points: expanded_size, expand.
#pragma once

#include <cstdint>

#include "vstring/core/text.h"
#include "vstring/regex/match.h"

namespace vstring::regex {

/// Bytes that `expand` writes; may be more than memory can hold.
std::uint64_t expanded_size(Text pattern, const Captures& captures);
/// Writes the template with the matched texts put in; gives the end of what was written.
char* expand(Text pattern, const Captures& captures, char* out);
/// Whether the template asks for sub-expressions.
bool needs_groups(Text pattern);

}  // namespace vstring::regex
