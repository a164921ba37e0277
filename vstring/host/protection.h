// Keeping an object across calls of host procedures, at which the host may collect. Entry point:
// Protection.
#pragma once

#include "vstring/host/host.h"

namespace vstring {

/// Protects an object from the host's collector for as long as the object lives.
class Protection {
 public:
  Protection(const Host& host, Object object) : kv_(host.kernel()), object_(object) {
    kv_->HostGcProtect(object_);
  }
  ~Protection() { kv_->HostGcAllow(object_); }
  Protection(const Protection&) = delete;
  Protection& operator=(const Protection&) = delete;

 private:
  HostKernelVector* kv_;
  Object object_;
};

}  // namespace vstring
