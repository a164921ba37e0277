// The bound on recursion; see depth.h.
#include "vexil/language/depth.h"

#include <sys/resource.h>

#include <algorithm>

#include "vexil/values/values.h"

namespace vexil {

std::uintptr_t stack_floor = 0;

namespace {

// Half of the stack is left to the commands, which may be called at any depth.
std::uintptr_t usable_stack() {
  constexpr rlim_t usual = 8U << 20;
  constexpr rlim_t most = 64U << 20;
  rlimit limit{};
  if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return usual / 2;
  return static_cast<std::uintptr_t>(std::min(limit.rlim_cur, most) / 2);
}

}  // namespace

void handle_deep_stack(std::uintptr_t address) {
  if (stack_floor == 0) {
    const std::uintptr_t usable = usable_stack();
    stack_floor = address > usable ? address - usable : 1;
    return;
  }
  raise_error("nested too deeply");
}

}  // namespace vexil
