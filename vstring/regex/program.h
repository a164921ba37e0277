// The format of compiled programs. A node is an opcode, two bytes of offset to the next node (most
// significant byte first; 0: none; backwards for Back), and an operand. Byte 0 of a program is
// VRX_MAGIC, the first node stands at byte 1.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vstring::regex {

/// Opcodes; their values are part of the format.
enum Op : std::uint8_t {
  kEnd = 0,      // success
  kAtStart = 1,  // the text's start
  kAtEnd = 2,    // the text's end
  kAnyChar = 3,  // any byte
  kAnyOf = 4,    // a byte of the NUL-terminated operand
  kAnyBut = 5,   // a byte that is not in the operand
  kBranch = 6,   // an alternative: the operand is a chain, next the following alternative
  kBack = 7,     // next is backwards
  kLiteral = 8,  // the NUL-terminated operand
  kEmpty = 9,    // nothing; where chains join
  kStar = 10,    // the node that is the operand, as often as possible
  kPlus = 11,    // the same, at least once
  kOpen = 20,    // kOpen + n: start of sub-expression n = 1..9
  kClose = 30,   // kClose + n: its end
};

constexpr std::size_t kNodeHeader = 3;
constexpr std::size_t kFirstNode = 1;
constexpr int kMaxGroups = 9;

inline bool is_open(int op) { return op > kOpen && op <= kOpen + kMaxGroups; }
inline bool is_close(int op) { return op > kClose && op <= kClose + kMaxGroups; }

}  // namespace vstring::regex
