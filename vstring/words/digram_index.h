// The places of the pairs of neighbouring symbols of a grammar: a hash table that grows. Entry
// point: DigramIndex. Tests: tests/unit/grammar_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vstring {

class DigramIndex {
 public:
  using Place = std::uint32_t;
  static constexpr Place kNone = 0;

  DigramIndex() : slots_(kFirstSize) {}

  /// Where the pair stands; kNone when it is not in the index.
  Place find(std::uint64_t pair) const { return slots_[slot_of(pair)].place; }

  void set(std::uint64_t pair, Place place) {
    Slot& slot = slots_[slot_of(pair)];
    bool is_new = slot.place == kNone;
    slot = {pair, place};
    if (is_new && ++count_ > slots_.size() / 2) grow();
  }

  /// Removes the pair if it is known to stand at this place.
  void remove(std::uint64_t pair, Place place) {
    std::size_t hole = slot_of(pair);
    if (slots_[hole].place != place) return;
    --count_;
    // Entries behind the hole move up when the hole is on their way from home.
    for (std::size_t i = next(hole); slots_[i].place != kNone; i = next(i)) {
      std::size_t home = home_of(slots_[i].pair);
      if (((i - home) & mask()) < ((i - hole) & mask())) continue;
      slots_[hole] = slots_[i];
      hole = i;
    }
    slots_[hole].place = kNone;
  }

 private:
  struct Slot {
    std::uint64_t pair = 0;
    Place place = kNone;
  };
  static constexpr std::size_t kFirstSize = 64;

  std::size_t mask() const { return slots_.size() - 1; }
  std::size_t next(std::size_t i) const { return (i + 1) & mask(); }

  std::size_t home_of(std::uint64_t pair) const {
    std::uint64_t mixed = (pair ^ pair >> 29) * 0x9e3779b97f4a7c15U;
    return static_cast<std::size_t>(mixed >> 32) & mask();
  }

  // The slot that holds the pair, or the empty one where it would go.
  std::size_t slot_of(std::uint64_t pair) const {
    std::size_t i = home_of(pair);
    while (slots_[i].place != kNone && slots_[i].pair != pair) i = next(i);
    return i;
  }

  void grow() {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (slot.place != kNone) slots_[slot_of(slot.pair)] = slot;
    }
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace vstring
