// Args: the readers that need the range and index helpers. Tests: transcripts of the commands.
#include "vstring/host/args.h"

#include "vstring/arguments.h"
#include "vstring/host/ranges.h"

namespace vstring {

Span Args::span(int i, std::size_t length, const char* message) const {
  if (!is_range(i)) fail(message);
  Span span{};
  read_range(kv_, (*this)[i], span.first, span.last);
  span.count = NormalRange(static_cast<int>(length), &span.first, &span.last);
  if (span.count < 0) fail("invalid range");
  return span;
}

std::size_t Args::index(int i, std::size_t length) const {
  return read_string_index(kv_, length, (*this)[i]);
}

}  // namespace vstring
