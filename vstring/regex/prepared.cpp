// Programs decoded for matching. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/prepared.h"

#include <cstring>

#include "vstring/regex/errors.h"

namespace vstring::regex {
namespace {

constexpr std::int32_t kNoNode = 0;

ByteSet all_bytes() {
  ByteSet set;
  for (int c = 1; c < 256; ++c) set.add(static_cast<unsigned char>(c));
  return set;
}

ByteSet all_but(const ByteSet& excluded) {
  ByteSet set;
  for (int c = 1; c < 256; ++c) {
    auto byte = static_cast<unsigned char>(c);
    if (!excluded.contains(byte)) set.add(byte);
  }
  return set;
}

}  // namespace

// Walks the nodes from the start of the program. Every node that is reached becomes an instruction
// once; nodes that only lead on are skipped.
class Prepared::Decoder {
 public:
  explicit Decoder(Prepared& prepared) : prepared_(prepared), program_(prepared.record_->program) {}

  void run() {
    prepared_.start_ = instruction_at(kFirstNode);
    while (!pending_.empty()) {
      std::int32_t offset = pending_.back();
      pending_.pop_back();
      Instruction decoded = decode(offset);
      prepared_.instructions_[static_cast<std::size_t>(known(offset))] = decoded;
    }
  }

 private:
  int op(std::int32_t offset) const { return program_[offset]; }

  // Offset of the next node, kNoNode when there is none.
  std::int32_t next(std::int32_t offset) const {
    std::int32_t distance = program_[offset + 1] << 8 | program_[offset + 2];
    if (distance == 0) return kNoNode;
    return op(offset) == kBack ? offset - distance : offset + distance;
  }

  bool is_choice(std::int32_t offset) const {
    std::int32_t following = next(offset);
    return op(offset) == kBranch && following != kNoNode && op(following) == kBranch;
  }

  // The node that does something, from this one on.
  std::int32_t skip(std::int32_t offset) const {
    for (int steps = 0; offset > kNoNode && steps < VRX_MAX_PROGRAM; ++steps) {
      if (op(offset) == kEmpty || op(offset) == kBack) {
        offset = next(offset);
      } else if (op(offset) == kBranch && !is_choice(offset)) {
        offset += static_cast<std::int32_t>(kNodeHeader);
      } else {
        return offset;
      }
    }
    return kNoNode;
  }

  std::int32_t& known(std::int32_t offset) {
    auto index = static_cast<std::size_t>(offset);
    if (index >= known_.size()) known_.resize(index + 1, kNone);
    return known_[index];
  }

  std::int32_t instruction_at(std::int32_t offset) {
    offset = skip(offset);
    if (known(offset) != kNone) return known(offset);
    known(offset) = static_cast<std::int32_t>(prepared_.instructions_.size());
    prepared_.instructions_.emplace_back();
    pending_.push_back(offset);
    return known(offset);
  }

  std::int32_t add_set(const ByteSet& set) {
    prepared_.sets_.push_back(set);
    return static_cast<std::int32_t>(prepared_.sets_.size()) - 1;
  }

  Text operand(std::int32_t offset) const {
    return reinterpret_cast<const char*>(program_ + offset + kNodeHeader);
  }

  static Instruction broken(Error error) {
    Instruction result;
    result.error = static_cast<std::uint8_t>(error);
    return result;
  }

  Instruction decode(std::int32_t offset);
  Instruction decode_repeat(std::int32_t offset);
  // The bytes of a node that matches one; false for any other node.
  bool byte_set(std::int32_t offset, ByteSet& set) const;

