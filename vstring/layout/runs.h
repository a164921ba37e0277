// Walking through a text by the bytes that are in a set, marked a block at a time. Entry points:
// each_member, each_run. Tests: tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/byte_set.h"

namespace vstring {

/// White space: blank, tab, newline, vertical tab, form feed, carriage return.
inline constexpr ByteSet kBlanks{" \t\n\v\f\r"};

inline constexpr std::size_t kMarkedBlock = 4096;
inline constexpr std::size_t kMarksInWord = 64;

/// Calls visit(offset of its first byte, marks) for each 64 bytes of the text; bits behind its end
/// are 0.
template <class Visit>
void each_marked_word(Text text, const ByteSet& set, Visit visit) {
  std::uint64_t marks[kMarkedBlock / kMarksInWord];
  for (std::size_t block = 0; block < text.size(); block += kMarkedBlock) {
    Text bytes = text.substr(block, kMarkedBlock);
    mark_members(bytes, set, marks);
    for (std::size_t at = 0; at < bytes.size(); at += kMarksInWord) {
      visit(block + at, marks[at / kMarksInWord]);
    }
  }
}

/// Calls visit(offset) for each byte of the text that is in the set.
template <class Visit>
void each_member(Text text, const ByteSet& set, Visit visit) {
  each_marked_word(text, set, [&](std::size_t start, std::uint64_t marks) {
    for (; marks != 0; marks &= marks - 1) {
      visit(start + static_cast<std::size_t>(__builtin_ctzll(marks)));
    }
  });
}

/// Calls visit(begin, end, is_member) for each longest run of bytes that are all in the set or all
/// not in it. The runs make up the text; none is empty.
template <class Visit>
void each_run(Text text, const ByteSet& set, Visit visit) {
  std::size_t begin = 0;
  std::uint64_t previous = 0;  // the mark of the byte before
  bool is_member = false;
  each_marked_word(text, set, [&](std::size_t start, std::uint64_t marks) {
    std::uint64_t flips = marks ^ (marks << 1 | previous);
    previous = marks >> (kMarksInWord - 1);
    for (; flips != 0; flips &= flips - 1) {
      std::size_t end = start + static_cast<std::size_t>(__builtin_ctzll(flips));
      if (end > begin) visit(begin, end, is_member);
      begin = end;
      is_member = !is_member;
    }
  });
  if (begin < text.size()) visit(begin, text.size(), is_member);
}

}  // namespace vstring
