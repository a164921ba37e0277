// Keeping objects across calls of host procedures, at which the host may collect. Entry point:
// Protection. Tests: tests/transcripts/vexil/callbacks.vt.
#pragma once

#include <cstddef>

#include "vstring/host/host.h"

namespace vstring {

/// Protects an object from the host's collector for as long as this lives, which is on the stack
/// alone. Throws std::bad_alloc.
class Protection {
 public:
  Protection(const Host& host, Object object);
  ~Protection();
  Protection(const Protection&) = delete;
  Protection& operator=(const Protection&) = delete;

 private:
  std::size_t place_;  // in the stack of what is protected
};

/// How many objects are protected at the moment.
inline std::size_t num_protected = 0;

/// Releases what commands protected that the host jumped out of. To be called at the start of a
/// command when anything is protected.
void release_abandoned_protections();

}  // namespace vstring
