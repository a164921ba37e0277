// A program as the positions at which it takes a byte, and which positions follow upon which: what
// a matcher that keeps sets of positions goes by. Entry point: Positions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "vstring/core/byte_set.h"
#include "vstring/regex/prepared.h"

namespace vstring::regex {

class Positions {
 public:
  using Position = std::uint16_t;
  /// Positions in order of preference. What stands behind kMatch can never decide and is left out.
  using List = std::vector<Position>;
  static constexpr Position kMatch = 0;
  static constexpr std::size_t kMost = 1024;

  explicit Positions(const Prepared& prepared);

  /// Whether the program can be told by positions: it is not too large, and no node is broken.
  bool are_known() const { return are_known_; }
  std::size_t size() const { return places_.size(); }
  /// Where a match begins: at the text's start or elsewhere.
  const List& starts(bool is_at_origin) const { return is_at_origin ? origin_starts_ : starts_; }
  /// Where matching goes on once the position has taken a byte.
  const List& following(Position position);
  /// Whether the position takes the bytes of a class.
  bool takes(Position position, std::size_t byte_class) const;
  /// Whether a match is complete when the text ends at the position.
  bool may_end(Position position) const { return places_[position].may_end; }

  /// Bytes that no position tells apart have the same class.
  const std::array<std::uint8_t, 256>& classes() const { return classes_; }
  std::size_t num_classes() const { return samples_.size(); }

 private:
  struct Place {
    std::int32_t instruction;
    std::int32_t offset;  // in a Literal
    bool may_end = false;
    bool is_followed = false;  // whether `following` has been made
    List following{};
  };

  void number(const Prepared& prepared);
  void find_classes();
  void split_classes(const ByteSet& set);
  ByteSet set_of(const Place& place) const;
  List closure(std::int32_t from, bool is_at_origin, bool is_at_end);

  const Prepared& prepared_;
  bool are_known_ = true;
  std::vector<Place> places_;        // by position
  std::vector<Position> first_;      // by instruction: its first position
  std::vector<std::uint32_t> seen_;  // by instruction: the closure it was met in last
  std::uint32_t num_closures_ = 0;
  std::vector<std::int32_t> pending_;  // instructions to be followed, the last one first
  List starts_;
  List origin_starts_;
  std::array<std::uint8_t, 256> classes_{};
  std::vector<unsigned char> samples_;  // a byte of each class
};

}  // namespace vstring::regex
