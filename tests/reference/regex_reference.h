// A plain recursive matcher for compiled programs, the twin of vstring/regex/match.cpp.
#pragma once

#include "vstring/regex.h"

namespace reference {

/// Fills match_start and match_end as vrx_regexec does. Exponential where the pattern is.
bool regexec(RegexpRecord& record, const char* text);

}  // namespace reference
