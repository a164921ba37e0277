// Base64 in vectors, inside base64.cpp. Entry points: encode_groups_wide, decode_groups_wide.
// Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstddef>

namespace vstring {

/// Encodes whole groups of 3 bytes each, and returns how many it did: all of them, or none where
/// there are too few or the machine has no wide vectors.
std::size_t encode_groups_wide(const char* in, std::size_t groups, char* out);

/// Decodes whole groups of 4 digits each, and returns how many it did: all of them, or none.
/// Clears is_valid when something else than a digit stands among them.
std::size_t decode_groups_wide(const char* in, std::size_t groups, char* out, bool& is_valid);

}  // namespace vstring
