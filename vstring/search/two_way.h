// Search in linear time and constant space, whatever the pattern: the two-way algorithm of
// Crochemore and Perrin (1991). Entry point: TwoWay. Tests: tests/unit/exact_search_test.cpp.
#pragma once

#include <cstddef>

#include "vstring/core/text.h"

namespace vstring {

class TwoWay {
 public:
  /// Where a search stands: the next offset to look at, and how many bytes there are known to
  /// agree.
  struct Position {
    std::size_t start = 0;
    std::size_t known = 0;
  };

  TwoWay() = default;
  /// `pattern` must not be empty and must outlive the object.
  explicit TwoWay(Text pattern);

  bool is_ready() const { return !pattern_.empty(); }

  /// Offset of the next occurrence that starts before `limit`; Text::npos if none. The text holds
  /// the whole pattern at every offset before `limit`. Moves `at` on, past what it found.
  std::size_t next(Text text, Position& at, std::size_t limit) const;

 private:
  Text pattern_;
  std::size_t cut_ = 0;     // a critical position: right of it first, then left of it
  std::size_t period_ = 0;  // the pattern's period, or a safe shift when the period is long
  bool is_periodic_ = false;
};

}  // namespace vstring
