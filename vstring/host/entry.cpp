// run: what every entry point of the library does. Tests: all transcripts; tests/faults.
#include "vstring/host/entry.h"

#include "vstring/host/holding.h"

namespace vstring {

Object run(HostKernelVector* kv, HostObject arguments, int required, Body body) {
  if (num_held != 0) recover_from_jump();
  return raise_failures(kv, [=] {
    Args args(kv, arguments);
    if (args.count() < required) fail_count(required, args.count());
    Host host(kv);
    return body(args, host);
  });
}

}  // namespace vstring
