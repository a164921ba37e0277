// Case conversion as its rules read, with the C library's mapping.
#pragma once

#include <cctype>
#include <string>

#include "vstring/core/text.h"

namespace reference {

/// The text with `change` applied to each byte of ASCII; the others stay.
template <class Change>
std::string changed(vstring::Text text, Change change) {
  std::string result(text);
  for (char& c : result) {
    if (vstring::byte_of(c) < 128) c = static_cast<char>(change(int{c}));
  }
  return result;
}

inline std::string upper(vstring::Text text) { return changed(text, ::toupper); }
inline std::string lower(vstring::Text text) { return changed(text, ::tolower); }
inline std::string other_case(vstring::Text text) {
  return changed(text, [](int c) { return std::isupper(c) ? std::tolower(c) : std::toupper(c); });
}
inline std::string capitalised(vstring::Text text) {
  std::string result(text);
  bool is_inside = false;
  for (char& raw : result) {
    int c = vstring::byte_of(raw);
    bool is_alnum = c < 128 && std::isalnum(c);
    if (is_alnum) raw = static_cast<char>(is_inside ? std::tolower(c) : std::toupper(c));
    is_inside = is_alnum;
  }
  return result;
}

}  // namespace reference
