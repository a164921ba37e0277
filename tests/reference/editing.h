// Edits of byte strings as their rules read, byte by byte.
#pragma once

#include <cctype>
#include <cstddef>
#include <string>

#include "vstring/core/text.h"

namespace reference {

using vstring::Text;

inline std::string reversed(Text text) { return {text.rbegin(), text.rend()}; }

inline std::string repeated(Text text, std::size_t count) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

inline std::string rotated(Text text, std::size_t shift) {
  std::string result(text);
  for (std::size_t i = 0; i < text.size(); ++i) result[(i + shift) % text.size()] = text[i];
  return result;
}

inline std::string translated(Text from, Text to, Text text) {
  std::string result(text);
  for (char& c : result) {
    std::size_t place = from.find(c);
    if (place != Text::npos) c = to[place];
  }
  return result;
}

/// -1, 0 or 1. The locale is "C", whose tolower knows no letters beyond ASCII.
inline int order_ignoring_case(Text a, Text b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    int x = std::tolower(vstring::byte_of(a[i]));
    int y = std::tolower(vstring::byte_of(b[i]));
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() < b.size() ? -1 : a.size() > b.size();
}

}  // namespace reference
