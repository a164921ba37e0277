// Positions and what follows upon them. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/positions.h"

#include <algorithm>

namespace vstring::regex {

Positions::Positions(const Prepared& prepared) : prepared_(prepared) {
  number(prepared);
  if (!are_known_) return;
  find_classes();
  seen_.resize(static_cast<std::size_t>(prepared.size()), 0);
  starts_ = closure(prepared.start(), false, false);
  origin_starts_ = closure(prepared.start(), true, false);
  for (Place& place : places_) {
    if (place.instruction == kNone || prepared[place.instruction].what != Do::AtEnd) continue;
    List behind = closure(prepared[place.instruction].next, false, true);
    place.may_end = !behind.empty() && behind.back() == kMatch;
  }
}

void Positions::number(const Prepared& prepared) {
  places_.push_back({kNone, 0, true});
  for (std::int32_t i = 0; i < prepared.size() && are_known_; ++i) {
    const Instruction& instruction = prepared[i];
    first_.push_back(static_cast<Position>(places_.size()));
    std::size_t length = 0;
    if (instruction.what == Do::Literal) length = instruction.literal.size();
    if (instruction.what == Do::Byte || instruction.what == Do::Repeat ||
        instruction.what == Do::AtEnd) {
      length = 1;
    }
    are_known_ = instruction.error == 0 && instruction.what != Do::Broken &&
                 length <= kMost - places_.size() &&
                 (length != 0 || instruction.what != Do::Literal);
    if (!are_known_) return;
    for (std::size_t k = 0; k < length; ++k) places_.push_back({i, static_cast<std::int32_t>(k)});
  }
}

void Positions::find_classes() {
  ByteSet split;  // bytes that have a class of their own
  samples_.push_back(0);
  for (const Place& place : places_) {
    ByteSet set = set_of(place);
    bool is_literal =
        place.instruction != kNone && prepared_[place.instruction].what == Do::Literal;
    if (is_literal && !split.add_all(set)) continue;
    split_classes(set);
  }
}

// Numbers the classes anew, by their old number and whether the set holds them.
void Positions::split_classes(const ByteSet& set) {
  constexpr std::size_t kNew = 256;
  std::array<std::array<std::size_t, 2>, 256> numbers;
  for (auto& pair : numbers) pair = {kNew, kNew};
  samples_.clear();
  for (std::size_t c = 0; c < 256; ++c) {
    auto byte = static_cast<unsigned char>(c);
    std::size_t& number = numbers[classes_[c]][set.contains(byte) ? 1 : 0];
    if (number == kNew) {
      number = samples_.size();
      samples_.push_back(byte);
    }
    classes_[c] = static_cast<std::uint8_t>(number);
  }
}

ByteSet Positions::set_of(const Place& place) const {
  if (place.instruction == kNone) return {};
  const Instruction& instruction = prepared_[place.instruction];
  if (instruction.what == Do::AtEnd) return {};
  if (instruction.what != Do::Literal) return prepared_.set(instruction.set);
  return ByteSet(instruction.literal.substr(static_cast<std::size_t>(place.offset), 1));
}

bool Positions::takes(Position position, std::size_t byte_class) const {
  const Place& place = places_[position];
  if (place.instruction == kNone) return false;
  const Instruction& instruction = prepared_[place.instruction];
  unsigned char byte = samples_[byte_class];
  if (instruction.what == Do::AtEnd) return false;
  if (instruction.what != Do::Literal) return prepared_.set(instruction.set).contains(byte);
  return byte_of(instruction.literal[static_cast<std::size_t>(place.offset)]) == byte;
}

const Positions::List& Positions::following(Position position) {
  Place& place = places_[position];
  if (place.is_followed || place.instruction == kNone) return place.following;
  place.is_followed = true;
  const Instruction& instruction = prepared_[place.instruction];
  if (instruction.what == Do::Literal &&
      static_cast<std::size_t>(place.offset) + 1 < instruction.literal.size()) {
    place.following = {static_cast<Position>(position + 1)};
  } else if (instruction.what != Do::AtEnd) {
    place.following = closure(instruction.next, false, false);
    if (instruction.what == Do::Repeat) {
      std::erase(place.following, position);
      place.following.insert(place.following.begin(), position);
    }
  }
  return place.following;
}

// The positions that an instruction leads to without taking a byte, preferred ones first.
Positions::List Positions::closure(std::int32_t from, bool is_at_origin, bool is_at_end) {
  List result;
  ++num_closures_;
  pending_.assign(1, from);
  while (!pending_.empty()) {
    std::int32_t i = pending_.back();
    pending_.pop_back();
    auto index = static_cast<std::size_t>(i);
    if (seen_[index] == num_closures_) continue;
    seen_[index] = num_closures_;
    const Instruction& instruction = prepared_[i];
    switch (instruction.what) {
      case Do::Succeed:
        result.push_back(kMatch);
        return result;
      case Do::AtStart:
        if (is_at_origin) pending_.push_back(instruction.next);
        break;
      case Do::AtEnd:
        if (is_at_end) pending_.push_back(instruction.next);
        result.push_back(first_[index]);
        break;
      case Do::Open:
      case Do::Close:
        pending_.push_back(instruction.next);
        break;
      case Do::Choose:
        pending_.push_back(instruction.other);
        pending_.push_back(instruction.next);
        break;
      case Do::Repeat:
        result.push_back(first_[index]);
        if (instruction.minimum == 0) pending_.push_back(instruction.next);
        break;
      case Do::Byte:
      case Do::Literal:
        result.push_back(first_[index]);
        break;
      case Do::Broken:
        break;
    }
  }
  return result;
}

}  // namespace vstring::regex
