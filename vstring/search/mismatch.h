// Search with a bounded number of substituted bytes. Entry point: for_each_mismatching.
#pragma once

#include <cstddef>
#include <functional>

#include "vstring/core/text.h"

namespace vstring {

/// Told the 0-based offset of an occurrence and its number of mismatches; tells whether to go on.
using ReportMismatching = std::function<bool(std::size_t offset, std::size_t mismatches)>;

/// Every offset of the text at which the pattern fits with at most k mismatches, from the left. An
/// empty pattern fits everywhere, the text's end included; one longer than the text nowhere.
void for_each_mismatching(Text pattern, Text text, std::size_t k, const ReportMismatching& report);

}  // namespace vstring
