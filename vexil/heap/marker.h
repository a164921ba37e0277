// What can be reached: a bit for each possible place of an object, beside the objects. Marking
// keeps its own stack, so nesting of any depth is followed. Entry point: Marker. Tests:
// tests/unit/heap_test.cpp.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "vexil/heap/arena.h"
#include "vexil/heap/error.h"

namespace vexil {

class Marker {
 public:
  explicit Marker(const Arena& arena);

  /// Keeps an object and all that it refers to; what is no address in the heap is passed over.
  /// Throws std::bad_alloc.
  void mark(Object object);
  bool is_marked(Arena::Address address) const {
    const std::size_t bit = bit_of(address);
    return (bits_[bit / 64] >> (bit % 64) & 1) != 0;
  }
  /// Whether anything is marked in a stretch of memory (a multiple of 512 bytes).
  bool has_marks(Arena::Address address, std::size_t bytes) const;
  /// Forgets the marks of a stretch of memory (multiples of 512 bytes), or of one object.
  void clear(Arena::Address address, std::size_t bytes);
  void clear_one(Arena::Address address);
  /// Forgets all marks, after marking has failed.
  void clear_all();

 private:
  struct Free {
    void operator()(std::uint64_t* block) const { std::free(block); }
  };
  std::size_t bit_of(Arena::Address address) const { return (address - base_) / 8; }
  void reach(Object object);

  Arena::Address base_;
  std::size_t size_;
  std::unique_ptr<std::uint64_t[], Free> bits_;
  std::vector<Object> pending_;  // marked, its references not yet followed
};

}  // namespace vexil
