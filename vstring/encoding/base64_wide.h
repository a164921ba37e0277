// Base64 in vectors, inside base64.cpp. Entry points: encode_groups_wide, decode_groups_wide.
// Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstddef>

namespace vstring {

/// Fewer groups than this are none that a vector could do.
constexpr std::size_t kLeastWideGroups = 4;

/// Encodes whole groups of 3 bytes each, at least kLeastWideGroups, and returns how many it did:
/// all of them, or none where the machine has no wide vectors.
std::size_t encode_groups_wide(const char* in, std::size_t groups, char* out);

/// The same for groups of 4 digits each.
/// Clears is_valid when something else than a digit stands among them.
std::size_t decode_groups_wide(const char* in, std::size_t groups, char* out, bool& is_valid);

}  // namespace vstring
