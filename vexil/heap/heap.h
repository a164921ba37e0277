// The object heap: one arena below 4 GiB, so that a reference is 32 bits; non-moving mark and
// sweep. Entry points: Heap, Roots. Tests: tests/unit/heap_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "vexil/heap/error.h"
#include "vexil/heap/types.h"

namespace vexil {

/// Collection happens at safe points only: collect() and safe_point() are called between statements
/// and at the entry of a callback. Between two safe points no object disappears, so code that
/// allocates needs no care; what lives across a safe point must be reachable from a root.
class Heap {
 public:
  /// Reserves address space for `limit` bytes of objects; throws std::runtime_error when there is
  /// none.
  explicit Heap(std::size_t limit);
  ~Heap();
  Heap(const Heap&) = delete;
  Heap& operator=(const Heap&) = delete;

  /// A zeroed object of this type id and length in words (header included). Throws HostError("out
  /// of memory") when the heap is full or the length is beyond what a header can say.
  Object allocate(int type, std::size_t words);
  /// The same for an object whose text the caller writes at once: only the words before the text
  /// and the last one are zeroed.
  Object allocate_text(int type, std::size_t words);

  /// Registers a function that visits roots: it calls `mark` for each object to keep.
  using Mark = std::function<void(Object)>;
  void add_roots(std::function<void(const Mark&)> visit);

  /// Collects now; keeps everything when there is no memory to find out what can be reached.
  void collect();
  /// Collects when enough has been allocated since the last time, when handles were made and the
  /// process has grown much, or always under gc_stress.
  void safe_point();
  void set_gc_stress(bool on);

  /// Called, and must not throw, for each object of this type that is collected, and for those
  /// alive when the heap goes. Only handles have one: kTypeForeign and kTypeProgram.
  void set_finalizer(int type, std::function<void(Object)> finalize);
  /// Finalizes all handles that are left; the destructor does the same.
  void finalize_all();

  /// Keeps an object from being collected; calls nest.
  void protect(Object object);
  void release(Object object);

  std::size_t bytes_in_use() const;
  /// Whether a reference can be followed: an immediate, or an address inside the heap.
  bool contains(Object object) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vexil
