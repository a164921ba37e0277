// Replacing all occurrences of a pattern. Entry point: Substitution. Tests:
// tests/unit/exact_search_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

/// A text in which every occurrence of a pattern gives way to a replacement; of overlapping
/// occurrences the leftmost. The result is measured first, then written.
///
/// The result has the room that *all* occurrences call for, overlapping ones included. Where these
/// make it too small, it ends at the first byte between two occurrences that finds no room:
/// replacements find it always. Users rely on the results as they are.
class Substitution {
 public:
  /// Neither text nor pattern may be empty; all three must outlive the object.
  Substitution(Text text, Text pattern, Text replacement);

  bool is_idle() const { return !occurs_; }  ///< whether the pattern does not occur
  std::size_t length() const { return length_; }
  /// Writes the length() bytes of the result.
  void write(char* out) const;

 private:
  void cut(std::int64_t room);

  Text text_;
  Text replacement_;
  std::size_t pattern_length_;
  bool occurs_ = false;                 // also when the result ends before the first replacement
  std::vector<std::uint32_t> offsets_;  // where a replacement stands
  std::size_t length_ = 0;
};

}  // namespace vstring
