// Counting fields.
#include "vstring/layout/fields.h"

namespace vstring {

std::size_t Splitter::count_fields(Text text) const {
  if (quote == kNoQuote) return count_members(text, separators) + 1;
  std::size_t count = 1;
  each_separator(text, [&count](std::size_t) { ++count; });
  return count;
}

}  // namespace vstring
