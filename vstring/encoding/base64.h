// Base64 with the standard alphabet, padded, in one line (RFC 4648). Entry points: encode_base64,
// decode_base64 and the sizes of what they write. Tests: tests/unit/encoding_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

/// How many characters encode this many bytes.
constexpr std::size_t base64_size(std::size_t size) { return (size / 3 + (size % 3 != 0)) * 4; }

/// Writes base64_size(bytes.size()) characters.
void encode_base64(Text bytes, char* out);

/// The coded text without its padding: one or two = at the end of a length that is a multiple of 4.
Text base64_digits(Text coded);

/// How many bytes this many digits hold; bits left over do not count.
constexpr std::size_t decoded_size(std::size_t digits) {
  return digits / 4 * 3 + digits % 4 * 3 / 4;
}

/// Writes decoded_size(digits.size()) bytes, which may be NUL. False when something else than a
/// digit is among the digits, or one digit is left over; what was written then is of no use.
bool decode_base64(Text digits, char* out);

}  // namespace vstring
