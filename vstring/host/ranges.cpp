// Ranges and string indices: GetRange, NormalRange, GetStringIndex. Tests:
// tests/unit/arguments_test.cpp.
#include "vstring/host/ranges.h"

#include <algorithm>
#include <limits>

#include "vstring/arguments.h"
#include "vstring/host/entry.h"
#include "vstring/object.h"

namespace vstring {

void read_range(HostKernelVector* kv, Object range, std::int32_t& lo, std::int32_t& hi) {
  Object lower = host_element(range, 1);
  if (!kv->IsHostInteger32(lower)) fail("lower endpoint of range must be a small integer");
  lo = kv->HostToInteger32(lower);
  Object upper = host_element(range, 2);
  if (!kv->IsHostInteger32(upper)) fail("upper endpoint of range must be a small integer");
  hi = kv->HostToInteger32(upper);
}

std::size_t read_string_index(HostKernelVector* kv, std::size_t length, Object object) {
  if (!kv->IsHostInteger32(object)) {
    fail("expecting an integral (32-bit) string index, but got `%1'", object);
  }
  std::int64_t index = kv->HostToInteger32(object);
  auto limit = static_cast<std::int64_t>(length);
  if (index < 0) {
    index += limit;
    if (index > 0) return static_cast<std::size_t>(index);
  } else if (index <= limit) {
    return static_cast<std::size_t>(index);
  }
  fail("string index `%1' out of range", object);
}

}  // namespace vstring

int GetRange(HostKernelVector* kv, HostObject range, int32_t* lo, int32_t* hi) {
  return vstring::raise_failures(kv, [=] {
    vstring::read_range(kv, range, *lo, *hi);
    using Limits = std::numeric_limits<int>;
    auto count = std::int64_t{*hi} - *lo + 1;
    return static_cast<int>(std::clamp<std::int64_t>(count, Limits::min(), Limits::max()));
  });
}

// A start past the end becomes the length and an end past it the last position: a range that lies
// behind the text is thus empty, not invalid. A start of 0 is invalid.
int NormalRange(int len, int32_t* lo, int32_t* hi) {
  std::int64_t length = len;
  std::int64_t first = *lo < 0 ? length + *lo : (*lo <= length ? std::int64_t{*lo} - 1 : length);
  std::int64_t last = *hi < 0 ? length + *hi : (*hi <= length ? *hi : length) - 1;
  std::int64_t count = last - first + 1;
  if (first < 0 || last < 0 || count < 0) return -1;
  *lo = static_cast<int32_t>(first);
  *hi = static_cast<int32_t>(last);
  return static_cast<int>(count);
}

int GetStringIndex(HostKernelVector* kv, size_t len, HostObject obj) {
  return vstring::raise_failures(
      kv, [=] { return static_cast<int>(vstring::read_string_index(kv, len, obj)); });
}
