// Patterns to nodes. Entry point: parse. The nodes stand in the order of the program that
// compile.cpp writes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/regex/errors.h"
#include "vstring/regex/program.h"

namespace vstring::regex {

/// A node whose next node is `next` nodes further on (0: none yet, negative: backwards), so that
/// nodes can be put in front of a finished piece without touching its links.
struct Node {
  std::uint8_t op = kEnd;
  std::int32_t next = 0;
  std::string operand;    // of kAnyOf, kAnyBut, kLiteral
  std::size_t place = 0;  // in the program, once that is written
};

struct ParsedPattern {
  Error error = Error::None;  // the first one from the left
  std::vector<Node> nodes;    // empty when the program would be too big or on an error
  std::size_t size = 0;       // bytes of the program, magic byte included
  bool starts_with_repetition = false;
};

ParsedPattern parse(Text pattern);

}  // namespace vstring::regex
