// Where one of a few patterns may start, by the first bytes of all of them at once. Entry point:
// StartFilter. Tests: tests/unit/pattern_set_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "vstring/core/text.h"

namespace vstring {

class StartFilter {
 public:
  static constexpr std::size_t kMostBytes = 3;    ///< of a pattern that are looked at
  static constexpr std::size_t kMostStarts = 64;  ///< more of them are found everywhere

  /// A filter that is of no use.
  StartFilter() = default;
  /// `starts`: at least one beginning of each pattern, all equally long, 1 to kMostBytes bytes.
  explicit StartFilter(std::vector<std::string> starts);

  /// Whether next() is fast on this machine.
  bool is_useful() const { return length_ != 0; }
  /// The first offset from `from` on at which a pattern may start; the text's length if none.
  std::size_t next(Text text, std::size_t from) const;

 private:
  bool may_start_at(const char* at) const;

  // The starts are dealt out to eight groups, one a bit. Byte i of a start is in a group's tables
  // if its low and its high half are.
  struct Halves {
    unsigned char low[16];
    unsigned char high[16];
  };
  Halves halves_[kMostBytes] = {};
  std::size_t length_ = 0;
};

}  // namespace vstring
