// Sets of byte values and the scans over them. Entry points: ByteSet, find_member, find_other,
// count_members, mark_members. Tests: tests/unit/byte_set_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"

namespace vstring {

/// A set of byte values.
class ByteSet {
 public:
  constexpr ByteSet() = default;
  /// The set of the bytes of a text.
  explicit constexpr ByteSet(Text members) {
    for (char c : members) add(byte_of(c));
  }
  constexpr void add(unsigned char c) { words_[c / 64] |= std::uint64_t{1} << (c % 64); }
  constexpr bool contains(unsigned char c) const { return (words_[c / 64] >> (c % 64) & 1) != 0; }
  /// Adds the members of another set; tells whether any of them was new.
  constexpr bool add_all(const ByteSet& more) {
    bool has_grown = false;
    for (int i = 0; i < 4; ++i) {
      has_grown = has_grown || (more.words_[i] & ~words_[i]) != 0;
      words_[i] |= more.words_[i];
    }
    return has_grown;
  }
  const std::uint64_t* words() const { return words_; }

 private:
  std::uint64_t words_[4] = {0, 0, 0, 0};
};

/// Offset of the first byte of the text that is in the set; the text's length when none is.
std::size_t find_member(Text text, const ByteSet& set);
/// Offset of the first byte of the text that is not in the set; the text's length when all are.
std::size_t find_other(Text text, const ByteSet& set);
/// How many bytes of the text are in the set.
std::size_t count_members(Text text, const ByteSet& set);
/// Sets a bit for each byte of the text that is in the set: for byte i bit i % 64 of marks[i / 64].
/// All other bits of these words are cleared.
void mark_members(Text text, const ByteSet& set, std::uint64_t* marks);

}  // namespace vstring
