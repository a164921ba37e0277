// Who is gone from the machine's stack when a host jumps out of commands. Entry point: this_frame.
#pragma once

#include <cstdint>

namespace vstring {

/// Where the calling function is on the machine's stack, which grows downwards. A command that is
/// still running called whoever starts another one, so its frame lies above that one's; what lies
/// below is gone.
[[gnu::always_inline]] inline std::uintptr_t this_frame() {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

}  // namespace vstring
