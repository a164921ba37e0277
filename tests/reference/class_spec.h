// Character classes as their rules read. Entry point: expand.
#pragma once

#include <optional>
#include <string>

namespace reference {

/// The members in ascending order; nothing for a descending range. `t` ends with a NUL, `length`
/// bytes on or later. Knows no names: those are tested one by one.
inline std::optional<std::string> expand(const char* t, std::size_t length) {
  auto is_framed = [&](char open, char close) {
    return length >= 2 && t[0] == open && t[length - 1] == close && t[length - 2] != '\\';
  };
  if (is_framed('[', ']')) return expand(t + 1, length - 2);
  if (is_framed(':', ':')) return "";
  bool is_member[256] = {};
  for (std::size_t k = t[0] == '^' ? 1 : 0; k < length; ++k) {
    auto x = static_cast<unsigned char>(t[k]);
    if (x == '\\') {
      is_member[static_cast<unsigned char>(t[++k])] = true;
    } else if (t[k + 1] != '-') {
      is_member[x] = true;
    } else if (t[k + 2] == '\0') {
      is_member[x] = is_member[int{'-'}] = true;
      break;
    } else {
      auto y = static_cast<unsigned char>(t[k + 2]);
      if (x > y) return std::nullopt;
      for (int c = x; c <= y; ++c) is_member[c] = true;
      k += 2;
    }
  }
  std::string members;
  for (int c = 1; c < 256; ++c) {
    if (is_member[c] != (t[0] == '^')) members += static_cast<char>(c);
  }
  return members;
}

}  // namespace reference
