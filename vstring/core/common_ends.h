// How far two texts agree, from the front and from the back. Entry points: common_prefix,
// common_suffix, strip_common_ends. Tests: tests/unit/similarity_test.cpp.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vstring/core/text.h"

namespace vstring {

inline std::uint64_t eight_bytes(const char* from) {
  std::uint64_t word = 0;
  std::memcpy(&word, from, sizeof word);
  return word;
}

/// Length of the longest common prefix.
inline std::size_t common_prefix(Text s, Text t) {
  static_assert(std::endian::native == std::endian::little);
  std::size_t length = std::min(s.size(), t.size());
  std::size_t i = 0;
  for (; length - i >= 8; i += 8) {
    std::uint64_t difference = eight_bytes(s.data() + i) ^ eight_bytes(t.data() + i);
    if (difference != 0) return i + static_cast<std::size_t>(std::countr_zero(difference)) / 8;
  }
  while (i < length && s[i] == t[i]) ++i;
  return i;
}

/// Length of the longest common suffix.
inline std::size_t common_suffix(Text s, Text t) {
  std::size_t length = std::min(s.size(), t.size());
  const char* s_end = s.data() + s.size();
  const char* t_end = t.data() + t.size();
  std::size_t i = 0;
  for (; length - i >= 8; i += 8) {
    std::uint64_t difference = eight_bytes(s_end - i - 8) ^ eight_bytes(t_end - i - 8);
    if (difference != 0) return i + static_cast<std::size_t>(std::countl_zero(difference)) / 8;
  }
  while (i < length &&
         s_end[-1 - static_cast<std::ptrdiff_t>(i)] == t_end[-1 - static_cast<std::ptrdiff_t>(i)]) {
    ++i;
  }
  return i;
}

struct CommonEnds {
  std::size_t prefix;
  std::size_t suffix;
};

/// Takes the common prefix off both texts, then the common suffix of what is left.
inline CommonEnds strip_common_ends(Text& s, Text& t) {
  std::size_t prefix = common_prefix(s, t);
  s.remove_prefix(prefix);
  t.remove_prefix(prefix);
  std::size_t suffix = common_suffix(s, t);
  s.remove_suffix(suffix);
  t.remove_suffix(suffix);
  return {prefix, suffix};
}

}  // namespace vstring
