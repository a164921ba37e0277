// Character filters, for callers inside the library. Entry point: read_filter.
#pragma once

#include "vstring/charclass.h"
#include "vstring/host/failure.h"

namespace vstring {

/// What the exported GetFilter (vstring/arguments.h) gives; throws what it raises.
CharClassTest read_filter(HostKernelVector* kv, Object object);

}  // namespace vstring
