// Keeping objects across calls of host procedures, at which the host may collect. Entry point:
// Protection. Tests: tests/transcripts/vexil/callbacks.vt.
#pragma once

#include "vstring/host/holding.h"
#include "vstring/host/host.h"

namespace vstring {

/// Protects an object from the host's collector for as long as this lives, which is only on the
/// stack. Throws std::bad_alloc.
class Protection {
 public:
  Protection(const Host& host, Object object)
      : holding_(allow, protect(host.kernel(), object), object) {}

 private:
  static HostKernelVector* protect(HostKernelVector* kv, Object object) {
    Holding::make_room();
    kv->HostGcProtect(object);
    return kv;
  }
  static void allow(void* kv, Object object) {
    static_cast<HostKernelVector*>(kv)->HostGcAllow(object);
  }

  Holding holding_;
};

}  // namespace vstring
