// The least rotation of a text. Entry point: least_rotation. Tests: tests/unit/words_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// Where the least of the text's rotations starts, by byte values; the first of several equal ones.
/// Linear, without memory: of two candidates that agree in k bytes the greater one falls with the k
/// starts behind it (Y. Shiloach, Fast canonization of circular strings, 1981).
std::size_t least_rotation(Text text);

}  // namespace vstring
