// How a command fails: it throws a Failure, which run() (entry.h) turns into a host error. Entry
// points: fail, fail_numbered, fail_count.
#pragma once

#include "vstring/kernel_vector.h"

namespace vstring {

using Object = HostObject;

/// What a command raises: the message and the objects that stand for %1, %2 and %3 in it. Trivially
/// copyable, so that it can outlive every frame that owns something.
struct Failure {
  const char* message = nullptr;  // a string literal
  Object objects[3] = {0, 0, 0};
  bool has_numbers = false;  // the message is a printf format of short text for the numbers
  int numbers[2] = {0, 0};
};

inline constexpr const char* kOutOfMemory = "out of memory";

/// Ends the command with an error.
[[noreturn]] void fail(const char* message, Object x1 = 0, Object x2 = 0, Object x3 = 0);

/// Ends the command with a message in which the number stands for %d when the host gets it.
[[noreturn]] void fail_numbered(const char* format, int number);

/// Ends the command with "expecting one argument, but got %d" or "expecting %d arguments, but got
/// %d".
[[noreturn]] void fail_count(int required, int received);

/// Raises the failure in the host. The caller's frame must own nothing.
[[noreturn]] void raise(HostKernelVector* kv, const Failure& failure);

}  // namespace vstring
