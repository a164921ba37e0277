// The arguments that all searches with a bounded number of faults begin with. Entry point:
// read_bounded_query.
#pragma once

#include <algorithm>

#include "vstring/host/args.h"

namespace vstring {

struct BoundedQuery {
  Text pattern;
  Text text;
  std::size_t k;  // at most the pattern's length
};

/// Arguments 1 to 3.
inline BoundedQuery read_bounded_query(const Args& args) {
  Text pattern = args.string(1, "first argument must be a string");
  Text text = args.string(2, "second argument must be a string");
  std::int32_t k = args.integer32(3, "third argument must be a 32-bit integer");
  if (k < 0) fail("third argument must be non-negative");
  return {pattern, text, std::min(static_cast<std::size_t>(k), pattern.size())};
}

}  // namespace vstring
