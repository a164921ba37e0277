// Allocations that fail on demand. Entry points: refuse_each, RefusedAllocation, Counting.
//
// Works in programs linked with --wrap for malloc, calloc, realloc and free (see CMakeLists.txt);
// operator new and delete are replaced and go the same way. What shared libraries allocate for
// themselves is neither counted nor refused. One thread.
#pragma once

#include <cstddef>

namespace faults {

/// While it lives, the n-th allocation (1, 2, ...) is refused and all others are made.
class RefusedAllocation {
 public:
  explicit RefusedAllocation(std::size_t n);
  ~RefusedAllocation();
  RefusedAllocation(const RefusedAllocation&) = delete;
  RefusedAllocation& operator=(const RefusedAllocation&) = delete;

  /// Whether there was an n-th allocation.
  bool was_refused() const;
  /// Blocks allocated since the beginning and not released; negative when older ones were.
  long num_left() const;
};

/// Whether allocations are counted and refused while it lives: they are not where something is not
/// under test.
class Counting {
 public:
  explicit Counting(bool is_on);
  ~Counting();
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;
  /// For what leaves by a jump, past the destructors.
  static void stop();

 private:
  bool was_on_;
};

/// What refuse_each saw.
struct Refusals {
  std::size_t num_refused = 0;
  std::size_t first_leak = 0;  // which refused allocation left blocks behind; 0: none did
};

/// Calls work() with the first allocation refused, then with the second one, and so on until it
/// gets all it asks for; work() has to release what it was given.
template <class Work>
Refusals refuse_each(Work work) {
  Refusals seen;
  for (std::size_t n = 1;; ++n) {
    RefusedAllocation refused(n);
    work();
    if (refused.num_left() != 0 && seen.first_leak == 0) seen.first_leak = n;
    if (!refused.was_refused()) return seen;
    seen.num_refused = n;
  }
}

}  // namespace faults
