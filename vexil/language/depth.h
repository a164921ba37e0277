// A bound on recursion, measured in the stack that is really used: nothing nested overflows it, in
// any build and under any limit. Entry point: check_depth. Tests:
// tests/transcripts/vexil/limits.vt.
#pragma once

#include <cstdint>

namespace vexil {

/// The lowest stack address that recursion may reach; 0 until it is known.
extern std::uintptr_t stack_floor;
/// Raises "nested too deeply" unless it was only the floor that was not known yet.
void handle_deep_stack(std::uintptr_t address);

/// To be called at the entry of every function that recurses over what a user wrote.
inline void check_depth() {
  const auto address = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  if (address < stack_floor || stack_floor == 0) handle_deep_stack(address);
}

}  // namespace vexil
