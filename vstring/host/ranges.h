// Ranges and string indices, for callers inside the library: they throw what the exported GetRange
// and GetStringIndex (vstring/arguments.h) raise. Entry points: read_range, read_string_index.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/host/failure.h"

namespace vstring {

/// The endpoints of a range object, the lower one first.
void read_range(HostKernelVector* kv, Object range, std::int32_t& lo, std::int32_t& hi);

/// A 1-based index, negative from the end, into a text of `length` bytes: 0 .. length.
std::size_t read_string_index(HostKernelVector* kv, std::size_t length, Object object);

}  // namespace vstring
