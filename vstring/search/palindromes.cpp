#include "vstring/search/palindromes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vstring {

Text longest_palindrome(Text text) {
  // Centre c lies at byte c / 2 when it is even, else behind it. radii[c] bytes match on each side
  // of what is at the centre; the palindrome starts at (c + 1) / 2 - radii[c].
  if (text.empty()) return text;
  std::size_t num_centres = 2 * text.size() - 1;
  std::vector<std::uint32_t> radii(num_centres);
  Text longest;
  std::size_t right_centre = 0;  // of the palindrome that reaches furthest
  std::size_t right_end = 0;     // the offset behind it
  for (std::size_t c = 0; c < num_centres; ++c) {
    std::size_t left = (c + 1) / 2;  // the first byte not left of the centre
    std::size_t right = c / 2 + 1;   // the first byte right of it
    std::size_t radius = 0;
    if (right_end > right) {
      radius = std::min<std::size_t>(radii[2 * right_centre - c], right_end - right);
    }
    while (radius < left && right + radius < text.size() &&
           text[left - radius - 1] == text[right + radius]) {
      ++radius;
    }
    radii[c] = static_cast<std::uint32_t>(radius);
    if (right + radius > right_end) {
      right_end = right + radius;
      right_centre = c;
    }
    std::size_t length = right - left + 2 * radius;
    if (length > longest.size()) longest = text.substr(left - radius, length);
  }
  return longest;
}

}  // namespace vstring
