// Which two bytes a match can begin with: rules out most places at which a match could start by its
// first byte alone. Entry point: StartPairs.
#pragma once

#include <array>

#include "vstring/core/byte_set.h"
#include "vstring/regex/prepared.h"

namespace vstring::regex {

class StartPairs {
 public:
  explicit StartPairs(const Prepared& prepared);

  /// Whether a match can begin at `position`, which is before `end`.
  bool may_start(const char* position, const char* end) const {
    unsigned char first = byte_of(*position);
    if (ends_[first]) return true;
    return position + 1 != end && seconds_[first].contains(byte_of(position[1]));
  }

 private:
  void add(const ByteSet& firsts, const ByteSet& seconds, bool may_end);
  void add_behind(const Prepared& prepared, const ByteSet& firsts, std::int32_t next);

  std::array<ByteSet, 256> seconds_;  // by first byte
  std::array<bool, 256> ends_{};      // whether a match may be that one byte long, or is not known
};

}  // namespace vstring::regex
