// The one boundary between the host and the command bodies. Entry points: run, raise_failures.
#pragma once

#include <new>
#include <optional>
#include <stdexcept>

#include "vstring/host/args.h"
#include "vstring/host/failure.h"
#include "vstring/host/host.h"

namespace vstring {

using Body = Object (*)(Args& args, Host& host);

/// Runs a command: checks the count of its arguments (none needed when `required` is 0), calls the
/// body, and raises what the body throws.
Object run(HostKernelVector* kv, HostObject arguments, int required, Body body);

/// Calls `work` and gives its value, or leaves what it threw in `failure` and gives nothing.
template <class Work>
auto attempt(Failure& failure, Work work) -> std::optional<decltype(work())> {
  try {
    return work();
  } catch (const Failure& thrown) {
    failure = thrown;
  } catch (const std::bad_alloc&) {
    failure = Failure{kOutOfMemory};
  } catch (const std::length_error&) {  // a container asked for more than it can count
    failure = Failure{kOutOfMemory};
  }
  return std::nullopt;
}

/// For exported helpers that raise: `work`'s value, or its failure raised in the host once
/// everything it held has been released.
template <class Work>
auto raise_failures(HostKernelVector* kv, Work work) {
  Failure failure;
  if (auto value = attempt(failure, work)) return *value;
  raise(kv, failure);
}

}  // namespace vstring
