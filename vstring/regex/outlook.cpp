// Where a program leads to a match, found from the end of the text. Tests:
// tests/unit/regex_test.cpp.
#include "vstring/regex/outlook.h"

#include <numeric>
#include <utility>

namespace vstring::regex {
namespace {

bool is_plus(const Instruction& instruction) {
  return instruction.what == Do::Repeat && instruction.minimum > 0;
}

// All instructions, each after those that it may lead to without taking a byte; as every loop takes
// a byte, there is such an order. Depth first, by a stack of what is still to be met.
std::vector<std::int32_t> in_order(const Prepared& prepared) {
  enum class Mark : std::uint8_t { Unmet, Met, Placed };
  std::vector<Mark> marks(static_cast<std::size_t>(prepared.size()), Mark::Unmet);
  std::vector<std::int32_t> pending(marks.size());
  std::iota(pending.begin(), pending.end(), 0);
  std::vector<std::int32_t> order;
  while (!pending.empty()) {
    std::int32_t i = pending.back();
    Mark& mark = marks[static_cast<std::size_t>(i)];
    if (mark != Mark::Unmet) {
      pending.pop_back();
      if (mark == Mark::Met) order.push_back(i);
      mark = Mark::Placed;
      continue;
    }
    mark = Mark::Met;
    const Instruction& instruction = prepared[i];
    bool takes_byte = instruction.what == Do::Byte || is_plus(instruction) ||
                      (instruction.what == Do::Literal && !instruction.literal.empty());
    if (takes_byte) continue;
    for (std::int32_t next : {instruction.next, instruction.other}) {
      if (next == kNone || marks[static_cast<std::size_t>(next)] != Mark::Unmet) continue;
      pending.push_back(next);
    }
  }
  return order;
}

}  // namespace

Outlook::Outlook(const Prepared& prepared) : prepared_(prepared), order_(in_order(prepared)) {
  std::size_t num_parts = 0;
  for (std::int32_t i = 0; i < prepared.size(); ++i) {
    first_part_.push_back(num_parts);
    num_parts += prepared[i].what == Do::Repeat ? 1 : prepared[i].literal.size();
    if (is_plus(prepared[i])) pluses_.push_back(i);
  }
  now_.resize(order_.size(), 0);
  behind_.resize(order_.size(), 0);
  parts_.resize(num_parts, 0);
}

void Outlook::step(unsigned char c, bool is_at_end) {
  std::swap(now_, behind_);
  for (std::int32_t i : order_) {
    now_[static_cast<std::size_t>(i)] = find(prepared_[i], i, c, is_at_end) ? 1 : 0;
  }
  // What follows such a Repeat may come after it in the order, for it may lead back to it.
  for (std::int32_t i : pluses_) {
    bool is_met = succeeds(i) || succeeds(prepared_[i].next);
    parts_[first_part_[static_cast<std::size_t>(i)]] = is_met ? 1 : 0;
  }
}

bool Outlook::find(const Instruction& instruction, std::int32_t i, unsigned char c,
                   bool is_at_end) {
  std::size_t first_part = first_part_[static_cast<std::size_t>(i)];
  switch (instruction.what) {
    case Do::Succeed:
      return true;
    case Do::AtEnd:
      return is_at_end && succeeds(instruction.next);
    case Do::Byte:
      return prepared_.set(instruction.set).contains(c) && succeeds_behind(instruction.next);
    case Do::Literal:
      return find_literal(instruction, &parts_[first_part], c);
    case Do::Choose:
      return succeeds(instruction.next) || succeeds(instruction.other);
    case Do::Repeat: {
      std::uint8_t& once_met = parts_[first_part];
      bool goes_on = prepared_.set(instruction.set).contains(c) && once_met != 0;
      if (instruction.minimum > 0) return goes_on;
      once_met = goes_on || succeeds(instruction.next) ? 1 : 0;
      return once_met != 0;
    }
    case Do::Open:
    case Do::Close:
      return succeeds(instruction.next);
    case Do::AtStart:
    case Do::Broken:
      break;
  }
  return false;
}

// From its first byte on; the parts behind it are those of the position behind.
bool Outlook::find_literal(const Instruction& instruction, std::uint8_t* parts, unsigned char c) {
  Text literal = instruction.literal;
  if (literal.empty()) return succeeds(instruction.next);
  std::size_t last = literal.size() - 1;
  for (std::size_t k = 0; k < last; ++k) {
    parts[k] = byte_of(literal[k]) == c && parts[k + 1] != 0 ? 1 : 0;
  }
  parts[last] = byte_of(literal[last]) == c && succeeds_behind(instruction.next) ? 1 : 0;
  return parts[0] != 0;
}

}  // namespace vstring::regex
