// Failures on their way to the host. Tests: every transcript that expects an error.
#include "vstring/host/failure.h"

#include <cstdio>

namespace vstring {

void fail(const char* message, Object x1, Object x2, Object x3) {
  throw Failure{message, {x1, x2, x3}};
}

void fail_count(int required, int received) {
  throw Failure{nullptr, {}, true, required, received};
}

void raise(HostKernelVector* kv, const Failure& failure) {
  char counts[64];
  if (failure.is_count && failure.required == 1) {
    std::snprintf(counts, sizeof counts, "expecting one argument, but got %d", failure.received);
  } else if (failure.is_count) {
    std::snprintf(counts, sizeof counts, "expecting %d arguments, but got %d", failure.required,
                  failure.received);
  }
  kv->HostRaiseError(failure.is_count ? counts : failure.message, failure.objects[0],
                     failure.objects[1], failure.objects[2]);
  __builtin_unreachable();
}

}  // namespace vstring
