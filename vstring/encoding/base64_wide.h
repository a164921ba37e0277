// Base64 in vectors, inside base64.cpp. Entry points: encode_groups_wide, decode_groups_wide,
// encode_short_wide, decode_short_wide. Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/cpu.h"

#ifdef VSTRING_X86

namespace vstring {

/// From this many groups on a text fills at least half a vector; from this many bytes or digits on
/// one that does not is done whole.
constexpr std::size_t kLeastWideGroups = 4;
constexpr std::size_t kLeastShortSize = 5;

/// Encodes groups of 3 bytes each, at least kLeastWideGroups.
VSTRING_AVX2 void encode_groups_wide(const char* in, std::size_t groups, char* out);
/// Decodes groups of 4 digits each, at least kLeastWideGroups. False when something else than a
/// digit stands among them.
VSTRING_AVX2 bool decode_groups_wide(const char* in, std::size_t groups, char* out);

/// Encodes a short text as if zeros stood behind it, up to a whole group.
VSTRING_AVX2 void encode_short_wide(const char* in, std::size_t size, char* out);
/// Decodes a short text with what is left over. False when it holds something else than digits.
VSTRING_AVX2 bool decode_short_wide(const char* in, std::size_t size, char* out);

}  // namespace vstring

#endif
