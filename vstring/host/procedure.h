// A host procedure that a command calls. Entry point: Procedure. Tests:
// tests/transcripts/vexil/callbacks.vt, docs/commands/higher_order.md.
#pragma once

#include "vstring/host/protection.h"

namespace vstring {

/// Calls a procedure, which may do whatever a user may: call commands, the running one too,
/// collect, raise. So no shared buffer may be held across a call, and every object that is neither
/// an argument of the command nor of the call needs a Protection.
class Procedure {
 public:
  Procedure(const Host& host, Object procedure)
      : kv_(host.kernel()), object_(procedure), protection_(host, procedure) {}

  template <class... Arguments>
  Object operator()(Arguments... arguments) const {
    return kv_->HostCallProcedure(object_, static_cast<int>(sizeof...(arguments)), arguments...);
  }

 private:
  HostKernelVector* kv_;
  Object object_;
  Protection protection_;
};

}  // namespace vstring
