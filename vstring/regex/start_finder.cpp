// The places at which matches may start. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/start_finder.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "vstring/regex/positions.h"

namespace vstring::regex {
namespace {

std::int32_t skip_groups(const Prepared& prepared, std::int32_t i) {
  while (prepared[i].what == Do::Open || prepared[i].what == Do::Close) i = prepared[i].next;
  return i;
}

// A beginning of matches, and the positions behind it.
struct Beginning {
  std::string bytes;
  Positions::List positions;
};

void add_new(Positions::List& list, const Positions::List& more) {
  for (Positions::Position position : more) {
    if (std::find(list.begin(), list.end(), position) == list.end()) list.push_back(position);
  }
}

// Every way in which one more byte can follow; nothing when there are too many, or when a match may
// be over before that.
std::vector<Beginning> lengthened(Positions& positions, const std::vector<Beginning>& beginnings) {
  std::vector<Beginning> result;
  for (const Beginning& beginning : beginnings) {
    for (int c = 1; c < 256; ++c) {
      Beginning longer{beginning.bytes + static_cast<char>(c), {}};
      for (Positions::Position position : beginning.positions) {
        if (positions.may_end(position)) return {};
        if (positions.takes(position, positions.classes()[static_cast<std::size_t>(c)])) {
          add_new(longer.positions, positions.following(position));
        }
      }
      if (!longer.positions.empty()) result.push_back(std::move(longer));
      if (result.size() > StartFilter::kMostStarts) return {};
    }
  }
  return result;
}

// A filter by the longest beginnings that are few enough; of no use when one byte says as much.
StartFilter make_filter(const Prepared& prepared) {
  Positions positions(prepared);
  if (!positions.are_known()) return {};
  std::vector<Beginning> beginnings{{"", positions.starts(true)}};
  add_new(beginnings[0].positions, positions.starts(false));
  for (std::size_t length = 1; length <= StartFilter::kMostBytes; ++length) {
    std::vector<Beginning> longer = lengthened(positions, beginnings);
    if (longer.empty()) break;
    beginnings = std::move(longer);
  }
  if (beginnings[0].bytes.size() < 2) return {};
  std::vector<std::string> starts;
  starts.reserve(beginnings.size());
  for (Beginning& beginning : beginnings) starts.push_back(std::move(beginning.bytes));
  return StartFilter(std::move(starts));
}

}  // namespace

StartFinder::StartFinder(const Prepared& prepared, Text text, const Limits& limits)
    : prepared_(prepared), text_(text), limits_(limits), end_(text.data() + text.size()) {
  if (prepared.can_be_empty(prepared.start())) return;
  by_ = By::Byte;
  const Instruction& first = prepared[skip_groups(prepared, prepared.start())];
  if (first.what == Do::Literal && !first.literal.empty()) {
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
  bool is_literal = turn.what == Do::Literal && !turn.literal.empty();
  if (repeat.error != 0 || (!is_literal && turn.what != Do::Byte)) return;
  by_ = By::Turn;
  if (is_literal) search_for(turn.literal);
}

void StartFinder::search_for(Text literal) {
  literal_.emplace(literal);
  literal_byte_ = literal[0];
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
  if (filter_.is_useful()) {
    std::size_t at = filter_.next(text_, static_cast<std::size_t>(position - text_.data()));
    return at == text_.size() ? nullptr : text_.data() + at;
  }
  const ByteSet& first_bytes = prepared_.first_bytes(prepared_.start());
  for (;; ++position) {
    position += find_member(Text(position, static_cast<std::size_t>(end_ - position)), first_bytes);
    if (position == end_) return nullptr;
    ++num_tried_;
    if (num_tried_ == limits_.worth_pairs) pairs_.emplace(prepared_);
    if (num_tried_ == limits_.worth_filter) filter_ = make_filter(prepared_);
    if (!pairs_ || pairs_->may_start(position, end_)) return position;
  }
}

}  // namespace vstring::regex
