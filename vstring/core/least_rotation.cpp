#include "vstring/core/least_rotation.h"

#include <algorithm>
#include <cstring>

#include "vstring/core/common_ends.h"

namespace vstring {
namespace {

// How many bytes the rotations that start at i and j have in common.
std::size_t common_length(Text text, std::size_t i, std::size_t j) {
  std::size_t n = text.size();
  std::size_t length = 0;
  while (length < n) {
    std::size_t a = i + length < n ? i + length : i + length - n;
    std::size_t b = j + length < n ? j + length : j + length - n;
    std::size_t until_wrap = std::min(n - std::max(a, b), n - length);
    std::size_t equal = common_prefix(text.substr(a, until_wrap), text.substr(b, until_wrap));
    length += equal;
    if (equal < until_wrap) break;
  }
  return length;
}

unsigned char least_byte(Text text) {
  unsigned char least = 255;
  for (char c : text) least = std::min(least, byte_of(c));
  return least;
}

}  // namespace

std::size_t least_rotation(Text text) {
  std::size_t n = text.size();
  if (n < 2) return 0;
  unsigned char least = least_byte(text);
  // Only rotations that start with the least byte can win.
  auto next_candidate = [&](std::size_t from) {
    if (from >= n) return n;
    const void* place = std::memchr(text.data() + from, least, n - from);
    return place == nullptr
               ? n
               : static_cast<std::size_t>(static_cast<const char*>(place) - text.data());
  };
  std::size_t i = next_candidate(0);
  std::size_t j = next_candidate(i + 1);
  while (j < n) {
    std::size_t length = common_length(text, i, j);
    if (length == n) break;
    unsigned char a = byte_of(text[(i + length) % n]);
    unsigned char b = byte_of(text[(j + length) % n]);
    if (a > b) {
      // The winner stays in front: starts up to j have all lost.
      i = std::max(i + length + 1, j);
      if (i > j) i = next_candidate(i);
      j = next_candidate(i + 1);
    } else {
      j = next_candidate(j + length + 1);
    }
  }
  return i;
}

}  // namespace vstring
