// The places at which matches may start. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/start_finder.h"

#include <cstring>

namespace vstring::regex {
namespace {

constexpr std::size_t kWorthPairs = 64;  // tries that repay the making of StartPairs

std::int32_t skip_groups(const Prepared& prepared, std::int32_t i) {
  while (prepared[i].what == Do::Open || prepared[i].what == Do::Close) i = prepared[i].next;
  return i;
}

}  // namespace

StartFinder::StartFinder(const Prepared& prepared, Text text)
    : prepared_(prepared), end_(text.data() + text.size()) {
  if (prepared.can_be_empty(prepared.start())) return;
  by_ = By::Byte;
  const Instruction& first = prepared[skip_groups(prepared, prepared.start())];
  if (first.what == Do::Literal) {
    by_ = By::Literal;
    search_for(first.literal);
  } else if (prepared.leading_repeat() != kNone) {
    find_turn();
  }
}

void StartFinder::find_turn() {
  const Instruction& repeat = prepared_[prepared_.leading_repeat()];
  turn_ = skip_groups(prepared_, repeat.next);
  const Instruction& turn = prepared_[turn_];
  if (repeat.error != 0 || (turn.what != Do::Literal && turn.what != Do::Byte)) return;
  by_ = By::Turn;
  if (turn.what == Do::Literal) search_for(turn.literal);
}

void StartFinder::search_for(Text literal) {
  literal_.emplace(literal);
  literal_byte_ = literal.empty() ? '\0' : literal[0];
}

const char* StartFinder::next(const char* position) {
  switch (by_) {
    case By::Nothing:
      return position;
    case By::Literal:
      return next_literal(position);
    case By::Turn:
      return next_turn(position);
    case By::Byte:
      return next_byte(position);
  }
  return position;
}

const char* StartFinder::next_literal(const char* position) const {
  auto rest = static_cast<std::size_t>(end_ - position);
  if (literal_->length() == 1) {
    return static_cast<const char*>(std::memchr(position, literal_byte_, rest));
  }
  std::size_t at = literal_->find(Text(position, rest));
  return at == Text::npos ? nullptr : position + at;
}

// The run before the next turn, as far back as it goes: a match that starts before it would have a
// run that goes beyond it.
const char* StartFinder::next_turn(const char* position) const {
  const Instruction& repeat = prepared_[prepared_.leading_repeat()];
  const ByteSet& run = prepared_.set(repeat.set);
  for (const char* turn = position; turn != end_; ++turn) {
    if (literal_) {
      turn = next_literal(turn);
      if (turn == nullptr) return nullptr;
    } else {
      const ByteSet& turns = prepared_.set(prepared_[turn_].set);
      turn += find_member(Text(turn, static_cast<std::size_t>(end_ - turn)), turns);
      if (turn == end_) return nullptr;
    }
    const char* start = repeat.is_any ? position : turn;
    while (start != position && run.contains(byte_of(start[-1]))) --start;
    if (turn - start >= repeat.minimum) return start;
  }
  return nullptr;
}

const char* StartFinder::next_byte(const char* position) {
  const ByteSet& first_bytes = prepared_.first_bytes(prepared_.start());
  for (;; ++position) {
    position += find_member(Text(position, static_cast<std::size_t>(end_ - position)), first_bytes);
    if (position == end_) return nullptr;
    if (!pairs_ && ++num_tried_ > kWorthPairs) pairs_.emplace(prepared_);
    if (!pairs_ || pairs_->may_start(position, end_)) return position;
  }
}

}  // namespace vstring::regex
