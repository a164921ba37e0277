// Failures on their way to the host. Tests: every transcript that expects an error.
#include "vstring/host/failure.h"

#include <cstdio>

namespace vstring {

void fail(const char* message, Object x1, Object x2, Object x3) {
  throw Failure{message, {x1, x2, x3}};
}

void fail_numbered(const char* format, int number) { throw Failure{format, {}, true, {number}}; }

void fail_count(int required, int received) {
  if (required == 1) fail_numbered("expecting one argument, but got %d", received);
  throw Failure{"expecting %d arguments, but got %d", {}, true, {required, received}};
}

void raise(HostKernelVector* kv, const Failure& failure) {
  char text[64];
  const char* message = failure.message;
  if (failure.has_numbers) {
    std::snprintf(text, sizeof text, message, failure.numbers[0], failure.numbers[1]);
    message = text;
  }
  kv->HostRaiseError(message, failure.objects[0], failure.objects[1], failure.objects[2]);
  __builtin_unreachable();
}

}  // namespace vstring
