// Replacing tabs by spaces. Entry points: room_for_expanded, write_expanded. Tests:
// docs/commands/layout.md, tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

struct TabSetting {
  std::size_t width = 8;            // at least 1
  std::vector<std::int32_t> stops;  // positive, strictly increasing; without any the width counts
  bool countbytes = false;          // a backspace is one column too
};

/// Bytes that are enough for the expanded text. Throws std::bad_alloc beyond all memory.
std::size_t room_for_expanded(Text text, const TabSetting& setting);
/// Writes the expanded text to a block of so many bytes; gives its length.
std::size_t write_expanded(Text text, const TabSetting& setting, char* out, std::size_t room);

}  // namespace vstring
