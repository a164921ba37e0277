// What an Execution notes of the choices that have failed. Tests: tests/unit/regex_test.cpp.
#include <algorithm>

#include "vstring/regex/match.h"
#include "vstring/regex/outlook.h"

namespace vstring::regex {

void Execution::clear_notes() {
  notes_.clear();
  knows_all_ = false;
  num_choices_ = 0;
}

// Whether this choice has been made at this position before; it is still to be decided only when it
// has not, for a choice that is made again has failed before.
bool Execution::has_failed(const Instruction& choice, const char* position) {
  ++num_choices_;
  if (notes_.empty()) {
    std::size_t num_bytes = distance(begin_, position) + limits_.free_choice_bytes;
    if (num_choices_ <= num_bytes * limits_.choices_per_byte) return false;
    if (!start_notes()) {
      is_out_of_room_ = true;
      return false;
    }
  }
  std::size_t bit = note_at(choice.choice, position);
  std::uint64_t mask = std::uint64_t{1} << (bit % 64);
  bool is_noted = (notes_[bit / 64] & mask) != 0;
  if (!is_sure(position)) {
    notes_[bit / 64] |= mask;
  } else if (!is_noted) {
    stack_.clear();  // this way is the one: nothing else will be tried
  }
  return is_noted;
}

std::size_t Execution::note_at(std::int32_t choice, const char* position) const {
  return static_cast<std::size_t>(choice) * (distance(begin_, end_) + 1) +
         distance(begin_, position);
}

// False when there is no room.
bool Execution::start_notes() {
  std::size_t length = distance(begin_, end_) + 1;
  auto num_choices = static_cast<std::size_t>(prepared_.num_choices());
  if (num_choices > limits_.max_note_bits / length) return false;
  notes_.assign(num_choices * length / 64 + 1, 0);
  return true;
}

// Whether backtracking has room, if need be that of a stack that stays small.
bool Execution::has_room() { return !is_out_of_room_ || learn_all(); }

// Notes every choice that fails, from the end of the text: then no way is gone that has to be taken
// back, and the stack stays small. False when there is no room for that, or when it did not help.
bool Execution::learn_all() {
  if (knows_all_ || !start_notes()) return false;
  Outlook outlook(prepared_);
  outlook.start_at_end();
  for (const char* position = end_;;) {
    for (std::int32_t i = 0; i < prepared_.size(); ++i) {
      const Instruction& choice = prepared_[i];
      if (choice.choice == kNone) continue;
      std::int32_t chosen = choice.what == Do::Repeat ? choice.next : i;
      std::size_t bit = note_at(choice.choice, position);
      if (!outlook.succeeds(chosen)) notes_[bit / 64] |= std::uint64_t{1} << (bit % 64);
    }
    if (position == origin_) break;
    outlook.step_back(byte_of(*--position));
  }
  std::fill(runs_.begin(), runs_.end(), Run{});
  is_out_of_room_ = false;
  knows_all_ = true;
  start_at(origin_);
  return true;
}

// Whether the notes tell all of this position. They leave out that `^` matches at the origin.
bool Execution::is_sure(const char* position) const {
  return knows_all_ && (position != origin_ || !prepared_.has_at_start());
}

// Takes back what is noted of these positions, the last one included.
void Execution::forget(const char* from, const char* to) {
  if (notes_.empty()) return;
  for (std::int32_t choice = 0; choice < prepared_.num_choices(); ++choice) {
    std::size_t last = note_at(choice, to);
    for (std::size_t bit = note_at(choice, from); bit <= last; ++bit) {
      notes_[bit / 64] &= ~(std::uint64_t{1} << (bit % 64));
    }
  }
}

}  // namespace vstring::regex
