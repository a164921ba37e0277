// A program made ready for matching: nodes as records with byte sets, known first bytes, and
// numbered choices. Entry point: Prepared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vstring/core/byte_set.h"
#include "vstring/core/text.h"
#include "vstring/regex.h"
#include "vstring/regex/program.h"

namespace vstring::regex {

constexpr std::int32_t kNone = -1;

/// How many bytes there are between two places of a text.
inline std::size_t distance(const char* from, const char* to) {
  return static_cast<std::size_t>(to - from);
}

/// What an instruction does; the nodes of a program with the ones that do nothing left out.
enum class Do : std::uint8_t {
  Succeed,
  AtStart,
  AtEnd,
  Byte,     // one byte of `set`
  Literal,  // `literal`
  Choose,   // `next`, or else `other`
  Repeat,   // bytes of `set`, as many as possible, `minimum` at least, then `next`
  Open,     // start of sub-expression `group`
  Close,    // its end
  Broken,   // a node that no compiler writes: records `error` and fails
};

struct Instruction {
  Do what = Do::Broken;
  std::uint8_t group = 0;
  std::uint8_t minimum = 0;
  bool is_any = false;  // whether a Repeat takes every byte
  std::uint8_t error = 0;
  std::int32_t next = kNone;
  std::int32_t other = kNone;
  std::int32_t choice = kNone;  // number of a Choose or Repeat, to note where it has failed
  std::int32_t set = kNone;     // index into Prepared::sets
  Text literal;                 // in the record's program
  ByteSet first_bytes;          // see Prepared
  bool can_be_empty = false;
};

class Prepared {
 public:
  /// Decodes the record's program, to which literals keep pointing. The record must begin with the
  /// magic byte.
  explicit Prepared(const RegexpRecord& record);

  const RegexpRecord& record() const { return *record_; }
  const Instruction& operator[](std::int32_t i) const {
    return instructions_[static_cast<std::size_t>(i)];
  }
  std::int32_t size() const { return static_cast<std::int32_t>(instructions_.size()); }
  const ByteSet& set(std::int32_t i) const { return sets_[static_cast<std::size_t>(i)]; }
  /// The bytes that can come first when matching starts at instruction i.
  const ByteSet& first_bytes(std::int32_t i) const { return (*this)[i].first_bytes; }
  /// Whether a match from instruction i may need no further byte.
  bool can_be_empty(std::int32_t i) const { return (*this)[i].can_be_empty; }
  std::int32_t start() const { return start_; }
  std::int32_t num_choices() const { return num_choices_; }
  bool has_at_start() const { return has_at_start_; }
  /// The Repeat with which every match begins, kNone when there is none.
  std::int32_t leading_repeat() const { return leading_repeat_; }
  /// The literal that is the whole pattern; empty when the pattern is anything else.
  Text whole_literal() const { return whole_literal_; }

 private:
  class Decoder;
  void find_firsts();
  bool find_first(Instruction& instruction);

  const RegexpRecord* record_;
  std::vector<Instruction> instructions_;
  std::vector<ByteSet> sets_;
  std::int32_t start_ = kNone;
  std::int32_t leading_repeat_ = kNone;
  std::int32_t num_choices_ = 0;
  bool has_at_start_ = false;
  Text whole_literal_;
};

}  // namespace vstring::regex
