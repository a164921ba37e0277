// From which positions of a text the instructions of a program lead to a match. Entry point:
// Outlook.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vstring/regex/prepared.h"

namespace vstring::regex {

/// Goes over a text from its end to its start, with memory in proportion to the program alone. `^`
/// is taken to match nowhere.
class Outlook {
 public:
  explicit Outlook(const Prepared& prepared);

  /// Begins at the end of the text.
  void start_at_end() { step('\0', true); }
  /// Goes on to the position before, where the byte `c` stands.
  void step_back(unsigned char c) { step(c, false); }
  /// Whether matching from instruction i at this position succeeds.
  bool succeeds(std::int32_t i) const { return now_[static_cast<std::size_t>(i)] != 0; }

 private:
  using Truths = std::vector<std::uint8_t>;
  bool succeeds_behind(std::int32_t i) const { return behind_[static_cast<std::size_t>(i)] != 0; }
  void step(unsigned char c, bool is_at_end);
  bool find(const Instruction& instruction, std::int32_t i, unsigned char c, bool is_at_end);
  bool find_literal(const Instruction& instruction, std::uint8_t* parts, unsigned char c);

  const Prepared& prepared_;
  std::vector<std::int32_t> order_;      // those that follow without a byte come before
  std::vector<std::int32_t> pluses_;     // the Repeats that need a byte
  std::vector<std::size_t> first_part_;  // by instruction: its first one of the parts
  Truths now_;                           // by instruction
  Truths behind_;                        // the same one position further on
  Truths parts_;  // of a Literal: from each offset on; of a Repeat: with its minimum met
};

}  // namespace vstring::regex