  Prepared& prepared_;
  const unsigned char* program_;
  std::vector<std::int32_t> known_;
  std::vector<std::int32_t> pending_;
};

bool Prepared::Decoder::byte_set(std::int32_t offset, ByteSet& set) const {
  switch (op(offset)) {
    case kAnyChar:
      set = all_bytes();
      return true;
    case kAnyOf:
      set = ByteSet(operand(offset));
      return true;
    case kAnyBut:
      set = all_but(ByteSet(operand(offset)));
      return true;
    default:
      return false;
  }
}

Instruction Prepared::Decoder::decode(std::int32_t offset) {
  if (offset == kNoNode) return broken(Error::CorruptedPointers);
  int code = op(offset);
  Instruction result;
  ByteSet set;
  if (code == kEnd) {
    result.what = Do::Succeed;
    return result;
  }
  if (code == kStar || code == kPlus) return decode_repeat(offset);
  if (code == kBranch) {
    result.what = Do::Choose;
    result.choice = prepared_.num_choices_++;
    result.next = instruction_at(offset + static_cast<std::int32_t>(kNodeHeader));
    result.other = instruction_at(next(offset));
    return result;
  }
  if (code == kAtStart) {
    result.what = Do::AtStart;
    prepared_.has_at_start_ = true;
  } else if (code == kAtEnd) {
    result.what = Do::AtEnd;
  } else if (byte_set(offset, set)) {
    result.what = Do::Byte;
    result.set = add_set(set);
  } else if (code == kLiteral) {
    result.what = Do::Literal;
    result.literal = operand(offset);
  } else if (is_open(code) || is_close(code)) {
    result.what = is_open(code) ? Do::Open : Do::Close;
    result.group = static_cast<std::uint8_t>(code - (is_open(code) ? kOpen : kClose));
  } else {
    return broken(Error::MemoryCorruption);
  }
  result.next = instruction_at(next(offset));
  return result;
}

Instruction Prepared::Decoder::decode_repeat(std::int32_t offset) {
  Instruction result;
  result.what = Do::Repeat;
  result.minimum = op(offset) == kPlus ? 1 : 0;
  result.choice = prepared_.num_choices_++;
  std::int32_t repeated = offset + static_cast<std::int32_t>(kNodeHeader);
  ByteSet set;
  if (op(repeated) == kLiteral) {
    set = ByteSet(operand(repeated).substr(0, 1));
  } else if (!byte_set(repeated, set)) {
    result.error = static_cast<std::uint8_t>(Error::InternalFoulup);
  }
  result.is_any = op(repeated) == kAnyChar;
  result.set = add_set(set);
  result.next = instruction_at(next(offset));
  return result;
}

Prepared::Prepared(const RegexpRecord& record) : record_(&record) {
  Decoder(*this).run();
  find_first_bytes();
  const Instruction& first = (*this)[start_];
  if (first.what == Do::Literal && (*this)[first.next].what == Do::Succeed) {
    whole_literal_ = first.literal;
  }
  std::int32_t i = start_;
  while ((*this)[i].what == Do::Open) i = (*this)[i].next;
  if ((*this)[i].what == Do::Repeat) leading_repeat_ = i;
}

// The least sets that agree with one another, found by going over the instructions until nothing
// changes. Mostly an instruction leads to later ones, so going backwards needs few rounds.
void Prepared::find_first_bytes() {
  first_bytes_.resize(instructions_.size());
  can_be_empty_.resize(instructions_.size(), false);
  for (bool has_changed = true; has_changed;) {
    has_changed = false;
    for (std::size_t i = instructions_.size(); i-- > 0;) {
      const Instruction& instruction = instructions_[i];
      ByteSet first;
      bool leads_on = false;
      bool is_empty = false;
      switch (instruction.what) {
        case Do::Succeed:
        case Do::AtEnd:
        case Do::Broken:
          is_empty = true;
          break;
        case Do::Byte:
          first = set(instruction.set);
          break;
        case Do::Literal:
          first = ByteSet(instruction.literal.substr(0, 1));
          leads_on = instruction.literal.empty();
          break;
        case Do::Repeat:
          first = set(instruction.set);
          leads_on = instruction.minimum == 0;
          break;
        case Do::Choose:
          first = first_bytes(instruction.other);
          is_empty = can_be_empty(instruction.other);
          leads_on = true;
          break;
        case Do::AtStart:
        case Do::Open:
        case Do::Close:
          leads_on = true;
          break;
      }
      if (leads_on) {
        first.add_all(first_bytes(instruction.next));
        is_empty = is_empty || can_be_empty(instruction.next);
      }
      bool has_grown = first_bytes_[i].add_all(first);
      has_changed = has_changed || has_grown || is_empty != can_be_empty_[i];
      can_be_empty_[i] = is_empty;
    }
  }
}

}  // namespace vstring::regex
