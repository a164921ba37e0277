// The pairs of bytes that matches begin with. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/start_pairs.h"

#include <bit>
#include <cstdint>
#include <vector>

namespace vstring::regex {

// Walks from the start to every instruction that takes the first byte, and notes what may follow.
StartPairs::StartPairs(const Prepared& prepared) {
  std::vector<bool> is_seen(static_cast<std::size_t>(prepared.size()), false);
  std::vector<std::int32_t> pending{prepared.start()};
  while (!pending.empty()) {
    std::int32_t i = pending.back();
    pending.pop_back();
    if (is_seen[static_cast<std::size_t>(i)]) continue;
    is_seen[static_cast<std::size_t>(i)] = true;
    const Instruction& instruction = prepared[i];
    switch (instruction.what) {
      case Do::Literal: {
        ByteSet first(instruction.literal.substr(0, 1));
        if (instruction.literal.size() > 1) {
          add(first, ByteSet(instruction.literal.substr(1, 1)), false);
        } else {
          add_behind(prepared, first, instruction.next);
        }
        break;
      }
      case Do::Byte:
        add_behind(prepared, prepared.set(instruction.set), instruction.next);
        break;
      case Do::Repeat:
        add(prepared.set(instruction.set), prepared.set(instruction.set), false);
        add_behind(prepared, prepared.set(instruction.set), instruction.next);
        if (instruction.minimum == 0) pending.push_back(instruction.next);
        break;
      case Do::Choose:
        pending.push_back(instruction.other);
        pending.push_back(instruction.next);
        break;
      case Do::AtStart:
      case Do::Open:
      case Do::Close:
        pending.push_back(instruction.next);
        break;
      case Do::Succeed:
      case Do::AtEnd:
      case Do::Broken:
        break;  // these take no byte; a pattern that can match without one is searched everywhere
    }
  }
}

void StartPairs::add(const ByteSet& firsts, const ByteSet& seconds, bool may_end) {
  for (std::size_t w = 0; w < 4; ++w) {
    for (std::uint64_t rest = firsts.words()[w]; rest != 0; rest &= rest - 1) {
      std::size_t c = w * 64 + static_cast<std::size_t>(std::countr_zero(rest));
      seconds_[c].add_all(seconds);
      ends_[c] = ends_[c] || may_end;
    }
  }
}

void StartPairs::add_behind(const Prepared& prepared, const ByteSet& firsts, std::int32_t next) {
  add(firsts, prepared.first_bytes(next), prepared.can_be_empty(next));
}

}  // namespace vstring::regex
