// Wildcards matched by the plain recursion.
#pragma once

#include "vstring/core/text.h"

namespace reference {

using vstring::byte_of;

// A star tries every rest of the text in turn; everything else takes a byte.
inline bool matches_wildcard(const char* p, const char* t) {
  if (*p == '\0') return *t == '\0';
  if (*p == '*') {
    for (;; ++t) {
      if (matches_wildcard(p + 1, t)) return true;
      if (*t == '\0') return false;
    }
  }
  if (*t == '\0') return false;
  if (*p == '?') return matches_wildcard(p + 1, t + 1);
  if (*p == '\\' && p[1] != '\0') return matches_wildcard(p + 2, t + 1);
  if (*p != '[') return *p == *t && matches_wildcard(p + 1, t + 1);
  bool is_negated = *++p == '^';
  if (is_negated) ++p;
  bool is_member = false;
  for (; *p != ']'; ++p) {
    if (*p == '\0') return false;
    if (is_member) continue;
    if (p[1] != '-') {
      is_member = *p == *t;
    } else if (p[2] == '\0') {
      return false;
    } else if (p[2] == ']') {
      is_member = byte_of(*t) >= byte_of(*p++);
    } else {
      is_member =
          *t == *p || *t == p[2] || (byte_of(*p) < byte_of(*t) && byte_of(*t) < byte_of(p[2]));
      p += 2;
    }
  }
  return is_member != is_negated && matches_wildcard(p + 1, t + 1);
}

}  // namespace reference
