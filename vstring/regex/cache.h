// The cache of compiled patterns. Entry point: find_compiled.
#pragma once

#include "vstring/core/text.h"
#include "vstring/regex/prepared.h"

namespace vstring::regex {

/// The pattern compiled and prepared, from the cache where possible; null, with the error recorded,
/// when it cannot be compiled. Stays valid until the next call.
const Prepared* find_compiled(Text pattern);

}  // namespace vstring::regex
