// How often each byte value stands in a text. Entry point: make_histogram.
// Tests: tests/unit/statistics_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

using Histogram = std::array<std::uint32_t, 256>;

Histogram make_histogram(Text text);

}  // namespace vstring
