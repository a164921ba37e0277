// What must be given back even when the host jumps out of a command. Entry points: Holding,
// recover_from_jump. Tests: tests/faults/faults_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/host/failure.h"

namespace vstring {

/// Holds something until this is destroyed, and leaves a note of it, so that it is released also
/// when the host has jumped out of the command and no destructor ran. Lives only on the stack.
class Holding {
 public:
  /// How it is released: with the two values that the holder was made with.
  using Release = void (*)(void* context, Object object);

  /// Makes sure that the next Holding can be made. To be called before what it is to hold is
  /// acquired. Throws std::bad_alloc.
  static void make_room();

  Holding(Release release, void* context, Object object = 0) noexcept;
  ~Holding();
  Holding(const Holding&) = delete;
  Holding& operator=(const Holding&) = delete;

 private:
  std::size_t place_;  // in the stack of what is held
};

/// How many things are held at the moment, by all commands that are running or were jumped out of.
inline std::size_t num_held = 0;

/// Releases all that commands held that the host jumped out of. To be called at the start of a
/// command when anything is held.
void recover_from_jump();

}  // namespace vstring
