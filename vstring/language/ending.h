// Endings of words, up to eight bytes, compared in one step. Entry points: Tail, Ending,
// EndingTable.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vstring/core/text.h"

namespace vstring {

/// The last eight bytes of a text; bytes that a shorter text lacks count as NUL, which no ending
/// holds.
class Tail {
 public:
  static constexpr std::size_t kSize = 8;

  explicit Tail(Text text) {
    if (text.size() >= kSize) {
      *this = behind(text.data() + text.size());
    } else {
      for (char c : text) bytes_ = bytes_ >> 8 | std::uint64_t{byte_of(c)} << 56;
    }
  }
  /// The eight bytes before `end`, all of which can be read.
  static Tail behind(const char* end) {
    Tail tail;
    std::memcpy(&tail.bytes_, end - kSize, kSize);
    if constexpr (std::endian::native == std::endian::big) {
      tail.bytes_ = __builtin_bswap64(tail.bytes_);
    }
    return tail;
  }

  /// The last byte is the topmost.
  std::uint64_t bytes() const { return bytes_; }
  unsigned char last() const { return static_cast<unsigned char>(bytes_ >> 56); }
  unsigned char last_but_one() const { return static_cast<unsigned char>(bytes_ >> 48); }

 private:
  Tail() = default;
  std::uint64_t bytes_ = 0;
};

/// A text of 1 to 8 bytes that words may end in.
class Ending {
 public:
  constexpr Ending(const char* letters) : Ending(Text(letters)) {}  // NOLINT: tables list texts
  constexpr explicit Ending(Text letters)
      : mask_(~std::uint64_t{0} << (64 - 8 * letters.size())), size_(letters.size()) {
    for (char c : letters) bytes_ = bytes_ >> 8 | std::uint64_t{byte_of(c)} << 56;
  }
  constexpr std::size_t size() const { return size_; }
  constexpr unsigned char last() const { return static_cast<unsigned char>(bytes_ >> 56); }
  constexpr unsigned char last_but_one() const { return static_cast<unsigned char>(bytes_ >> 48); }
  bool ends(Tail tail) const { return (tail.bytes() & mask_) == bytes_; }

 private:
  std::uint64_t bytes_ = 0;
  std::uint64_t mask_;
  std::size_t size_;
};

/// Rows with an `ending` of two or more letters each, of which the first one that a word ends in
/// counts. Only those are tried that share the last letter but one.
template <class Row, std::size_t N>
class EndingTable {
 public:
  static_assert(N <= 32);
  constexpr explicit EndingTable(const Row (&rows)[N]) : rows_(rows) {
    for (std::size_t i = 0; i < N; ++i) {
      candidates_[rows[i].ending.last_but_one() % 32] |= std::uint32_t{1} << i;
    }
  }
  /// Null when the word ends in none.
  const Row* find(Tail tail) const {
    std::uint32_t candidates = candidates_[tail.last_but_one() % 32];
    for (; candidates != 0; candidates &= candidates - 1) {
      const Row& row = rows_[std::countr_zero(candidates)];
      if (row.ending.ends(tail)) return &row;
    }
    return nullptr;
  }

 private:
  const Row* rows_;
  std::array<std::uint32_t, 32> candidates_ = {};
};

}  // namespace vstring
