// Scans over byte sets.
#include "vstring/core/byte_set.h"

#include <algorithm>

namespace vstring {

std::size_t find_member(Text text, const ByteSet& set) {
  std::size_t i = 0;
  while (i < text.size() && !set.contains(byte_of(text[i]))) ++i;
  return i;
}

std::size_t find_other(Text text, const ByteSet& set) {
  std::size_t i = 0;
  while (i < text.size() && set.contains(byte_of(text[i]))) ++i;
  return i;
}

std::size_t count_members(Text text, const ByteSet& set) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [&](char c) { return set.contains(byte_of(c)); }));
}

}  // namespace vstring
