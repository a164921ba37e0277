// run: what every entry point of the library does. Tests: all transcripts; tests/faults.
#include "vstring/host/entry.h"

#include "vstring/host/protection.h"

namespace vstring {

Object run(HostKernelVector* kv, HostObject arguments, int required, Body body) {
  take_back_lent_nul();
  if (buffer_frame != 0) take_back_abandoned_buffer();
  if (num_protected != 0) release_abandoned_protections();
  return raise_failures(kv, [=] {
    Args args(kv, arguments);
    if (args.count() < required) fail_count(required, args.count());
    Host host(kv);
    return body(args, host);
  });
}

}  // namespace vstring
