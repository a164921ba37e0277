// Programs decoded for matching. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/prepared.h"

#include <utility>

#include "vstring/regex/errors.h"

namespace vstring::regex {
namespace {

constexpr std::int32_t kNoNode = 0;
// What most programs need, so that memory is asked for once.
constexpr std::size_t kUsualInstructions = 8;
constexpr std::size_t kUsualProgram = 64;

}  // namespace

// Walks the nodes from the start of the program. Every node that is reached becomes an instruction
// once; nodes that only lead on are skipped.
class Prepared::Decoder {
 public:
  explicit Decoder(Prepared& prepared) : prepared_(prepared), program_(prepared.record_->program) {
    known_.resize(kUsualProgram, kNone);
    prepared.instructions_.reserve(kUsualInstructions);
    prepared.sets_.reserve(kUsualInstructions / 2);
  }

  void run() {
    prepared_.start_ = instruction_at(kFirstNode);
    for (std::int32_t place = 0; place < prepared_.size(); ++place) {
      std::int32_t offset = std::exchange(at(place).next, kNone);
      decode(offset, place);
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

  bool is_set(std::int32_t offset) const {
    return op(offset) == kAnyChar || op(offset) == kAnyOf || op(offset) == kAnyBut;
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
    if (index >= known_.size()) known_.resize(2 * index, kNone);
    return known_[index];
  }

  std::int32_t instruction_at(std::int32_t offset) {
    offset = skip(offset);
    if (known(offset) != kNone) return known(offset);
    known(offset) = static_cast<std::int32_t>(prepared_.instructions_.size());
    prepared_.instructions_.emplace_back().next = offset;  // till it is decoded
    return known(offset);
  }

  Text operand(std::int32_t offset) const {
    return reinterpret_cast<const char*>(program_ + offset + kNodeHeader);
  }

  // Instructions are filled in where they stand; the reference holds until the next one is added.
  Instruction& at(std::int32_t place) {
    return prepared_.instructions_[static_cast<std::size_t>(place)];
  }

  void decode(std::int32_t offset, std::int32_t place);
  void decode_branch(std::int32_t offset, std::int32_t place);
  void decode_repeat(std::int32_t offset, std::int32_t place);
  // The set of the bytes that a node of one byte matches; empty for any other node.
  std::int32_t add_set(std::int32_t offset);

  Prepared& prepared_;
  const unsigned char* program_;
  std::vector<std::int32_t> known_;  // by offset: the instruction
};

std::int32_t Prepared::Decoder::add_set(std::int32_t offset) {
  ByteSet& set = prepared_.sets_.emplace_back();
  if (op(offset) == kLiteral) {
    for (char c : operand(offset).substr(0, 1)) set.add(byte_of(c));  // only that is repeated
  } else if (op(offset) == kAnyOf) {
    for (char c : operand(offset)) set.add(byte_of(c));
  } else if (is_set(offset)) {
    ByteSet excluded(op(offset) == kAnyBut ? operand(offset) : Text());
    for (int c = 1; c < 256; ++c) {
      auto byte = static_cast<unsigned char>(c);
      if (!excluded.contains(byte)) set.add(byte);
    }
  }
  return static_cast<std::int32_t>(prepared_.sets_.size()) - 1;
}

void Prepared::Decoder::decode(std::int32_t offset, std::int32_t place) {
  Instruction& result = at(place);
  int code = offset == kNoNode ? kBack : op(offset);
  if (code == kEnd) {
    result.what = Do::Succeed;
    return;
  }
  if (code == kStar || code == kPlus) return decode_repeat(offset, place);
  if (code == kBranch) return decode_branch(offset, place);
  if (code == kAtStart) {
    result.what = Do::AtStart;
    prepared_.has_at_start_ = true;
  } else if (code == kAtEnd) {
    result.what = Do::AtEnd;
  } else if (code == kLiteral) {
    result.what = Do::Literal;
    result.literal = operand(offset);
  } else if (is_open(code) || is_close(code)) {
    result.what = is_open(code) ? Do::Open : Do::Close;
    result.group = static_cast<std::uint8_t>(code - (is_open(code) ? kOpen : kClose));
  } else if (offset != kNoNode && is_set(offset)) {
    result.what = Do::Byte;
    result.set = add_set(offset);
  } else {
    Error error = offset == kNoNode ? Error::CorruptedPointers : Error::MemoryCorruption;
    result.error = static_cast<std::uint8_t>(error);
    return;
  }
  std::int32_t following = instruction_at(next(offset));
  at(place).next = following;
}

void Prepared::Decoder::decode_branch(std::int32_t offset, std::int32_t place) {
  std::int32_t first = instruction_at(offset + static_cast<std::int32_t>(kNodeHeader));
  std::int32_t other = instruction_at(next(offset));
  Instruction& result = at(place);
  result.what = Do::Choose;
  result.choice = prepared_.num_choices_++;
  result.next = first;
  result.other = other;
}

void Prepared::Decoder::decode_repeat(std::int32_t offset, std::int32_t place) {
  std::int32_t following = instruction_at(next(offset));
  std::int32_t repeated = offset + static_cast<std::int32_t>(kNodeHeader);
  Instruction& result = at(place);
  result.what = Do::Repeat;
  result.minimum = op(offset) == kPlus ? 1 : 0;
  result.choice = prepared_.num_choices_++;
  if (op(repeated) != kLiteral && !is_set(repeated)) {
    result.error = static_cast<std::uint8_t>(Error::InternalFoulup);
  }
  result.is_any = op(repeated) == kAnyChar;
  result.set = add_set(repeated);
  result.next = following;
}

Prepared::Prepared(const RegexpRecord& record) : record_(&record) {
  Decoder(*this).run();
  find_firsts();
  const Instruction& first = (*this)[start_];
  if (first.what == Do::Literal && (*this)[first.next].what == Do::Succeed) {
    whole_literal_ = first.literal;
  }
  std::int32_t i = start_;
  while ((*this)[i].what == Do::Open) i = (*this)[i].next;
  if ((*this)[i].what == Do::Repeat) leading_repeat_ = i;
}

// The least sets that agree with one another, found by going over the instructions until nothing
// changes. Mostly an instruction leads to later ones, so going backwards needs few rounds: one when
// there is no loop.
void Prepared::find_firsts() {
  bool has_loop = false;
  for (bool has_changed = true; has_changed;) {
    has_changed = false;
    for (std::size_t i = instructions_.size(); i-- > 0;) {
      Instruction& instruction = instructions_[i];
      auto place = static_cast<std::int32_t>(i);
      has_loop = has_loop || (instruction.next != kNone && instruction.next <= place) ||
                 (instruction.other != kNone && instruction.other <= place);
      has_changed = find_first(instruction) || has_changed;
    }
    has_changed = has_changed && has_loop;
  }
}

// Adds what is known by now; tells whether any of it was new.
bool Prepared::find_first(Instruction& instruction) {
  ByteSet& first = instruction.first_bytes;
  bool has_grown = false;
  bool leads_on = false;
  bool is_optional = false;
  switch (instruction.what) {
    case Do::Succeed:
    case Do::AtEnd:
    case Do::Broken:
      is_optional = true;
      break;
    case Do::Byte:
      has_grown = first.add_all(set(instruction.set));
      break;
    case Do::Literal:
      leads_on = instruction.literal.empty();
      if (leads_on) break;
      has_grown = !first.contains(byte_of(instruction.literal[0]));
      first.add(byte_of(instruction.literal[0]));
      break;
    case Do::Repeat:
      has_grown = first.add_all(set(instruction.set));
      leads_on = instruction.minimum == 0;
      break;
    case Do::Choose:
      has_grown = first.add_all(first_bytes(instruction.other));
      is_optional = can_be_empty(instruction.other);
      leads_on = true;
      break;
    case Do::AtStart:
    case Do::Open:
    case Do::Close:
      leads_on = true;
      break;
  }
  if (leads_on) {
    has_grown = first.add_all(first_bytes(instruction.next)) || has_grown;
    is_optional = is_optional || can_be_empty(instruction.next);
  }
  has_grown = has_grown || is_optional != instruction.can_be_empty;
  instruction.can_be_empty = is_optional;
  return has_grown;
}

}  // namespace vstring::regex
